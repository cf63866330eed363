#pragma once

#include "platform/FileSystem.h"

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace cirrovane {

/// What is asked of the system about an item's state in the cloud.
enum class ResourceKey {
  isUbiquitousItem,
  ubiquitousItemIsUploaded,
  ubiquitousItemIsUploading,
  ubiquitousItemDownloadingStatus,
  ubiquitousItemHasUnresolvedConflicts,
  ubiquitousItemUploadingError,
  ubiquitousItemDownloadingError,
  ubiquitousItemIsExcludedFromSync,
  ubiquitousItemIsSyncPaused,
  isPackage,
};

/// All of them. Walks over everything ask for the last three besides.
inline constexpr std::array<ResourceKey, 10> kResourceKeys = {
    ResourceKey::isUbiquitousItem,
    ResourceKey::ubiquitousItemIsUploaded,
    ResourceKey::ubiquitousItemIsUploading,
    ResourceKey::ubiquitousItemDownloadingStatus,
    ResourceKey::ubiquitousItemHasUnresolvedConflicts,
    ResourceKey::ubiquitousItemUploadingError,
    ResourceKey::ubiquitousItemDownloadingError,
    ResourceKey::ubiquitousItemIsExcludedFromSync,
    ResourceKey::ubiquitousItemIsSyncPaused,
    ResourceKey::isPackage,
};

/// Those that a walk asks for.
constexpr std::span<const ResourceKey> resourceKeysFor(WalkScope scope) {
  const std::span<const ResourceKey> all = kResourceKeys;
  return scope == WalkScope::everything ? all : all.first(7);
}

/// The system's answer about one item. A value that is missing, or of another type than the key's, is absent.
class ResourceDictionary {
 public:
  virtual ~ResourceDictionary() = default;
  virtual std::optional<bool> boolean(ResourceKey key) const = 0;
  virtual std::optional<DownloadingStatus> downloadingStatus() const = 0;
  /// The localized description of an error.
  virtual std::optional<std::string> errorText(ResourceKey key) const = 0;
};

/// Keeps a text for as long as the values that look at it.
using TextKeeper = std::function<std::string_view(std::string text)>;

/// Adds the item's state in the cloud to its values, as far as a walk tells of it. Of an item that the cloud knows
/// nothing of, nobody looks at the rest, but for what keeps it out of the cloud.
void addCloudState(const ResourceDictionary& dictionary, WalkScope scope, const TextKeeper& keep,
                   ResourceValues& values);

/// The texts by which the system names where a cloud item is.
struct DownloadingStatusNames {
  std::string_view current;
  std::string_view downloaded;
  std::string_view notDownloaded;
};

/// What a status text means. One that nobody knew when this was written is not the current version on this machine.
DownloadingStatus downloadingStatusOf(std::string_view text, const DownloadingStatusNames& names);

}  // namespace cirrovane
