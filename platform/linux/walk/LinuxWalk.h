#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/walk/LinuxWalkReader.h"
#include "platform/posix/walk/ReadAheadWalk.h"

#include <cstddef>
#include <dirent.h>
#include <memory>

namespace cirrovane {

/// How a walk over this machine's files reads ahead.
struct WalkOptions {
  /// Threads that read ahead; with 0 the caller's own thread reads.
  std::size_t threadCount = 2;
  /// Whether the reading threads may have a working directory of their own, by far the fastest way to an item. Where
  /// the system refuses it, and with false, items are reached through /proc.
  bool usesWorkingDirectory = true;
  /// Folders kept open for their children.
  std::size_t openFolderCapacity = FolderDescriptors::reasonableCapacity();
  /// Lists the folders' entries.
  ListingCall list = getdents64;
};

/// What a request on this machine's files asks for beside the folder: few of its walks have a need of haste.
WalkOptions optionsFor(const WalkRequest& request);

/// A walk over a folder of this machine, whose path has to be absolute.
std::unique_ptr<FolderWalk> startLinuxWalk(const WalkRequest& request, const WalkOptions& options = {});

/// Reads the entries of this machine's folders for walks.
std::unique_ptr<WalkSource> makeLinuxSource(const WalkOptions& options = {}, WalkScope scope = WalkScope::shown,
                                            bool isUnhurried = false);

}  // namespace cirrovane
