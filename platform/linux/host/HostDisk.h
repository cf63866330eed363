#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/UserFolders.h"

#include <string>

namespace cirrovane {

/// The folders of this machine's user, where the environment says that they are.
UserFolders hostFolders();

/// Of the file system that holds the folder.
VolumeCapacities hostVolume(const std::string& folder);

}  // namespace cirrovane
