#include "stores/ScanHistoryStore.h"

#include "base/UUID.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cirrovane {
namespace {

ScanSnapshot snapshotOf(const SyncHealthReport& report) {
  ScanSnapshot snapshot;
  snapshot.id = UUIDGenerator()();
  snapshot.timestamp = report.generatedAt;
  snapshot.score = report.score;
  snapshot.status = report.status;
  snapshot.safeToClose = report.safeToClose;
  snapshot.blockerCount = std::ssize(report.blockers);
  snapshot.pendingUploads = report.metrics.pendingUploads;
  snapshot.localAvailabilityScore = report.localAvailabilityScore;
  if (!report.blockers.empty()) {
    const SyncBlocker& top = report.blockers.front();
    snapshot.topBlockerReason = top.reason;
    snapshot.topBlockerFilePath = top.filePath;
    snapshot.topBlockerFolderName = top.folderName;
  }
  return snapshot;
}

}  // namespace

ScanHistoryStore::ScanHistoryStore(const FileSystem& fileSystem, const FileStorage& storage,
                                   std::optional<std::string> filePath)
    : list_(StoreFile(fileSystem, storage,
                      filePath ? std::move(*filePath) : defaultStoragePath(fileSystem, "history.json"))) {}

void ScanHistoryStore::record(const SyncHealthReport& report) {
  const std::size_t keptCount = std::min(snapshots().size(), kMaximumSnapshots - 1);
  std::vector<ScanSnapshot> next;
  next.reserve(keptCount + 1);
  next.push_back(snapshotOf(report));
  next.insert(next.end(), snapshots().begin(), snapshots().begin() + static_cast<std::ptrdiff_t>(keptCount));
  list_.replace(std::move(next));
}

}  // namespace cirrovane
