#include "platform/posix/walk/ReadAheadWalk.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace cirrovane {
namespace {

/// Whether a folder that cannot be opened is no longer there, or something else by now.
bool meansGone(int error) {
  return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

}  // namespace

ReadAheadWalk::ReadAheadWalk(const WalkRequest& request, std::unique_ptr<const WalkSource> source,
                             const ReadAheadOptions& options)
    : request_(request),
      options_(options),
      source_(std::move(source)),
      descriptors_(options.openFolderCapacity, options.open) {
  Slot& first = slots_.emplace_back();
  first.folder = &folders_.emplace_back(WalkedFolder{nullptr, request.folder});
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
      // At each call, because the caller may come on another thread.
      readStretch(lock, source_->makeReader(ReadingThread::callers).get());
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
  const std::unique_ptr<WalkReader> reader = source_->makeReader(ReadingThread::walks);
  Lock lock(mutex_);
  while (true) {
    somethingToRead_.wait(lock, [this] { return isStopping_ || slots_.empty() || canRead(); });
    if (isStopping_ || slots_.empty()) {
      return;
    }
    readStretch(lock, reader.get());
  }
}

bool ReadAheadWalk::canRead() const {
  return batchesAhead_ < kMostBatchesAhead && std::ranges::any_of(slots_, &Slot::isReadable);
}

void ReadAheadWalk::readStretch(Lock& lock, WalkReader* reader) {
  const auto slot = std::ranges::find_if(slots_, &Slot::isReadable);
  slot->isBusy = true;
  ++batchesAhead_;
  std::unique_ptr<WalkBatch> batch = takeFreeBatch();

  lock.unlock();
  const Listing listing = listNames(*slot, *batch, reader);
  const FolderDescriptors::Descriptor descriptor = slot->descriptor;
  lock.lock();

  if (request_.isDeep) {
    for (const std::string_view name : batch->foldersToEnter()) {
      slot->subfolders.push_back(&folders_.emplace_back(WalkedFolder{slot->folder, std::string(name)}));
    }
  }
  const auto batchSlot = placeBatch(slot, std::move(batch));
  slot->isBusy = false;
  if (listing == Listing::failed) {
    tellUnlisted(slot);
  }
  if (listing != Listing::hasMore) {
    finishFolder(slot);
  }
  somethingToRead_.notify_all();

  if (batchSlot != slots_.end()) {
    WalkBatch& items = *batchSlot->batch;
    lock.unlock();
    if (descriptor && reader != nullptr) {
      reader->readValues(descriptor->get(), items);
    }
    lock.lock();
    batchSlot->isBusy = false;
  }
  if (slots_.empty() || slots_.front().isFinishedBatch()) {
    somethingToGive_.notify_one();
  }
}

FolderDescriptors::Opened ReadAheadWalk::openFolderOf(const Slot& slot, const WalkReader* reader) {
  if (reader == nullptr) {
    return {FolderOpening::exhausted};
  }
  return slot.descriptor ? FolderDescriptors::Opened{FolderOpening::opened, slot.descriptor}
                         : descriptors_.open(*slot.folder);
}

Listing ReadAheadWalk::listNames(Slot& slot, WalkBatch& batch, WalkReader* reader) {
  const bool isRoot = slot.folder->parent == nullptr;
  const bool isBeginning = !slot.descriptor;
  const FolderDescriptors::Opened opened = openFolderOf(slot, reader);
  Listing listing = Listing::failed;
  batch.begin(*slot.folder);
  if (opened.result == FolderOpening::exhausted) {
    listing = Listing::meaningless;
  } else if (opened.result == FolderOpening::unreadable) {
    listing = meansGone(opened.error) ? Listing::gone : reader->afterOpeningFailed(opened.error);
  } else if (!isBeginning || reader->allowsListing(opened.descriptor->get())) {
    if (isBeginning && request_.observer != nullptr) {
      request_.observer->beforeListing(pathOf(*slot.folder), opened.descriptor->get());
    }
    slot.descriptor = opened.descriptor;
    listing = reader->readNames(opened.descriptor->get(), batch);
  }
  switch (listing) {
    case Listing::hasMore:
    case Listing::ended:
    case Listing::failed:
      return listing;
    case Listing::gone:
      return isRoot ? Listing::failed : Listing::ended;
    case Listing::isElsewhere:
      // Nothing is here, and so nothing has yet to leave here; but what was begun here has to end here.
      return isBeginning ? Listing::ended : Listing::failed;
    case Listing::meaningless:
      break;
  }
  if (isRoot) {
    batch.becomeEmpty();
    return Listing::failed;
  }
  // Passing over a folder that nobody looked at could make an unsafe machine look safe.
  batch.becomeUnreadable(*slot.folder);
  slot.descriptor = nullptr;
  return Listing::ended;
}

ReadAheadWalk::Slots::iterator ReadAheadWalk::placeBatch(Slots::iterator folderSlot, std::unique_ptr<WalkBatch> batch) {
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

void ReadAheadWalk::tellUnlisted(Slots::iterator folderSlot) {
  if (folderSlot->folder->parent == nullptr) {
    isComplete_ = false;
  } else if (request_.scope == WalkScope::everything) {
    std::unique_ptr<WalkBatch> batch = takeFreeBatch();
    batch->becomeUnreadable(*folderSlot->folder);
    ++batchesAhead_;
    placeBatch(folderSlot, std::move(batch))->isBusy = false;
  }
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

std::unique_ptr<WalkBatch> ReadAheadWalk::takeFreeBatch() {
  if (freeBatches_.empty()) {
    return std::make_unique<WalkBatch>(source_->entriesSize());
  }
  std::unique_ptr<WalkBatch> batch = std::move(freeBatches_.back());
  freeBatches_.pop_back();
  return batch;
}

}  // namespace cirrovane
