#pragma once

#include "platform/FileSystem.h"

#include <functional>
#include <memory>
#include <string>

namespace cirrovane {

/// What opening a folder tells of whether it can be listed.
enum class RootState {
  listable,
  /// The folder's list of names is in the cloud alone, and this thread may fetch nothing.
  dataless,
  refused,
};

/// The system's call that opens a path: a descriptor, or -1 with errno set. A value, so that a test can stand in for a
/// system that refuses.
using OpenCall = std::function<int(const char* path, int flags)>;

/// Opens the folder, as whoever lists it has to, and closes it again.
RootState probeRoot(const std::string& path, const OpenCall& open);
/// The same by the system's own call.
RootState probeRoot(const std::string& path);

/// The walk over a folder in a state in which there is nothing to walk; nullptr when it has to be walked.
std::unique_ptr<FolderWalk> walkWithoutItems(RootState state);

}  // namespace cirrovane
