#include "coordinator/PendingChanges.h"

#include "base/Path.h"

#include <algorithm>

namespace cirrovane {
namespace {

/// Of one folder; beyond it to read the items apart gains nothing.
constexpr std::size_t kMostItems = 64;

}  // namespace

void PendingChanges::add(const std::vector<FolderChange>& changes, Uptime now) {
  for (const FolderChange& change : changes) {
    add(change);
  }
  if (!changes.empty() && !oldest_) {
    oldest_ = now;
  }
}

void PendingChanges::add(const PendingChanges& others) {
  for (const FolderChange& change : others.list()) {
    add(change);
  }
  if (others.oldest_) {
    oldest_ = std::min(oldest_.value_or(*others.oldest_), *others.oldest_);
  }
}

std::vector<FolderChange> PendingChanges::list() const {
  std::vector<FolderChange> changes;
  for (const auto& [path, folder] : folders_) {
    if (folder.isDeep) {
      changes.push_back({path, "", true});
    }
    if (folder.isWhole || (folder.items.empty() && !folder.isDeep)) {
      changes.push_back({path, "", false});
    }
    for (const std::string& item : folder.items) {
      changes.push_back({path, item, false});
    }
  }
  return changes;
}

bool PendingChanges::tells(std::string_view folder) const {
  if (folders_.contains(folder)) {
    return true;
  }
  for (std::string_view above = parentPath(folder); !above.empty(); above = parentPath(above)) {
    const auto found = folders_.find(above);
    if (found != folders_.end() && found->second.isDeep) {
      return true;
    }
    if (above.find('/') == std::string_view::npos) {
      break;
    }
  }
  return false;
}

void PendingChanges::add(const FolderChange& change) {
  Folder& folder = folders_[change.folder];
  folder.isDeep = folder.isDeep || change.isDeep;
  if (change.item.empty() || folder.isWhole || std::ranges::find(folder.items, change.item) != folder.items.end()) {
    return;
  }
  if (folder.items.size() < kMostItems) {
    folder.items.push_back(change.item);
  } else {
    folder.isWhole = true;
    folder.items.clear();
  }
}

}  // namespace cirrovane
