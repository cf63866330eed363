#include "platform/linux/walk/LinuxWalk.h"

#include <sched.h>
#include <utility>

namespace cirrovane {
namespace {

/// Some 1,500 entries: many enough to spread one flat folder over threads at little cost, few enough to stay in cache.
constexpr std::size_t kEntriesSize = std::size_t{64} * 1024;

class LinuxSource final : public WalkSource {
 public:
  LinuxSource(ListingCall list, bool usesWorkingDirectory)
      : list_(std::move(list)), usesWorkingDirectory_(usesWorkingDirectory) {}

  std::size_t entriesSize() const override { return kEntriesSize; }

  std::unique_ptr<WalkReader> makeReader(ReadingThread thread) const override {
    // A working directory of the walk's own thread: the rest of the program keeps its.
    const bool hasWorkingDirectory = usesWorkingDirectory_ && thread == ReadingThread::walks && unshare(CLONE_FS) == 0;
    return std::make_unique<LinuxWalkReader>(list_, hasWorkingDirectory);
  }

 private:
  ListingCall list_;
  bool usesWorkingDirectory_;
};

}  // namespace

std::unique_ptr<WalkSource> makeLinuxSource(const WalkOptions& options) {
  return std::make_unique<LinuxSource>(options.list, options.usesWorkingDirectory);
}

std::unique_ptr<FolderWalk> startLinuxWalk(const WalkRequest& request, const WalkOptions& options) {
  return std::make_unique<ReadAheadWalk>(
      request, makeLinuxSource(options),
      ReadAheadOptions{.threadCount = options.threadCount, .openFolderCapacity = options.openFolderCapacity});
}

}  // namespace cirrovane
