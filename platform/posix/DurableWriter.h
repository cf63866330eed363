#pragma once

#include "platform/FileStorage.h"
#include "platform/posix/FileCalls.h"

#include <optional>
#include <string>

namespace cirrovane {

/// Puts what `produce` writes in place of the file at the path, as FileStorage::writeAtomically promises: into a
/// temporary file beside it, synced, renamed over it, and the folder synced. Temporary files that a killed process left
/// in the folder are removed on the way.
std::optional<Failure> writeDurably(const FileCalls& calls, const std::string& path, FileAccess access,
                                    const ByteProducer& produce);

}  // namespace cirrovane
