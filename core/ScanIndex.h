#pragma once

#include "core/ICloudScanEngine.h"
#include "core/ScanProgress.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/FolderWatch.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace cirrovane {

class IndexedTree;
struct IndexReading;

/// What came of reading a part of the watched folders again.
struct UpdateResult {
  /// Folders that are no longer part of any watched tree; none lies below another, and no watched folder is or lies
  /// below one.
  std::vector<std::string> gone;
  /// Whether anything differs from before; false where the report would say the same, but for what time alone brings.
  bool isChanged = false;
};

/// What a full scan found, kept by folder, so that after a change only what changed is read again. A clean file costs
/// no memory. Reading blocks, as a scan does. Used by one thread at a time; file system and clock outlive it.
class ScanIndex {
 public:
  /// Scans the watched folders in full. Tells `progress` as the engine does, and `observer` of each folder before it is
  /// listed; either may be nullptr.
  static ScanIndex scan(const std::vector<WatchFolder>& folders, const FileSystem& fileSystem, const Clock& clock,
                        std::chrono::microseconds staleUploadThreshold = ICloudScanEngine::kDefaultStaleUploadThreshold,
                        ScanProgress* progress = nullptr, ListingObserver* observer = nullptr);

  ScanIndex(ScanIndex&&) noexcept;
  ScanIndex& operator=(ScanIndex&&) noexcept;
  ~ScanIndex();

  /// What ICloudScanEngine::scan would return now, had it found what the index holds; identifiers are new each time.
  /// Judged as of `generatedAt`, whatever the clock said before.
  SyncHealthReport report() const;

  /// Reads the named items alone, before the folders that hold them. The report where one of them blocks and the index
  /// did not know; absent otherwise. Its count of files may be one off for each item until the `update` that follows.
  std::optional<SyncHealthReport> glance(std::span<const FolderChange> changes);

  /// Reads again what changed: the folders that are named, with all below where a change is deep or an item is a
  /// folder. Changes may come twice, late, in any order, and of what no scan shows.
  UpdateResult update(std::span<const FolderChange> changes, ListingObserver* observer = nullptr);

  /// The next moment at which a file becomes stalled by the clock alone, for a report that was generated then; may be
  /// past by now. Absent when there is none. A clock that is set asks for a new report too.
  std::optional<Time> nextStall(Time generatedAt) const;

  /// Items that rule out a safe close, at most so many, each call going on where the one before ended. An item that is
  /// a folder of which we could not even tell is named by a deep change of its own.
  std::vector<FolderChange> blockedItems(std::size_t most);
  /// Reads the next blocked items again, by themselves where that suffices.
  UpdateResult readBlockedAgain(std::size_t most, ListingObserver* observer = nullptr);

  /// The folders that went since an index of the same watched folders was made, as an `update` of that one would have
  /// told them.
  std::vector<std::string> goneSince(const ScanIndex& former) const;

  /// Folders in which the two differ, but for those that the changes touch. The order of items is no difference.
  std::vector<std::string> differences(const ScanIndex& other, std::span<const FolderChange> except) const;

 private:
  ScanIndex(const FileSystem& fileSystem, const Clock& clock, std::chrono::microseconds staleUploadThreshold);

  SyncHealthReport reportAt(Time now) const;
  IndexReading readingFor(ListingObserver* observer) const;
  UpdateResult resultOf(IndexReading reading) const;

  const FileSystem* fileSystem_;
  const Clock* clock_;
  std::chrono::microseconds staleUploadThreshold_;
  /// One a watched folder, in their order.
  std::vector<std::unique_ptr<IndexedTree>> trees_;
  /// How many blocked items stand before the next to be told.
  std::size_t nextBlocked_ = 0;
  /// Whether a glance has changed something that no update has told of yet.
  bool isChangedByGlance_ = false;
};

}  // namespace cirrovane
