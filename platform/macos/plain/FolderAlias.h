#pragma once

#include <string>
#include <string_view>

namespace cirrovane {

/// A folder as it was asked for, and the same folder without any link in its path, as the system walks it.
struct FolderAlias {
  std::string asked;
  std::string real;

  /// An item's path as whoever asked knows it: below the folder that was asked for. A path that is not below the real
  /// folder stays as it is.
  std::string asAsked(std::string path) const;

  /// Whether a path, by either of the folder's names, leads to something below the folder.
  bool isBelow(std::string_view path) const;
};

}  // namespace cirrovane
