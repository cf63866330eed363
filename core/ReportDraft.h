#pragma once

#include "base/UUID.h"
#include "core/FileJudgement.h"
#include "core/ScanProgress.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane {

/// How a walk over a watched folder went.
struct WalkOutcome {
  /// Whether the walk told of anything at all.
  bool hasItems = false;
  /// Whether the folder that it began at was listed to its end.
  bool isComplete = false;

  friend bool operator==(const WalkOutcome&, const WalkOutcome&) = default;
};

/// Walks over a folder and hands each batch to `take`, which answers how many files it holds.
template <class Take>
WalkOutcome walkFolder(const FileSystem& fileSystem, const WalkRequest& request, ScanProgress* progress,
                       const Take& take) {
  const std::unique_ptr<FolderWalk> walk = fileSystem.enumerate(request);
  WalkOutcome outcome;
  while (const ItemBatch* batch = walk ? walk->next() : nullptr) {
    outcome.hasItems = true;
    const std::int64_t fileCount = take(*batch);
    if (progress != nullptr) {
      progress->addFiles(fileCount);
    }
  }
  outcome.isComplete = walk && walk->isComplete();
  return outcome;
}

/// A report in the making: takes in the watched folders one after another, each by a FolderDraft.
class ReportDraft {
 public:
  ReportDraft(const Clock& clock, std::chrono::microseconds staleUploadThreshold)
      : clock_(clock), staleUploadThreshold_(staleUploadThreshold) {}

  /// The report over the folders that were taken in, as of the clock's time. The draft is used up.
  SyncHealthReport finish();

 private:
  friend class FolderDraft;

  /// Compares without subtracting, because a date out of a damaged file system may lie anywhere.
  bool isStale(Time modified) const { return modified < clock_.now() - staleUploadThreshold_; }
  void take(FolderHealth health, std::vector<SyncBlocker> blockers);

  const Clock& clock_;
  std::chrono::microseconds staleUploadThreshold_;
  UUIDGenerator makeID_;
  SyncHealthReport report_;
};

/// What is found in one watched folder. Ends with exactly one of `endMissing` and `end`.
class FolderDraft {
 public:
  /// Both outlive the draft.
  FolderDraft(const WatchFolder& folder, ReportDraft& report);

  /// The folder's path without a trailing slash.
  const std::string& path() const { return path_; }

  /// Takes in an item; `pathOf` makes its absolute path where somebody needs it.
  template <class PathOf>
  void examine(const std::optional<ResourceValues>& values, const PathOf& pathOf) {
    judgeItem(
        values, report_.report_.metrics, [this](Time modified) { return report_.isStale(modified); },
        [&](BlockerReason reason, std::string_view details, const std::optional<Time>& modified) {
          add(reason, pathOf(), details, modified, values->fileSize);
        });
  }
  /// Takes in files that nothing stands against.
  void addCleanFiles(std::int64_t count) { report_.report_.metrics.totalFiles += count; }
  /// Files taken in so far.
  std::int64_t fileCount() const { return report_.report_.metrics.totalFiles - filesBefore_; }

  void endMissing();
  void end(const WalkOutcome& outcome);

 private:
  void add(BlockerReason reason, std::string path, std::string_view details, const std::optional<Time>& modified,
           const std::optional<std::int64_t>& fileSize);
  void endUnavailable(std::string_view details);
  void addUnavailability(std::string_view details);

  const WatchFolder& folder_;
  ReportDraft& report_;
  std::string path_;
  std::int64_t filesBefore_;
  std::vector<SyncBlocker> blockers_;
};

}  // namespace cirrovane
