#include "tests/core/NaiveScan.h"

#include <cmath>
#include <cstddef>
#include <optional>

namespace cirrovane::test {
namespace {

// Each rule is spelled out reason by reason rather than derived, so that a mistake in one table of the product does not
// find its twin here.

std::int64_t weightOf(BlockerReason reason) {
  switch (reason) {
    case BlockerReason::unresolvedConflict:
      return 30;
    case BlockerReason::unavailableFolder:
    case BlockerReason::uploadError:
    case BlockerReason::downloadError:
      return 24;
    case BlockerReason::outsideICloud:
    case BlockerReason::stalledUpload:
      return 16;
    case BlockerReason::notUploaded:
      return 10;
    case BlockerReason::notDownloaded:
      return 0;
  }
  return -1;
}

std::int64_t capOf(BlockerReason reason) {
  switch (reason) {
    case BlockerReason::unresolvedConflict:
    case BlockerReason::uploadError:
    case BlockerReason::downloadError:
      return 60;
    case BlockerReason::unavailableFolder:
    case BlockerReason::outsideICloud:
    case BlockerReason::stalledUpload:
    case BlockerReason::notUploaded:
      return 40;
    case BlockerReason::notDownloaded:
      return 0;
  }
  return -1;
}

std::int64_t countOf(const std::vector<SyncBlocker>& blockers, BlockerReason reason) {
  std::int64_t count = 0;
  for (const SyncBlocker& blocker : blockers) {
    if (blocker.reason == reason) {
      ++count;
    }
  }
  return count;
}

bool has(const std::vector<SyncBlocker>& blockers, BlockerReason reason) {
  return countOf(blockers, reason) > 0;
}

bool hasOnlyCloudOnly(const std::vector<SyncBlocker>& blockers) {
  return countOf(blockers, BlockerReason::notDownloaded) == static_cast<std::int64_t>(blockers.size());
}

bool goesBefore(const SyncBlocker& first, const SyncBlocker& second) {
  if (weightOf(first.reason) != weightOf(second.reason)) {
    return weightOf(first.reason) > weightOf(second.reason);
  }
  if (first.lastModified.has_value() != second.lastModified.has_value()) {
    return first.lastModified.has_value();
  }
  if (first.lastModified.has_value()) {
    return *first.lastModified < *second.lastModified;
  }
  return first.filePath < second.filePath;
}

std::int64_t naiveScore(const std::vector<SyncBlocker>& blockers) {
  const std::int64_t score = 100 - naivePenalty(blockers);
  return score < 0 ? 0 : score;
}

std::string withoutFolder(const std::string& path, const std::string& folder) {
  const std::string prefix = folder + "/";
  std::string rest = path;
  std::size_t from = 0;
  while (true) {
    const std::size_t found = rest.find(prefix, from);
    if (found == std::string::npos) {
      return rest;
    }
    rest = rest.substr(0, found) + rest.substr(found + prefix.size());
    from = found;
  }
}

SyncBlocker blockerOf(BlockerReason reason, const std::string& path, const WatchFolder& folder,
                      const std::string& details, std::optional<Time> modified) {
  SyncBlocker blocker;
  blocker.reason = reason;
  blocker.filePath = path;
  blocker.folderName = folder.name;
  blocker.details = details;
  blocker.lastModified = modified;
  return blocker;
}

void examine(const FakeFileSystem::FakeItem& item, const WatchFolder& folder, const std::string& folderPath, Time now,
             ScanMetrics& metrics, std::vector<SyncBlocker>& found) {
  const FakeValues& values = *item.values;
  const std::optional<Time> modified = values.contentModificationDate;
  if (values.hasUnresolvedConflicts.has_value() && *values.hasUnresolvedConflicts) {
    metrics.unresolvedConflicts += 1;
    found.push_back(blockerOf(BlockerReason::unresolvedConflict, item.path, folder,
                              "Conflict state reported for " + withoutFolder(item.path, folderPath) + ".",
                              std::nullopt));
  }
  if (values.uploadingError.has_value()) {
    metrics.errors += 1;
    found.push_back(blockerOf(BlockerReason::uploadError, item.path, folder, *values.uploadingError, modified));
  }
  if (values.downloadingError.has_value()) {
    metrics.errors += 1;
    found.push_back(blockerOf(BlockerReason::downloadError, item.path, folder, *values.downloadingError, modified));
  }
  if (values.isUploaded.has_value() && !*values.isUploaded) {
    metrics.pendingUploads += 1;
    found.push_back(blockerOf(BlockerReason::notUploaded, item.path, folder, "Still pending upload.", modified));
  }
  if (values.isUploading.has_value() && *values.isUploading && modified.has_value()) {
    const std::int64_t ageInMicroseconds = (now - *modified).count();
    if (ageInMicroseconds > 1'200'000'000) {
      found.push_back(blockerOf(BlockerReason::stalledUpload, item.path, folder,
                                "Upload appears stuck for more than 20 minutes.", modified));
    }
  }
  if (values.downloadingStatus.has_value() && *values.downloadingStatus != DownloadingStatus::current) {
    metrics.notDownloaded += 1;
    found.push_back(blockerOf(BlockerReason::notDownloaded, item.path, folder,
                              "File is in cloud-only state on this Mac.", modified));
  }
}

}  // namespace

std::vector<SyncBlocker> naiveWithoutDuplicates(const std::vector<SyncBlocker>& blockers) {
  std::vector<SyncBlocker> kept;
  for (const SyncBlocker& blocker : blockers) {
    bool isKnown = false;
    for (const SyncBlocker& earlier : kept) {
      isKnown = isKnown || (earlier.reason == blocker.reason && earlier.filePath == blocker.filePath);
    }
    if (!isKnown) {
      kept.push_back(blocker);
    }
  }
  return kept;
}

std::int64_t naivePenalty(const std::vector<SyncBlocker>& blockers) {
  std::int64_t sum = 0;
  for (const BlockerReason reason : kAllBlockerReasons) {
    const std::int64_t all = weightOf(reason) * countOf(blockers, reason);
    sum += all > capOf(reason) ? capOf(reason) : all;
  }
  return sum;
}

HealthState naiveState(std::int64_t score, const std::vector<SyncBlocker>& blockers) {
  if (hasOnlyCloudOnly(blockers) && score >= 95) {
    return HealthState::safe;
  }
  return score <= 69 ? HealthState::danger : HealthState::warning;
}

std::vector<SyncBlocker> naiveSorted(const std::vector<SyncBlocker>& blockers) {
  std::vector<SyncBlocker> sorted;
  for (const SyncBlocker& blocker : blockers) {
    std::size_t place = sorted.size();
    while (place > 0 && goesBefore(blocker, sorted[place - 1])) {
      --place;
    }
    sorted.insert(sorted.begin() + static_cast<std::ptrdiff_t>(place), blocker);
  }
  return sorted;
}

std::int64_t naiveLocalScore(std::int64_t totalFiles, std::int64_t notDownloaded) {
  if (totalFiles < 1) {
    return 100;
  }
  const double local = totalFiles > notDownloaded ? static_cast<double>(totalFiles - notDownloaded) : 0.0;
  return static_cast<std::int64_t>(std::floor(local / static_cast<double>(totalFiles) * 100.0 + 0.5));
}

std::vector<RecommendedAction> naiveActions(const std::vector<SyncBlocker>& blockers, std::int64_t pendingUploads) {
  std::vector<RecommendedAction> actions;
  const auto add = [&](const std::string& title, const std::string& detail) {
    if (actions.size() < 3) {
      RecommendedAction action;
      action.rank = static_cast<std::int64_t>(actions.size()) + 1;
      action.title = title;
      action.detail = detail;
      actions.push_back(action);
    }
  };
  if (blockers.empty()) {
    add("You are clear", "No blockers were detected. Keep scans running before major travel or shutdown events.");
    return actions;
  }
  if (has(blockers, BlockerReason::unavailableFolder)) {
    add("Reconnect missing watchlist folders",
        "Open Watchlist and remove/re-add any folder paths that no longer exist on this Mac.");
  }
  if (has(blockers, BlockerReason::unresolvedConflict)) {
    add("Resolve file conflicts first",
        "Open conflicted files and decide which version is canonical before more edits happen.");
  }
  if (has(blockers, BlockerReason::uploadError) || has(blockers, BlockerReason::downloadError)) {
    add("Stabilize network and re-check",
        "Confirm reliable internet, then run scan again before trying deeper troubleshooting.");
  }
  if (has(blockers, BlockerReason::stalledUpload) || pendingUploads >= 1) {
    add("Keep Mac awake until pending uploads clear",
        "Avoid shutdown or travel until pending files drop to zero in the next scan cycle.");
  }
  if (has(blockers, BlockerReason::outsideICloud)) {
    add("Move critical folders into iCloud Drive", "Folders outside iCloud cannot be covered by upload trust checks.");
  }
  if (actions.empty()) {
    add("Run another scan in 2-3 minutes", "If blockers persist across scans, export a proof packet for support.");
  }
  return actions;
}

std::string naiveSummary(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics) {
  if (blockers.empty()) {
    return "No blockers detected in your watchlist.";
  }
  if (hasOnlyCloudOnly(blockers) && metrics.notDownloaded >= 1) {
    return "Upload trust is strong. " + std::to_string(metrics.notDownloaded) + " files are cloud-only on this Mac.";
  }
  if (status == HealthState::safe) {
    return "Minor issues found, but critical upload risk appears clear.";
  }
  if (status == HealthState::warning) {
    return std::to_string(blockers.size()) + " issues found. Review blockers before leaving or shutting down.";
  }
  return "Sync trust is low: " + std::to_string(metrics.pendingUploads) + " pending uploads and " +
         std::to_string(metrics.errors) + " errors need attention.";
}

bool naiveVerdict(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics) {
  for (const SyncBlocker& blocker : blockers) {
    if (blocker.reason != BlockerReason::outsideICloud && blocker.reason != BlockerReason::notDownloaded) {
      return false;
    }
  }
  return status == HealthState::safe && metrics.pendingUploads == 0 && metrics.unresolvedConflicts == 0 &&
         metrics.errors == 0;
}

SyncHealthReport naiveScan(const NaiveWorld& world, const std::vector<WatchFolder>& watched) {
  SyncHealthReport report;
  report.generatedAt = world.now;
  if (watched.empty()) {
    report.status = HealthState::warning;
    report.score = 0;
    report.localAvailabilityScore = 0;
    report.safeToClose = false;
    RecommendedAction action;
    action.rank = 1;
    action.title = "Add a critical folder";
    action.detail = "Start with client work, school, or invoices so the score reflects what matters.";
    report.actions.push_back(action);
    report.summary = "No watchlist folders are configured yet.";
    return report;
  }

  ScanMetrics& metrics = report.metrics;
  std::vector<SyncBlocker> all;
  std::vector<FolderHealth> results;
  for (const WatchFolder& folder : watched) {
    std::string path = folder.path;
    while (path.size() > 1 && path[path.size() - 1] == '/') {
      path = path.substr(0, path.size() - 1);
    }
    metrics.scannedFolders += 1;
    FolderHealth result;
    result.id = folder.id;
    result.folder = folder;

    const auto listable = world.folders.find(path);
    const bool exists = listable != world.folders.end() || world.unlistable.contains(path);
    const bool breaksOff = world.brokenOff.contains(path);
    if (listable == world.folders.end() || (breaksOff && listable->second.empty())) {
      metrics.errors += 1;
      all.push_back(
          blockerOf(BlockerReason::unavailableFolder, path, folder,
                    exists ? "The folder exists but cannot be read." : "The folder path does not exist on this Mac.",
                    std::nullopt));
      result.scannedFileCount = 0;
      result.blockerCount = 1;
      result.status = HealthState::danger;
      result.score = 0;
      results.push_back(result);
      continue;
    }

    std::vector<SyncBlocker> own;
    if (path.find("/Library/Mobile Documents/com~apple~CloudDocs") == std::string::npos) {
      own.push_back(blockerOf(BlockerReason::outsideICloud, path, folder,
                              "This folder is outside the iCloud Drive path, so upload trust is unknown.",
                              std::nullopt));
    }
    for (const FakeFileSystem::FakeItem& item : listable->second) {
      if (!item.values.has_value()) {
        metrics.errors += 1;
        continue;
      }
      if (item.values->isDirectory) {
        continue;
      }
      result.scannedFileCount += 1;
      metrics.totalFiles += 1;
      if (item.values->isUbiquitousItem) {
        examine(item, folder, path, world.now, metrics, own);
      }
    }
    if (breaksOff) {
      metrics.errors += 1;
      own.push_back(blockerOf(BlockerReason::unavailableFolder, path, folder, "The folder exists but cannot be read.",
                              std::nullopt));
    }
    own = naiveWithoutDuplicates(own);
    result.blockerCount = static_cast<std::int64_t>(own.size());
    result.score = naiveScore(own);
    result.status = naiveState(result.score, own);
    results.push_back(result);
    for (const SyncBlocker& blocker : own) {
      all.push_back(blocker);
    }
  }

  report.blockers = naiveSorted(naiveWithoutDuplicates(all));
  std::vector<SyncBlocker> scored;
  for (const SyncBlocker& blocker : report.blockers) {
    if (blocker.reason != BlockerReason::notDownloaded) {
      scored.push_back(blocker);
    }
  }
  report.score = naiveScore(scored);
  report.localAvailabilityScore = naiveLocalScore(metrics.totalFiles, metrics.notDownloaded);
  report.status = naiveState(report.score, report.blockers);
  report.safeToClose = naiveVerdict(report.status, report.blockers, metrics);
  report.actions = naiveActions(report.blockers, metrics.pendingUploads);
  for (const FolderHealth& result : results) {
    std::size_t place = report.folderHealth.size();
    while (place > 0 && result.folder.name < report.folderHealth[place - 1].folder.name) {
      --place;
    }
    report.folderHealth.insert(report.folderHealth.begin() + static_cast<std::ptrdiff_t>(place), result);
  }
  report.summary = naiveSummary(report.status, report.blockers, metrics);
  return report;
}

SyncHealthReport withoutFreshIdentifiers(SyncHealthReport report) {
  for (SyncBlocker& blocker : report.blockers) {
    blocker.id = UUID();
  }
  for (RecommendedAction& action : report.actions) {
    action.id = UUID();
  }
  return report;
}

}  // namespace cirrovane::test
