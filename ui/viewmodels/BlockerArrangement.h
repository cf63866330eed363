#pragma once

#include "base/Shared.h"
#include "base/Time.h"
#include "core/BlockerReason.h"
#include "core/PendingUploads.h"
#include "core/SyncHealthReport.h"
#include "core/UploadProgress.h"
#include "core/WatchFolder.h"

#include <QString>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What a list of very many blockers shows, and in which order, without a copy of their texts. Pure functions; callable
// on any thread.

namespace cirrovane {

enum class BlockerOrder : std::uint8_t { seriousness, name, path, size, waiting };

/// What the user wants to see of a report's blockers.
struct BlockerQuery {
  /// To occur in the path or the watched folder's name, whatever the case and the composition of its letters.
  QString search;
  std::optional<BlockerReason> reason;
  /// The folder at or below which they lie; empty for all.
  std::string folderPath;
  BlockerOrder order = BlockerOrder::seriousness;

  /// Whether it leaves nothing out, whatever the order.
  bool wantsAll() const { return search.trimmed().isEmpty() && !reason && folderPath.empty(); }

  friend bool operator==(const BlockerQuery&, const BlockerQuery&) = default;
};

/// Knows a blocker again in the next report: the same for no two of one report, but for a chance of one in millions.
std::size_t blockerKey(const SyncBlocker& blocker);

/// The blockers of a report that a query wants, in its order.
struct ArrangedBlockers {
  Shared<SyncHealthReport> report;
  /// Their places in the report.
  std::vector<std::uint32_t> places;
  /// Their keys; shared, since the next arrangement is compared with them elsewhere.
  std::shared_ptr<const std::vector<std::size_t>> keys = std::make_shared<const std::vector<std::size_t>>();
  /// The pending files whose waits are known, by path.
  std::vector<PendingUpload> waits;
  /// The reasons that occur in the whole report, in their declaration order.
  std::vector<BlockerReason> reasons;
  /// The watched folders in which any blocker of the report lies, in the report's order.
  std::vector<WatchFolder> folders;

  /// The blocker of a row below places.size().
  const SyncBlocker& at(std::size_t row) const { return report->blockers[places[row]]; }
  /// What is known of a blocker's wait; nullptr when it waits for no upload, or nobody knows since when.
  const PendingUpload* waitOf(const SyncBlocker& blocker) const;
};

/// Arranges a report's blockers; absent as soon as nobody wants that any more.
std::optional<ArrangedBlockers> arrange(const BlockerQuery& query, const Shared<SyncHealthReport>& report,
                                        const UploadRecord& uploads, Time now, const std::atomic<bool>& isUnwanted);

/// Rows that follow one another.
struct RowRun {
  std::size_t first = 0;
  std::size_t count = 0;

  friend bool operator==(const RowRun&, const RowRun&) = default;
};

/// What makes the rows of one list those of another, in few steps.
struct RowEdits {
  /// By their numbers in the old list, the last run first.
  std::vector<RowRun> removals;
  /// By their numbers in the new list, the first run first.
  std::vector<RowRun> insertions;
};

/// The edits between two lists of keys, which leave as many rows alone as may stay; absent when they are more than so
/// many runs.
std::optional<RowEdits> editsBetween(const std::vector<std::size_t>& before, const std::vector<std::size_t>& after,
                                     std::size_t mostRuns);

}  // namespace cirrovane
