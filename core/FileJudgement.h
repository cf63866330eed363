#pragma once

#include "core/BlockerReason.h"
#include "core/SyncHealthReport.h"
#include "platform/FileSystem.h"

#include <optional>
#include <string_view>

namespace cirrovane {

/// Whether a cloud file is still to be uploaded.
inline bool isPendingUpload(const ResourceValues& values) {
  return !values.isUploaded.value_or(true) || values.uploadingError;
}

/// Judges one item of a watched folder: counts it, and hands what stands against it to `add`, which takes a reason, the
/// words for it and a date. `isStale` says of a date whether an upload since then is stalled. A conflict comes without
/// words, since they need a path. Every scan of any kind asks here alone. Inline, because nearly every item is clean.
template <class IsStale, class Add>
void judgeItem(const std::optional<ResourceValues>& read, ScanMetrics& metrics, const IsStale& isStale,
               const Add& add) {
  if (!read) {
    ++metrics.errors;
    return;
  }
  const ResourceValues& values = *read;
  if (values.isDirectory) {
    return;
  }
  ++metrics.totalFiles;
  if (!values.isUbiquitousItem) {
    return;
  }
  const std::optional<Time>& modified = values.contentModificationDate;
  if (values.hasUnresolvedConflicts.value_or(false)) {
    ++metrics.unresolvedConflicts;
    add(BlockerReason::unresolvedConflict, std::string_view(), std::optional<Time>());
  }
  if (values.uploadingError) {
    ++metrics.errors;
    add(BlockerReason::uploadError, *values.uploadingError, modified);
  }
  if (values.downloadingError) {
    ++metrics.errors;
    add(BlockerReason::downloadError, *values.downloadingError, modified);
  }
  if (!values.isUploaded.value_or(true)) {
    ++metrics.pendingUploads;
    add(BlockerReason::notUploaded, std::string_view("Still pending upload."), modified);
  }
  if (values.isUploading.value_or(false) && modified && isStale(*modified)) {
    add(BlockerReason::stalledUpload, std::string_view("Upload appears stuck for more than 20 minutes."), modified);
  }
  if (values.downloadingStatus.value_or(DownloadingStatus::current) != DownloadingStatus::current) {
    ++metrics.notDownloaded;
    add(BlockerReason::notDownloaded, std::string_view("File is in cloud-only state on this Mac."), modified);
  }
}

}  // namespace cirrovane
