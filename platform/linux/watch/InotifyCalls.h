#pragma once

#include <cstdint>
#include <functional>
#include <sys/inotify.h>
#include <sys/vfs.h>

namespace cirrovane {

/// The system's calls that a watch may be refused by. A value, so that a test can stand in for a system that refuses.
/// Called by several threads, one at a time.
struct InotifyCalls {
  /// As inotify_init1 has it.
  std::function<int(int flags)> makeInstance = inotify_init1;
  /// As inotify_add_watch has it.
  std::function<int(int instance, const char* path, std::uint32_t mask)> addWatch = inotify_add_watch;
  /// As fstatfs has it.
  std::function<int(int descriptor, struct statfs* result)> fileSystemStatus = fstatfs;
};

}  // namespace cirrovane
