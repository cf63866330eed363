#include "core/ICloudScanEngine.h"

#include "core/ReportDraft.h"

#include <cstdint>

namespace cirrovane {

SyncHealthReport ICloudScanEngine::scan(const std::vector<WatchFolder>& folders) const {
  ReportDraft report(clock_, staleUploadThreshold_);
  for (const WatchFolder& watched : folders) {
    FolderDraft folder(watched, report);
    if (!fileSystem_.exists(folder.path())) {
      folder.endMissing();
      continue;
    }
    if (progress_ != nullptr) {
      progress_->enterFolder(folder.path());
    }
    folder.end(walkFolder(fileSystem_, WalkRequest{folder.path()}, progress_, [&](const ItemBatch& batch) {
      const std::int64_t countBefore = folder.fileCount();
      for (const Item& item : batch.items()) {
        folder.examine(item.values, [&] { return batch.path(item); });
      }
      return folder.fileCount() - countBefore;
    }));
  }
  return report.finish();
}

}  // namespace cirrovane
