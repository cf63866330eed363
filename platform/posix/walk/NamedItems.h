#pragma once

#include "platform/FileSystem.h"
#include "platform/posix/walk/WalkReader.h"
#include "platform/posix/walk/WalkedFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace cirrovane {

/// Those of the named entries of a folder that exist and that a walk would show, in the order given, with their values;
/// nullptr when none does. Where the folder cannot be looked at for want of means, each is an item without values.
std::unique_ptr<ItemBatch> readNamedItems(const std::string& folder, const std::vector<std::string>& names,
                                          const WalkSource& source, const OpenCall& open = openFolder);

}  // namespace cirrovane
