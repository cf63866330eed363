#pragma once

#include "platform/FileSystem.h"
#include "platform/posix/walk/WalkBatch.h"
#include "platform/posix/walk/WalkReader.h"
#include "platform/posix/walk/WalkedFolder.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace cirrovane {

/// How a walk reads ahead.
struct ReadAheadOptions {
  /// Threads that read ahead; with 0 the caller's own thread reads.
  std::size_t threadCount = 2;
  /// Folders kept open for their children.
  std::size_t openFolderCapacity = FolderDescriptors::reasonableCapacity();
  /// Opens the folders.
  OpenCall open = openFolder;
};

/// A walk whose names and values are read ahead by threads of its own, while its order stays that of one reader: a
/// folder's entries as the file system lists them, then its subfolders in the same order, each with all below it.
class ReadAheadWalk final : public FolderWalk {
 public:
  ReadAheadWalk(const WalkRequest& request, std::unique_ptr<const WalkSource> source,
                const ReadAheadOptions& options = {});
  /// Stops the reading threads; waits for the system call that each is in.
  ~ReadAheadWalk() override;

  ReadAheadWalk(const ReadAheadWalk&) = delete;
  ReadAheadWalk& operator=(const ReadAheadWalk&) = delete;

  const ItemBatch* next() override;
  bool isComplete() const override;

 private:
  /// One place in the order of the walk: a folder still to be listed, or a batch made from one.
  struct Slot {
    const WalkedFolder* folder = nullptr;
    FolderDescriptors::Descriptor descriptor;
    std::unique_ptr<WalkBatch> batch;
    /// Subfolders met so far. They take their places when the listing ends: read any sooner, they could fill the
    /// read-ahead before the batches that come first.
    std::vector<const WalkedFolder*> subfolders;
    /// A folder: a thread is listing it. A batch: its values are being read.
    bool isBusy = false;

    bool isReadable() const { return folder != nullptr && !isBusy; }
    bool isFinishedBatch() const { return folder == nullptr && !isBusy; }
  };
  using Slots = std::list<Slot>;
  using Lock = std::unique_lock<std::mutex>;

  void readAhead();
  bool canRead() const;
  /// Reads the next stretch of the first folder that nobody is reading. Takes the lock held and returns it held.
  /// `reader` is nullptr where the thread may look at no folder.
  void readStretch(Lock& lock, WalkReader* reader);
  Listing listNames(Slot& slot, WalkBatch& batch, WalkReader* reader);
  FolderDescriptors::Opened openFolderOf(const Slot& slot, const WalkReader* reader);
  /// Gives the batch its place before its folder; absent (the end) when there is nothing in it.
  Slots::iterator placeBatch(Slots::iterator folderSlot, std::unique_ptr<WalkBatch> batch);
  /// Tells of a folder that it could not be listed to its end, after what was listed of it.
  void tellUnlisted(Slots::iterator folderSlot);
  void finishFolder(Slots::iterator slot);
  std::unique_ptr<WalkBatch> takeFreeBatch();

  static constexpr std::size_t kMostBatchesAhead = 24;

  const WalkRequest request_;
  const ReadAheadOptions options_;
  const std::unique_ptr<const WalkSource> source_;
  FolderDescriptors descriptors_;

  mutable std::mutex mutex_;
  std::condition_variable somethingToRead_;
  std::condition_variable somethingToGive_;
  /// Everything between what was given out and the end of the walk, as far as it is known, in order.
  Slots slots_;
  /// Batches in slots_, and those about to come there.
  std::size_t batchesAhead_ = 0;
  bool isStopping_ = false;
  bool isComplete_ = true;
  /// All folders met; their addresses are stable, and children point to their parents.
  std::deque<WalkedFolder> folders_;
  std::vector<std::unique_ptr<WalkBatch>> freeBatches_;
  std::unique_ptr<WalkBatch> given_;
  std::vector<std::thread> threads_;
};

}  // namespace cirrovane
