#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileSystem.h"
#include "platform/linux/UserFolders.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/posix/LimitedChild.h"

#include <memory>
#include <string>
#include <vector>

namespace cirrovane {

// What a Mac root holds and describes of its disk, as it is at each use.

/// The folders of the Mac's user.
UserFolders foldersOf(const MacRoot& root);

/// Of the described Mac's volume; absent where the description does not say.
VolumeCapacities volumeOf(const MacRoot& root);

/// Real child processes, whose programs, and nothing else, lie inside of the root. They get the described environment.
std::unique_ptr<const CommandRunner> commandRunnerOf(const MacRoot& root);

/// A child process of the same kind, for as long as the result lives; nullptr when it cannot be started.
std::unique_ptr<LimitedChild> startCommandOf(const MacRoot& root, const std::string& path,
                                             const std::vector<std::string>& arguments);

}  // namespace cirrovane
