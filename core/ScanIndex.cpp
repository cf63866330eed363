#include "core/ScanIndex.h"

#include "core/IndexedTree.h"
#include "core/ReportDraft.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

namespace cirrovane {
namespace {

/// A clock that stands: one report is judged at one moment.
class StandingClock final : public Clock {
 public:
  explicit StandingClock(Time now) : now_(now) {}
  Time now() const override { return now_; }

 private:
  Time now_;
};

/// The names of items, by their folders.
std::map<std::string, std::vector<std::string>> namedItems(std::span<const FolderChange> changes) {
  std::map<std::string, std::vector<std::string>> items;
  for (const FolderChange& change : changes) {
    if (!change.item.empty()) {
      items[change.folder].push_back(change.item);
    }
  }
  return items;
}

bool touches(const FolderChange& change, const std::string& folder) {
  if (change.item.empty()) {
    return change.isDeep ? isAtOrBelow(folder, change.folder) : folder == change.folder;
  }
  return folder == change.folder || isAtOrBelow(folder, itemPath(change.folder, change.item));
}

}  // namespace

ScanIndex::ScanIndex(const FileSystem& fileSystem, const Clock& clock, std::chrono::microseconds staleUploadThreshold)
    : fileSystem_(&fileSystem), clock_(&clock), staleUploadThreshold_(staleUploadThreshold) {}

ScanIndex::ScanIndex(ScanIndex&&) noexcept = default;
ScanIndex& ScanIndex::operator=(ScanIndex&&) noexcept = default;
ScanIndex::~ScanIndex() = default;

ScanIndex ScanIndex::scan(const std::vector<WatchFolder>& folders, const FileSystem& fileSystem, const Clock& clock,
                          std::chrono::microseconds staleUploadThreshold, ScanProgress* progress,
                          ListingObserver* observer) {
  ScanIndex index(fileSystem, clock, staleUploadThreshold);
  IndexReading reading{fileSystem, progress, observer};
  for (const WatchFolder& folder : folders) {
    index.trees_.push_back(std::make_unique<IndexedTree>(folder));
    index.trees_.back()->readWhole(reading);
  }
  return index;
}

SyncHealthReport ScanIndex::report() const {
  return reportAt(clock_->now());
}

SyncHealthReport ScanIndex::reportAt(Time now) const {
  const StandingClock clock(now);
  ReportDraft draft(clock, staleUploadThreshold_);
  for (const std::unique_ptr<IndexedTree>& tree : trees_) {
    tree->addTo(draft);
  }
  return draft.finish();
}

std::optional<SyncHealthReport> ScanIndex::glance(std::span<const FolderChange> changes) {
  const Time now = clock_->now();
  IndexReading reading{*fileSystem_};
  reading.staleBefore = now - staleUploadThreshold_;
  for (const auto& [path, names] : namedItems(changes)) {
    std::unique_ptr<ItemBatch> batch;
    bool isRead = false;
    for (const std::unique_ptr<IndexedTree>& tree : trees_) {
      IndexedFolder* folder = tree->find(path);
      if (folder == nullptr) {
        continue;
      }
      if (!std::exchange(isRead, true)) {
        batch = fileSystem_->readItems(path, names);
      }
      tree->takeItems(*folder, names, batch.get(), reading);
    }
  }
  isChangedByGlance_ = isChangedByGlance_ || reading.isChanged;
  return reading.isBlockedAnew ? std::optional(reportAt(now)) : std::nullopt;
}

UpdateResult ScanIndex::update(std::span<const FolderChange> changes, ListingObserver* observer) {
  IndexReading reading = readingFor(observer);
  reading.isChanged = std::exchange(isChangedByGlance_, false);
  for (const std::unique_ptr<IndexedTree>& tree : trees_) {
    tree->update(changes, reading);
  }
  return resultOf(std::move(reading));
}

IndexReading ScanIndex::readingFor(ListingObserver* observer) const {
  IndexReading reading{*fileSystem_, nullptr, observer};
  for (const std::unique_ptr<IndexedTree>& tree : trees_) {
    reading.watched.push_back(tree->path());
  }
  return reading;
}

UpdateResult ScanIndex::resultOf(IndexReading reading) const {
  std::erase_if(reading.gone, [&](const std::string& path) {
    return std::ranges::any_of(trees_, [&](const std::unique_ptr<IndexedTree>& tree) { return tree->holds(path); });
  });
  std::ranges::sort(reading.gone);
  const auto surplus = std::ranges::unique(reading.gone);
  reading.gone.erase(surplus.begin(), surplus.end());
  return {std::move(reading.gone), reading.isChanged};
}

std::optional<Time> ScanIndex::nextStall(Time generatedAt) const {
  constexpr std::chrono::microseconds kTick(1);
  const Time staleBefore = generatedAt - staleUploadThreshold_;
  std::optional<Time> oldest;
  for (const std::unique_ptr<IndexedTree>& tree : trees_) {
    for (const IndexedFolder* folder : tree->notedFolders()) {
      for (const NotedItem& item : folder->noted) {
        const std::optional<Time> since = item.uploadingSince();
        if (since && *since >= staleBefore && (!oldest || *since < *oldest)) {
          oldest = since;
        }
      }
    }
  }
  // A date out of a damaged file system may lie anywhere.
  return oldest && *oldest < Time::max() - staleUploadThreshold_
             ? std::optional(*oldest + staleUploadThreshold_ + kTick)
             : std::nullopt;
}

std::vector<FolderChange> ScanIndex::blockedItems(std::size_t most) {
  const Time staleBefore = clock_->now() - staleUploadThreshold_;
  std::vector<FolderChange> upTo;
  std::vector<FolderChange> from;
  std::size_t count = 0;
  const auto tell = [&](const auto& change) {
    std::vector<FolderChange>& target = count < nextBlocked_ ? upTo : from;
    if (target.size() < most) {
      target.push_back(change());
    }
    ++count;
  };
  for (const std::unique_ptr<IndexedTree>& tree : trees_) {
    for (const IndexedFolder* folder : tree->notedFolders()) {
      const std::string path = tree->pathOf(*folder);
      if (folder->isExhausted) {
        tell([&] { return FolderChange{path, "", true}; });
      }
      for (const NotedItem& item : folder->noted) {
        if (isBlocking(item.values(), staleBefore)) {
          tell([&] { return FolderChange{path, item.name()}; });
        }
      }
    }
  }
  nextBlocked_ += from.size();
  if (from.size() < most) {
    // All that stood from there on was told, so it goes on from the beginning.
    nextBlocked_ = std::min(most - from.size(), upTo.size());
    upTo.resize(nextBlocked_);
    std::ranges::move(upTo, std::back_inserter(from));
  }
  return from;
}

UpdateResult ScanIndex::readBlockedAgain(std::size_t most, ListingObserver* observer) {
  const std::vector<FolderChange> blocked = blockedItems(most);
  IndexReading reading = readingFor(observer);
  std::vector<FolderChange> toList;
  for (const FolderChange& change : blocked) {
    if (change.item.empty()) {
      toList.push_back(change);
    }
  }
  for (const auto& [path, names] : namedItems(blocked)) {
    const std::unique_ptr<ItemBatch> batch = fileSystem_->readItems(path, names);
    for (const std::unique_ptr<IndexedTree>& tree : trees_) {
      IndexedFolder* folder = tree->find(path);
      if (folder != nullptr && !tree->takeItems(*folder, names, batch.get(), reading)) {
        toList.push_back({path, ""});
      }
    }
  }
  for (const std::unique_ptr<IndexedTree>& tree : trees_) {
    tree->update(toList, reading);
  }
  return resultOf(std::move(reading));
}

std::vector<std::string> ScanIndex::goneSince(const ScanIndex& former) const {
  IndexReading reading = readingFor(nullptr);
  for (std::size_t place = 0; place < std::min(trees_.size(), former.trees_.size()); ++place) {
    if (trees_[place]->path() == former.trees_[place]->path()) {
      trees_[place]->tellGoneSince(*former.trees_[place], reading);
    }
  }
  return resultOf(std::move(reading)).gone;
}

std::vector<std::string> ScanIndex::differences(const ScanIndex& other, std::span<const FolderChange> except) const {
  std::vector<std::string> found;
  for (std::size_t place = 0; place < std::max(trees_.size(), other.trees_.size()); ++place) {
    if (place >= trees_.size() || place >= other.trees_.size()) {
      found.push_back((place < trees_.size() ? trees_ : other.trees_)[place]->path());
    } else {
      std::ranges::move(trees_[place]->differences(*other.trees_[place]), std::back_inserter(found));
    }
  }
  std::erase_if(found, [&](const std::string& folder) {
    return std::ranges::any_of(except, [&](const FolderChange& change) { return touches(change, folder); });
  });
  std::ranges::sort(found);
  const auto surplus = std::ranges::unique(found);
  found.erase(surplus.begin(), surplus.end());
  return found;
}

}  // namespace cirrovane
