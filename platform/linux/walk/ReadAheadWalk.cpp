#include "platform/linux/walk/ReadAheadWalk.h"

#include <algorithm>
#include <sched.h>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {

ReadAheadWalk::ReadAheadWalk(const std::string& folder, const WalkOptions& options)
    : options_(options), descriptors_(options.openFolderCapacity) {
  Slot& first = slots_.emplace_back();
  first.folder = &folders_.emplace_back(WalkedFolder{nullptr, folder});
  try {
    while (threads_.size() < options_.threadCount) {
      threads_.emplace_back([this] { readAhead(); });
    }
  } catch (const std::system_error&) {
    // No more threads to be had: those that run, or else the caller's own, do all of the reading.
  }
}

ReadAheadWalk::~ReadAheadWalk() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  somethingToRead_.notify_all();
  for (std::thread& thread : threads_) {
    thread.join();
  }
}

const ItemBatch* ReadAheadWalk::next() {
  Lock lock(mutex_);
  if (given_) {
    freeBatches_.push_back(std::move(given_));
  }
  while (!slots_.empty()) {
    Slot& front = slots_.front();
    if (front.isFinishedBatch()) {
      given_ = std::move(front.batch);
      slots_.pop_front();
      --batchesAhead_;
      somethingToRead_.notify_one();
      return given_.get();
    }
    if (threads_.empty()) {
      readStretch(lock, /*hasWorkingDirectory=*/false);
    } else {
      somethingToGive_.wait(lock);
    }
  }
  return nullptr;
}

bool ReadAheadWalk::isComplete() const {
  const std::lock_guard lock(mutex_);
  return isComplete_;
}

void ReadAheadWalk::readAhead() {
  // A working directory of this thread's own: the rest of the program keeps its.
  const bool hasWorkingDirectory = options_.usesWorkingDirectory && unshare(CLONE_FS) == 0;
  Lock lock(mutex_);
  while (true) {
    somethingToRead_.wait(lock, [this] { return isStopping_ || slots_.empty() || canRead(); });
    if (isStopping_ || slots_.empty()) {
      return;
    }
    readStretch(lock, hasWorkingDirectory);
  }
}

bool ReadAheadWalk::canRead() const {
  return batchesAhead_ < kMostBatchesAhead && std::ranges::any_of(slots_, &Slot::isReadable);
}

void ReadAheadWalk::readStretch(Lock& lock, bool hasWorkingDirectory) {
  const auto slot = std::ranges::find_if(slots_, &Slot::isReadable);
  slot->isBusy = true;
  ++batchesAhead_;
  std::unique_ptr<FolderBatch> batch = takeFreeBatch();

  lock.unlock();
  const FolderBatch::Listing listing = listNames(*slot, *batch);
  const FolderDescriptors::Descriptor descriptor = slot->descriptor;
  lock.lock();

  for (const std::string_view name : options_.isDeep ? batch->foldersToEnter() : std::vector<std::string_view>()) {
    slot->subfolders.push_back(&folders_.emplace_back(WalkedFolder{slot->folder, std::string(name)}));
  }
  const auto batchSlot = placeBatch(slot, std::move(batch));
  slot->isBusy = false;
  if (listing == FolderBatch::Listing::failed && slot->folder->parent == nullptr) {
    isComplete_ = false;
  }
  if (listing != FolderBatch::Listing::hasMore) {
    finishFolder(slot);
  }
  somethingToRead_.notify_all();

  if (batchSlot != slots_.end()) {
    FolderBatch& items = *batchSlot->batch;
    lock.unlock();
    if (descriptor) {
      const int folder = descriptor->get();
      const bool isWithin = hasWorkingDirectory && fchdir(folder) == 0;
      items.readValues(folder, isWithin ? std::string() : fmt::format("/proc/self/fd/{}/", folder));
    }
    lock.lock();
    batchSlot->isBusy = false;
  }
  if (slots_.empty() || slots_.front().isFinishedBatch()) {
    somethingToGive_.notify_one();
  }
}

FolderBatch::Listing ReadAheadWalk::listNames(Slot& slot, FolderBatch& batch) {
  if (!slot.descriptor) {
    FolderDescriptors::Opened opened = descriptors_.open(*slot.folder);
    if (opened.result == FolderOpening::exhausted && slot.folder->parent != nullptr) {
      // Passing over a folder only because this process ran out of means could make an unsafe machine look safe.
      batch.becomeUnreadable(*slot.folder);
      return FolderBatch::Listing::ended;
    }
    if (opened.result != FolderOpening::opened || !batch.allowsListing(opened.descriptor->get())) {
      batch.becomeEmpty();
      return FolderBatch::Listing::failed;
    }
    slot.descriptor = std::move(opened.descriptor);
    if (options_.observer != nullptr) {
      options_.observer->beforeListing(pathOf(*slot.folder), slot.descriptor->get());
    }
  }
  return batch.readNames(*slot.folder, slot.descriptor->get(), options_.list);
}

ReadAheadWalk::Slots::iterator ReadAheadWalk::placeBatch(Slots::iterator folderSlot,
                                                         std::unique_ptr<FolderBatch> batch) {
  if (batch->items().empty()) {
    --batchesAhead_;
    freeBatches_.push_back(std::move(batch));
    return slots_.end();
  }
  const auto slot = slots_.emplace(folderSlot);
  slot->batch = std::move(batch);
  slot->isBusy = true;
  return slot;
}

void ReadAheadWalk::finishFolder(Slots::iterator slot) {
  if (slot->subfolders.empty()) {
    descriptors_.forget(*slot->folder);
  }
  const auto after = std::next(slot);
  for (const WalkedFolder* subfolder : slot->subfolders) {
    slots_.emplace(after)->folder = subfolder;
  }
  slots_.erase(slot);
}

std::unique_ptr<FolderBatch> ReadAheadWalk::takeFreeBatch() {
  if (freeBatches_.empty()) {
    return std::make_unique<FolderBatch>();
  }
  std::unique_ptr<FolderBatch> batch = std::move(freeBatches_.back());
  freeBatches_.pop_back();
  return batch;
}

}  // namespace cirrovane
