#pragma once

#include "base/Published.h"
#include "core/WatchFolder.h"
#include "platform/Collation.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/StoredList.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The user's critical folders, sorted by name after every addition, and their file "watchlist.json". Every change is
/// written at once; a failure to write leaves the list changed and the file as it was. Main thread only.
class WatchlistStore {
 public:
  /// Loads the file at the path, or at the default place. An empty list gets the iCloud Drive root as its first folder,
  /// where there is one: also when the user had removed all folders, so that a fresh start is never blind.
  WatchlistStore(const FileSystem& fileSystem, const FileStorage& storage, const Collation& collation,
                 std::optional<std::string> filePath = std::nullopt);

  const std::vector<WatchFolder>& folders() const { return list_.value(); }
  const Published<std::vector<WatchFolder>>& publishedFolders() const { return list_.published(); }

  /// Adds the folder under a name made from its path, unless exactly this path is watched already.
  void addFolder(const std::string& path);
  /// Adds an entry that was removed, as it was, unless exactly its path is watched already.
  void restoreFolder(const WatchFolder& folder);
  /// Removes every folder of the identifier.
  void removeFolder(const UUID& id);

  /// Why the latest change could not be written; absent when it was, or when there was none.
  const std::optional<Failure>& saveFailure() const { return list_.saveFailure(); }

 private:
  void bootstrapDefaultFolderIfNeeded();
  std::optional<WatchFolder> defaultFolder() const;

  const FileSystem& fileSystem_;
  const Collation& collation_;
  StoredList<WatchFolder> list_;
};

}  // namespace cirrovane
