#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "base/UUID.h"
#include "core/HealthState.h"
#include "core/SyncBlocker.h"
#include "core/WatchFolder.h"

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// The result of one watched folder.
struct FolderHealth {
  /// The folder's own identifier.
  UUID id;
  /// The entry as it was scanned.
  WatchFolder folder;
  /// Items below the folder that are no folders.
  std::int64_t scannedFileCount = 0;
  /// Blockers of this folder without duplicates.
  std::int64_t blockerCount = 0;
  HealthState status = HealthState::warning;
  /// 0 to 100.
  std::int64_t score = 0;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &FolderHealth::id},
                      JSONField{"folder", &FolderHealth::folder},
                      JSONField{"scannedFileCount", &FolderHealth::scannedFileCount},
                      JSONField{"blockerCount", &FolderHealth::blockerCount},
                      JSONField{"status", &FolderHealth::status},
                      JSONField{"score", &FolderHealth::score}};
  }
  friend bool operator==(const FolderHealth&, const FolderHealth&) = default;
};

/// The counters of one scan.
struct ScanMetrics {
  /// Items that are no folders, over all watched folders.
  std::int64_t totalFiles = 0;
  /// Watched folders handed to the scan, missing ones included.
  std::int64_t scannedFolders = 0;
  std::int64_t pendingUploads = 0;
  std::int64_t unresolvedConflicts = 0;
  /// Missing folders, unreadable items, upload errors and download errors, each occurrence once.
  std::int64_t errors = 0;
  /// Files whose local copy is not current.
  std::int64_t notDownloaded = 0;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"totalFiles", &ScanMetrics::totalFiles},
                      JSONField{"scannedFolders", &ScanMetrics::scannedFolders},
                      JSONField{"pendingUploads", &ScanMetrics::pendingUploads},
                      JSONField{"unresolvedConflicts", &ScanMetrics::unresolvedConflicts},
                      JSONField{"errors", &ScanMetrics::errors},
                      JSONField{"notDownloaded", &ScanMetrics::notDownloaded}};
  }
  friend bool operator==(const ScanMetrics&, const ScanMetrics&) = default;
};

/// One ranked next step.
struct RecommendedAction {
  /// New for each action of each scan.
  UUID id;
  /// 1 for the first action of a report, and one more for each following one.
  std::int64_t rank = 0;
  std::string title;
  std::string detail;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &RecommendedAction::id}, JSONField{"rank", &RecommendedAction::rank},
                      JSONField{"title", &RecommendedAction::title}, JSONField{"detail", &RecommendedAction::detail}};
  }
  friend bool operator==(const RecommendedAction&, const RecommendedAction&) = default;
};

/// The result of one scan.
struct SyncHealthReport {
  HealthState status = HealthState::warning;
  /// Upload Trust, 0 to 100.
  std::int64_t score = 0;
  /// Share of files present on this machine, 0 to 100.
  std::int64_t localAvailabilityScore = 0;
  bool safeToClose = false;
  Time generatedAt;
  /// Without duplicates, the most serious first.
  std::vector<SyncBlocker> blockers;
  /// One a watched folder, by folder name.
  std::vector<FolderHealth> folderHealth;
  ScanMetrics metrics;
  /// At most three, in rank order.
  std::vector<RecommendedAction> actions;
  /// The report in one sentence.
  std::string summary;

  /// What is shown before any scan has run. Made once a process, at its first use, and then kept.
  static const SyncHealthReport& empty();

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"status", &SyncHealthReport::status},
                      JSONField{"score", &SyncHealthReport::score},
                      JSONField{"localAvailabilityScore", &SyncHealthReport::localAvailabilityScore},
                      JSONField{"safeToClose", &SyncHealthReport::safeToClose},
                      JSONField{"generatedAt", &SyncHealthReport::generatedAt},
                      JSONField{"blockers", &SyncHealthReport::blockers},
                      JSONField{"folderHealth", &SyncHealthReport::folderHealth},
                      JSONField{"metrics", &SyncHealthReport::metrics},
                      JSONField{"actions", &SyncHealthReport::actions},
                      JSONField{"summary", &SyncHealthReport::summary}};
  }
  friend bool operator==(const SyncHealthReport&, const SyncHealthReport&) = default;
};

/// Watched folders that a report leaves unseen: they are missing, or not in iCloud at all.
std::int64_t coverageGapCount(const SyncHealthReport& report);

}  // namespace cirrovane
