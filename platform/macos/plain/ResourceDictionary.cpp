#include "platform/macos/plain/ResourceDictionary.h"

#include <utility>

namespace cirrovane {

void addCloudState(const ResourceDictionary& dictionary, WalkScope scope, const TextKeeper& keep,
                   ResourceValues& values) {
  if (scope == WalkScope::everything) {
    values.isExcludedFromSync = dictionary.boolean(ResourceKey::ubiquitousItemIsExcludedFromSync);
    values.isSyncPaused = dictionary.boolean(ResourceKey::ubiquitousItemIsSyncPaused);
    values.isPackage = dictionary.boolean(ResourceKey::isPackage);
  }
  values.isUbiquitousItem = dictionary.boolean(ResourceKey::isUbiquitousItem).value_or(false);
  if (!values.isUbiquitousItem) {
    return;
  }
  const auto text = [&](ResourceKey key) {
    std::optional<std::string> told = dictionary.errorText(key);
    return told ? std::optional(keep(std::move(*told))) : std::nullopt;
  };
  values.isUploaded = dictionary.boolean(ResourceKey::ubiquitousItemIsUploaded);
  values.isUploading = dictionary.boolean(ResourceKey::ubiquitousItemIsUploading);
  values.hasUnresolvedConflicts = dictionary.boolean(ResourceKey::ubiquitousItemHasUnresolvedConflicts);
  values.downloadingStatus = dictionary.downloadingStatus();
  values.uploadingError = text(ResourceKey::ubiquitousItemUploadingError);
  values.downloadingError = text(ResourceKey::ubiquitousItemDownloadingError);
}

DownloadingStatus downloadingStatusOf(std::string_view text, const DownloadingStatusNames& names) {
  if (text == names.current) {
    return DownloadingStatus::current;
  }
  return text == names.downloaded ? DownloadingStatus::downloaded : DownloadingStatus::notDownloaded;
}

}  // namespace cirrovane
