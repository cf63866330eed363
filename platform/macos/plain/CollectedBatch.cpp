#include "platform/macos/plain/CollectedBatch.h"

#include "base/Path.h"
#include "platform/macos/plain/FrameworkNumbers.h"

#include <utility>

namespace cirrovane {

void CollectedBatch::add(std::string path, const ResourceDictionary* dictionary) {
  const std::string& kept = paths_.emplace_back(std::move(path));
  Item& item = items_.emplace_back();
  item.name = lastPathComponent(kept);
  if (dictionary == nullptr) {
    return;
  }
  ResourceValues& values = item.values.emplace();
  values.isDirectory = dictionary->boolean(ResourceKey::isDirectory).value_or(false);
  item.isEntered = values.isDirectory && !dictionary->boolean(ResourceKey::isPackage).value_or(false);
  values.isUbiquitousItem = dictionary->boolean(ResourceKey::isUbiquitousItem).value_or(false);
  if (values.isDirectory || !values.isUbiquitousItem) {
    // Nobody looks at the rest of a folder or of an item that the cloud knows nothing of.
    return;
  }
  values.isUploaded = dictionary->boolean(ResourceKey::ubiquitousItemIsUploaded);
  values.isUploading = dictionary->boolean(ResourceKey::ubiquitousItemIsUploading);
  values.hasUnresolvedConflicts = dictionary->boolean(ResourceKey::ubiquitousItemHasUnresolvedConflicts);
  values.downloadingStatus = dictionary->downloadingStatus();
  values.uploadingError = keep(dictionary->errorText(ResourceKey::ubiquitousItemUploadingError));
  values.downloadingError = keep(dictionary->errorText(ResourceKey::ubiquitousItemDownloadingError));
  if (const auto seconds = dictionary->secondsSince1970(ResourceKey::contentModificationDate)) {
    values.contentModificationDate = timeOf(*seconds);
  }
}

void CollectedBatch::clear() {
  items_.clear();
  paths_.clear();
  texts_.clear();
}

std::string CollectedBatch::folderPath() const {
  return std::string(parentPath(paths_.front()));
}

std::string CollectedBatch::path(const Item& item) const {
  return paths_[static_cast<std::size_t>(&item - items_.data())];
}

std::optional<std::string_view> CollectedBatch::keep(std::optional<std::string> text) {
  return text ? std::optional<std::string_view>(texts_.emplace_back(std::move(*text))) : std::nullopt;
}

}  // namespace cirrovane
