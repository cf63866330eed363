#pragma once

#include "platform/FileSystem.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// What is asked of the system about each item of a walk.
enum class ResourceKey {
  isDirectory,
  isRegularFile,
  isPackage,
  isUbiquitousItem,
  contentModificationDate,
  ubiquitousItemIsUploaded,
  ubiquitousItemIsUploading,
  ubiquitousItemDownloadingStatus,
  ubiquitousItemHasUnresolvedConflicts,
  ubiquitousItemUploadingError,
  ubiquitousItemDownloadingError,
};

/// All of them.
inline constexpr std::array<ResourceKey, 11> kResourceKeys = {
    ResourceKey::isDirectory,
    ResourceKey::isRegularFile,
    ResourceKey::isPackage,
    ResourceKey::isUbiquitousItem,
    ResourceKey::contentModificationDate,
    ResourceKey::ubiquitousItemIsUploaded,
    ResourceKey::ubiquitousItemIsUploading,
    ResourceKey::ubiquitousItemDownloadingStatus,
    ResourceKey::ubiquitousItemHasUnresolvedConflicts,
    ResourceKey::ubiquitousItemUploadingError,
    ResourceKey::ubiquitousItemDownloadingError,
};

/// The system's answer about one item. A value that is missing, or of another type than the key's, is absent.
class ResourceDictionary {
 public:
  virtual ~ResourceDictionary() = default;
  virtual std::optional<bool> boolean(ResourceKey key) const = 0;
  virtual std::optional<double> secondsSince1970(ResourceKey key) const = 0;
  virtual std::optional<DownloadingStatus> downloadingStatus() const = 0;
  /// The localized description of an error.
  virtual std::optional<std::string> errorText(ResourceKey key) const = 0;
};

/// The texts by which the system names where a cloud item is.
struct DownloadingStatusNames {
  std::string_view current;
  std::string_view downloaded;
  std::string_view notDownloaded;
};

/// What a status text means. One that nobody knew when this was written is not the current version on this machine.
DownloadingStatus downloadingStatusOf(std::string_view text, const DownloadingStatusNames& names);

}  // namespace cirrovane
