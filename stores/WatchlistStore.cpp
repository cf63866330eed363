#include "stores/WatchlistStore.h"

#include "base/UUID.h"
#include "core/FolderNaming.h"

#include <algorithm>
#include <utility>

namespace cirrovane {

WatchlistStore::WatchlistStore(const FileSystem& fileSystem, const FileStorage& storage, const Collation& collation,
                               std::optional<std::string> filePath)
    : fileSystem_(fileSystem),
      collation_(collation),
      list_(StoreFile(fileSystem, storage,
                      filePath ? std::move(*filePath) : defaultStoragePath(fileSystem, "watchlist.json"))) {
  bootstrapDefaultFolderIfNeeded();
}

void WatchlistStore::addFolder(const std::string& path) {
  restoreFolder({UUIDGenerator()(), watchFolderName(path), path});
}

void WatchlistStore::restoreFolder(const WatchFolder& folder) {
  if (std::ranges::find(folders(), folder.path, &WatchFolder::path) != folders().end()) {
    return;
  }
  std::vector<WatchFolder> folders = list_.value();
  folders.push_back(folder);
  std::ranges::stable_sort(folders, [this](const WatchFolder& lhs, const WatchFolder& rhs) {
    return collation_.compare(lhs.name, rhs.name) < 0;
  });
  list_.replace(std::move(folders));
}

void WatchlistStore::removeFolder(const UUID& id) {
  std::vector<WatchFolder> folders = list_.value();
  std::erase_if(folders, [&](const WatchFolder& folder) { return folder.id == id; });
  list_.replace(std::move(folders));
}

void WatchlistStore::bootstrapDefaultFolderIfNeeded() {
  if (!folders().empty()) {
    return;
  }
  if (std::optional<WatchFolder> folder = defaultFolder()) {
    list_.replace({std::move(*folder)});
  }
}

std::optional<WatchFolder> WatchlistStore::defaultFolder() const {
  std::string path = fileSystem_.homeDirectory() + std::string(kICloudDriveSubpath);
  if (!fileSystem_.exists(path)) {
    return std::nullopt;
  }
  std::string name = watchFolderName(path);
  return WatchFolder{UUIDGenerator()(), std::move(name), std::move(path)};
}

}  // namespace cirrovane
