#include "core/ReportDraft.h"

#include "base/Path.h"
#include "core/BlockerList.h"
#include "core/FolderNaming.h"
#include "core/TrustScoring.h"

#include <algorithm>
#include <iterator>

namespace cirrovane {
namespace {

constexpr std::string_view kUnreadableFolder = "The folder exists but cannot be read.";

/// The item's path with every occurrence of the folder path and a slash taken out; its last component if that leaves
/// nothing.
std::string relativePath(const std::string& itemPath, const std::string& folderPath) {
  const std::string prefix = folderPath + "/";
  std::string relative;
  std::size_t position = 0;
  for (std::size_t found = itemPath.find(prefix); found != std::string::npos; found = itemPath.find(prefix, position)) {
    relative.append(itemPath, position, found - position);
    position = found + prefix.size();
  }
  relative.append(itemPath, position);
  return relative.empty() ? std::string(lastPathComponent(itemPath)) : relative;
}

SyncHealthReport reportWithoutFolders(Time now, UUIDGenerator& makeID) {
  SyncHealthReport report;
  report.generatedAt = now;
  report.actions = {{makeID(), 1, "Add a critical folder",
                     "Start with client work, school, or invoices so the score reflects what matters."}};
  report.summary = "No watchlist folders are configured yet.";
  return report;
}

void appendMoving(std::vector<SyncBlocker>& target, std::vector<SyncBlocker> source) {
  if (target.empty()) {
    target = std::move(source);
    return;
  }
  target.insert(target.end(), std::make_move_iterator(source.begin()), std::make_move_iterator(source.end()));
}

}  // namespace

SyncHealthReport ReportDraft::finish() {
  if (report_.folderHealth.empty()) {
    return reportWithoutFolders(clock_.now(), makeID_);
  }
  SyncHealthReport report = std::move(report_);
  report.metrics.scannedFolders = std::ssize(report.folderHealth);
  if (report.folderHealth.size() > 1) {
    // Folders may overlap; each by itself holds no duplicates any more.
    report.blockers = deduplicate(std::move(report.blockers));
  }
  sortBlockers(report.blockers);
  // Cloud-only blockers weigh nothing, so they need not be taken out before the score.
  report.score = uploadTrustScore(report.blockers);
  report.localAvailabilityScore = localReadinessScore(report.metrics);
  report.status = healthState(report.score, report.blockers);
  report.safeToClose = isSafeToClose(report.status, report.blockers, report.metrics);
  report.actions = recommendedActions(report.blockers, report.metrics);
  report.generatedAt = clock_.now();
  std::ranges::stable_sort(report.folderHealth, [](const FolderHealth& lhs, const FolderHealth& rhs) {
    return lhs.folder.name < rhs.folder.name;
  });
  report.summary = summaryText(report.status, report.blockers, report.metrics);
  return report;
}

void ReportDraft::take(FolderHealth health, std::vector<SyncBlocker> blockers) {
  report_.folderHealth.push_back(std::move(health));
  appendMoving(report_.blockers, std::move(blockers));
}

FolderDraft::FolderDraft(const WatchFolder& folder, ReportDraft& report)
    : folder_(folder),
      report_(report),
      path_(withoutTrailingSlash(folder.path)),
      filesBefore_(report.report_.metrics.totalFiles) {
  if (!isInsideICloudDrive(path_)) {
    add(BlockerReason::outsideICloud, path_,
        "This folder is outside the iCloud Drive path, so upload trust is unknown.", std::nullopt, std::nullopt);
  }
}

void FolderDraft::endMissing() {
  endUnavailable("The folder path does not exist on this Mac.");
}

void FolderDraft::end(const WalkOutcome& outcome) {
  if (!outcome.isComplete) {
    if (!outcome.hasItems) {
      endUnavailable(kUnreadableFolder);
      return;
    }
    addUnavailability(kUnreadableFolder);
  }
  blockers_ = deduplicate(std::move(blockers_));
  const std::int64_t score = uploadTrustScore(blockers_);
  FolderHealth health{folder_.id, folder_, fileCount(), std::ssize(blockers_), healthState(score, blockers_), score};
  report_.take(std::move(health), std::move(blockers_));
}

/// The end of a folder that nothing was seen of, for which it does not matter where it lies.
void FolderDraft::endUnavailable(std::string_view details) {
  blockers_.clear();
  addUnavailability(details);
  report_.take({folder_.id, folder_, 0, 1, HealthState::danger, 0}, std::move(blockers_));
}

void FolderDraft::addUnavailability(std::string_view details) {
  ++report_.report_.metrics.errors;
  add(BlockerReason::unavailableFolder, path_, details, std::nullopt, std::nullopt);
}

void FolderDraft::add(BlockerReason reason, std::string path, std::string_view details,
                      const std::optional<Time>& modified, const std::optional<std::int64_t>& fileSize) {
  std::string words = reason == BlockerReason::unresolvedConflict
                          ? "Conflict state reported for " + relativePath(path, path_) + "."
                          : std::string(details);
  blockers_.push_back({report_.makeID_(), std::move(path), folder_.name, reason, std::move(words), modified, fileSize});
}

}  // namespace cirrovane
