#include "platform/linux/walk/LinuxWalk.h"

#include "platform/posix/BackgroundThread.h"

#include <sched.h>
#include <utility>

namespace cirrovane {
namespace {

/// Some 1,500 entries: many enough to spread one flat folder over threads at little cost, few enough to stay in cache.
constexpr std::size_t kEntriesSize = std::size_t{64} * 1024;

class LinuxSource final : public WalkSource {
 public:
  LinuxSource(const WalkOptions& options, WalkScope scope, bool isUnhurried)
      : list_(options.list),
        usesWorkingDirectory_(options.usesWorkingDirectory),
        scope_(scope),
        isUnhurried_(isUnhurried) {}

  std::size_t entriesSize() const override { return kEntriesSize; }

  std::unique_ptr<WalkReader> makeReader(ReadingThread thread) const override {
    if (isUnhurried_ && thread == ReadingThread::walks) {
      giveWay();
    }
    // A working directory of the walk's own thread: the rest of the program keeps its.
    const bool hasWorkingDirectory = usesWorkingDirectory_ && thread == ReadingThread::walks && unshare(CLONE_FS) == 0;
    return std::make_unique<LinuxWalkReader>(list_, hasWorkingDirectory, scope_);
  }

 private:
  ListingCall list_;
  bool usesWorkingDirectory_;
  WalkScope scope_;
  bool isUnhurried_;
};

}  // namespace

WalkOptions optionsFor(const WalkRequest& request) {
  WalkOptions options;
  if (!request.isDeep) {
    // One folder of usual size is read sooner than a thread is started.
    options.threadCount = 0;
  } else if (request.isUnhurried) {
    options.threadCount = 1;
  }
  return options;
}

std::unique_ptr<WalkSource> makeLinuxSource(const WalkOptions& options, WalkScope scope, bool isUnhurried) {
  return std::make_unique<LinuxSource>(options, scope, isUnhurried);
}

std::unique_ptr<FolderWalk> startLinuxWalk(const WalkRequest& request, const WalkOptions& options) {
  return std::make_unique<ReadAheadWalk>(
      request, makeLinuxSource(options, request.scope, request.isUnhurried),
      ReadAheadOptions{.threadCount = options.threadCount, .openFolderCapacity = options.openFolderCapacity});
}

}  // namespace cirrovane
