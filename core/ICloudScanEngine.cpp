#include "core/ICloudScanEngine.h"

#include "base/Path.h"
#include "base/UUID.h"
#include "core/BlockerList.h"
#include "core/FolderNaming.h"
#include "core/TrustScoring.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace cirrovane {
namespace {

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

/// The walk over one folder: counts its files into the scan's metrics and collects the folder's blockers.
class FolderScan {
 public:
  FolderScan(const WatchFolder& folder, std::string folderPath, const Clock& clock,
             std::chrono::microseconds staleUploadThreshold, ScanMetrics& metrics, UUIDGenerator& makeID)
      : folder_(folder),
        folderPath_(std::move(folderPath)),
        clock_(clock),
        staleUploadThreshold_(staleUploadThreshold),
        metrics_(metrics),
        makeID_(makeID) {}

  FolderHealth missing() { return unavailable("The folder path does not exist on this Mac."); }

  FolderHealth walk(const FileSystem& fileSystem, ScanProgress* progress) {
    if (progress != nullptr) {
      progress->enterFolder(folderPath_);
    }
    if (!isInsideICloudDrive(folderPath_)) {
      addFolderBlocker(BlockerReason::outsideICloud,
                       "This folder is outside the iCloud Drive path, so upload trust is unknown.");
    }
    const std::unique_ptr<FolderWalk> walk = fileSystem.enumerate(folderPath_);
    bool hasItems = false;
    while (const ItemBatch* batch = walk ? walk->next() : nullptr) {
      hasItems = true;
      const std::int64_t countBefore = fileCount_;
      for (const Item& item : batch->items()) {
        examine(item, *batch);
      }
      if (progress != nullptr) {
        progress->addFiles(fileCount_ - countBefore);
      }
    }
    if (!walk || !walk->isComplete()) {
      if (!hasItems) {
        // Of a folder of which nothing was seen, it does not matter where it lies.
        blockers_.clear();
        return unavailable(kUnreadableFolder);
      }
      addUnavailability(kUnreadableFolder);
    }
    blockers_ = deduplicate(std::move(blockers_));
    const std::int64_t score = uploadTrustScore(blockers_);
    return {folder_.id, folder_, fileCount_, std::ssize(blockers_), healthState(score, blockers_), score};
  }

  std::vector<SyncBlocker> takeBlockers() { return std::move(blockers_); }

 private:
  static constexpr std::string_view kUnreadableFolder = "The folder exists but cannot be read.";

  /// The result of a folder that nothing was seen of.
  FolderHealth unavailable(std::string_view details) {
    addUnavailability(details);
    return {folder_.id, folder_, 0, 1, HealthState::danger, 0};
  }

  void addUnavailability(std::string_view details) {
    ++metrics_.errors;
    addFolderBlocker(BlockerReason::unavailableFolder, details);
  }

  void examine(const Item& item, const ItemBatch& batch) {
    if (!item.values) {
      ++metrics_.errors;
      return;
    }
    const ResourceValues& values = *item.values;
    if (values.isDirectory) {
      return;
    }
    ++fileCount_;
    ++metrics_.totalFiles;
    if (!values.isUbiquitousItem) {
      return;
    }

    const auto add = [&](BlockerReason reason, std::string details, std::optional<Time> lastModified) {
      blockers_.push_back({makeID_(), batch.path(item), folder_.name, reason, std::move(details), lastModified});
    };
    const std::optional<Time> modified = values.contentModificationDate;

    if (values.hasUnresolvedConflicts.value_or(false)) {
      ++metrics_.unresolvedConflicts;
      add(BlockerReason::unresolvedConflict,
          "Conflict state reported for " + relativePath(batch.path(item), folderPath_) + ".", std::nullopt);
    }
    if (values.uploadingError) {
      ++metrics_.errors;
      add(BlockerReason::uploadError, std::string(*values.uploadingError), modified);
    }
    if (values.downloadingError) {
      ++metrics_.errors;
      add(BlockerReason::downloadError, std::string(*values.downloadingError), modified);
    }
    if (!values.isUploaded.value_or(true)) {
      ++metrics_.pendingUploads;
      add(BlockerReason::notUploaded, "Still pending upload.", modified);
    }
    if (values.isUploading.value_or(false) && modified && isStale(*modified)) {
      add(BlockerReason::stalledUpload, "Upload appears stuck for more than 20 minutes.", modified);
    }
    if (values.downloadingStatus.value_or(DownloadingStatus::current) != DownloadingStatus::current) {
      ++metrics_.notDownloaded;
      add(BlockerReason::notDownloaded, "File is in cloud-only state on this Mac.", modified);
    }
  }

  /// Compares without subtracting, because a date out of a damaged file system may lie anywhere.
  bool isStale(Time modified) const { return modified < clock_.now() - staleUploadThreshold_; }

  void addFolderBlocker(BlockerReason reason, std::string_view details) {
    blockers_.push_back({makeID_(), folderPath_, folder_.name, reason, std::string(details), std::nullopt});
  }

  const WatchFolder& folder_;
  std::string folderPath_;
  const Clock& clock_;
  std::chrono::microseconds staleUploadThreshold_;
  ScanMetrics& metrics_;
  UUIDGenerator& makeID_;
  std::vector<SyncBlocker> blockers_;
  std::int64_t fileCount_ = 0;
};

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

SyncHealthReport ICloudScanEngine::scan(const std::vector<WatchFolder>& folders) const {
  UUIDGenerator makeID;
  if (folders.empty()) {
    return reportWithoutFolders(clock_.now(), makeID);
  }

  SyncHealthReport report;
  report.metrics.scannedFolders = std::ssize(folders);
  for (const WatchFolder& folder : folders) {
    std::string folderPath(withoutTrailingSlash(folder.path));
    const bool exists = fileSystem_.exists(folderPath);
    FolderScan folderScan(folder, std::move(folderPath), clock_, staleUploadThreshold_, report.metrics, makeID);
    report.folderHealth.push_back(exists ? folderScan.walk(fileSystem_, progress_) : folderScan.missing());
    appendMoving(report.blockers, folderScan.takeBlockers());
  }

  if (folders.size() > 1) {
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

}  // namespace cirrovane
