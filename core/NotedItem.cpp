#include "core/NotedItem.h"

#include "core/TrustScoring.h"

#include <string_view>
#include <tuple>

namespace cirrovane {
namespace {

std::optional<std::string> kept(std::optional<std::string_view> text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

}  // namespace

bool isBlocking(const std::optional<ResourceValues>& values, Time staleBefore) {
  bool isForbidden = false;
  ScanMetrics metrics;
  judgeItem(
      values, metrics, [&](Time modified) { return modified < staleBefore; },
      [&](BlockerReason reason, const auto&...) { isForbidden = isForbidden || forbidsSafeToClose(reason); });
  return isForbidden || metrics.errors > 0;
}

NotedItem::NotedItem(const Item& item) : name_(item.name), isReadable_(item.values.has_value()) {
  if (!item.values) {
    return;
  }
  const ResourceValues& values = *item.values;
  if (values.uploadingError || values.downloadingError) {
    texts_ = std::make_unique<const Texts>(Texts{kept(values.uploadingError), kept(values.downloadingError)});
  }
  modified_ = values.contentModificationDate.value_or(Time());
  size_ = values.fileSize.value_or(0);
  isUbiquitous_ = values.isUbiquitousItem;
  isSized_ = values.fileSize.has_value();
  isDated_ = values.contentModificationDate.has_value();
  isUploaded_ = values.isUploaded;
  isUploading_ = values.isUploading;
  hasUnresolvedConflicts_ = values.hasUnresolvedConflicts;
  downloadingStatus_ = values.downloadingStatus;
}

std::optional<ResourceValues> NotedItem::values() const {
  if (!isReadable_) {
    return std::nullopt;
  }
  ResourceValues values;
  values.isUbiquitousItem = isUbiquitous_;
  values.isUploaded = isUploaded_;
  values.isUploading = isUploading_;
  values.hasUnresolvedConflicts = hasUnresolvedConflicts_;
  values.downloadingStatus = downloadingStatus_;
  if (texts_ != nullptr) {
    values.uploadingError = texts_->uploadingError;
    values.downloadingError = texts_->downloadingError;
  }
  if (isDated_) {
    values.contentModificationDate = modified_;
  }
  if (isSized_) {
    values.fileSize = size_;
  }
  return values;
}

bool operator==(const NotedItem& lhs, const NotedItem& rhs) {
  const auto plain = [](const NotedItem& item) {
    return std::tie(item.name_, item.modified_, item.size_, item.isReadable_, item.isUbiquitous_, item.isDated_,
                    item.isSized_, item.isUploaded_, item.isUploading_, item.hasUnresolvedConflicts_,
                    item.downloadingStatus_);
  };
  if (plain(lhs) != plain(rhs) || (lhs.texts_ == nullptr) != (rhs.texts_ == nullptr)) {
    return false;
  }
  return lhs.texts_ == nullptr || *lhs.texts_ == *rhs.texts_;
}

}  // namespace cirrovane
