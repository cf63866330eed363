#include "stores/UploadsStore.h"

#include <utility>

namespace cirrovane {

UploadsStore::UploadsStore(const FileSystem& fileSystem, const FileStorage& storage,
                           std::optional<std::string> filePath)
    : fileSystem_(fileSystem),
      file_(fileSystem, storage, filePath ? std::move(*filePath) : defaultStoragePath(fileSystem, "uploads.json"),
            kLayout) {}

UploadsStore::Look UploadsStore::note(const SyncHealthReport& report) const {
  Look look;
  look.failure = file_.change([&](UploadRecord& stored) {
    look.record = afterReport(stored, report);
    // Where nothing is pending and nothing was, there is nothing to write.
    return std::exchange(stored, look.record) != look.record;
  });
  if (look.failure) {
    look.record = recordAfter(report);
  }
  return look;
}

UploadRecord UploadsStore::recordAfter(const SyncHealthReport& report) const {
  return afterReport(file_.read(), report);
}

UploadRecord UploadsStore::afterReport(UploadRecord record, const SyncHealthReport& report) const {
  return afterLook(std::move(record), pendingFilesOf(report), report.generatedAt,
                   [this](const std::vector<std::string>& paths) { return uploadStates(fileSystem_, paths); });
}

}  // namespace cirrovane
