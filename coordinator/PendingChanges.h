#pragma once

#include "coordinator/LiveRules.h"
#include "platform/FolderWatch.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// Changes that were told and wait for their turn: each folder once, however often it was told, so that their number is
/// bounded by that of the folders.
class PendingChanges {
 public:
  void add(const std::vector<FolderChange>& changes, Uptime now);
  void add(const PendingChanges& others);
  void clear() { *this = {}; }

  bool isEmpty() const { return folders_.empty(); }
  /// When the oldest of them was told; absent when there is none.
  std::optional<Uptime> oldest() const { return oldest_; }
  /// In the order of their paths, a folder that may have changed throughout before what was told below it.
  std::vector<FolderChange> list() const;
  /// Whether a change of the folder, or of all below one that holds it, is among them.
  bool tells(std::string_view folder) const;

 private:
  struct Folder {
    std::vector<std::string> items;
    bool isDeep = false;
    /// So many items that the folder is better read by itself.
    bool isWhole = false;
  };

  void add(const FolderChange& change);

  std::map<std::string, Folder, std::less<>> folders_;
  std::optional<Uptime> oldest_;
};

}  // namespace cirrovane
