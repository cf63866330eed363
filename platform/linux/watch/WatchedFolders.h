#pragma once

#include "platform/posix/walk/WalkedFolder.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace cirrovane {

/// Which folders the system's watches stand for, by their paths below watched folders. One watch may stand for several,
/// since one folder may be reached by several paths.
class WatchedFolders {
 public:
  /// A folder, and its watch or -1. Its address holds until it is removed.
  using Folder = std::pair<const WalkedFolder, int>;

  /// Makes this a watched folder.
  void addRoot(const std::string& path);
  void clear();

  /// The folder at a path; nullptr when it is not known.
  Folder* find(std::string_view path);
  /// The folder at a path, made known where it was not; nullptr for a path below no watched folder.
  Folder* make(std::string_view path);
  /// nullptr when it is not known.
  Folder* child(const Folder& parent, std::string_view name);

  std::vector<Folder*> of(int watch) const;
  bool isUsed(int watch) const { return byWatch_.contains(watch); }

  /// Has a watch stand for the folder, in place of the one before.
  void bind(Folder& folder, int watch);
  /// The watch stands for no folder any more.
  void unbind(int watch);
  /// Removes the folder and all below it; a watched folder itself stays, without a watch. The watches that stood for
  /// them.
  std::vector<int> remove(Folder& folder);

 private:
  /// A folder's place, without a copy of its name.
  struct Place {
    const WalkedFolder* parent;
    std::string_view name;
  };
  /// Puts the folders below one folder next to each other.
  struct Order {
    using is_transparent = void;
    static Place placeOf(const WalkedFolder& folder) { return {folder.parent, folder.name}; }
    static Place placeOf(const Place& place) { return place; }
    template <class Left, class Right>
    bool operator()(const Left& left, const Right& right) const {
      return isBefore(placeOf(left), placeOf(right));
    }
    static bool isBefore(const Place& left, const Place& right);
  };

  Folder* at(const Place& place);
  Folder* rootOf(std::string_view path);
  /// The place of the folder at a path, step by step: `step` gives the folder at each place, or nullptr to end.
  template <class Step>
  Folder* descend(std::string_view path, Step step);
  void detach(Folder& folder);

  std::map<WalkedFolder, int, Order> folders_;
  std::unordered_multimap<int, Folder*> byWatch_;
};

}  // namespace cirrovane
