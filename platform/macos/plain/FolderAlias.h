#pragma once

#include <string>
#include <string_view>

namespace cirrovane {

/// A folder as it was asked for, and the same folder without any link in its path, as the frameworks know it.
struct FolderAlias {
  std::string asked;
  std::string real;

  /// The path without links of the folder or of something below it, by its path as it was asked for.
  std::string realPathOf(std::string_view path) const;

  /// The path of the folder or of something below it as whoever asked knows it, by its path without links. A path that
  /// is not below the real folder stays as it is.
  std::string asAsked(std::string_view path) const;
};

}  // namespace cirrovane
