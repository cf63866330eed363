#pragma once

#include <string_view>

namespace cirrovane {

// Paths as texts, of any bytes. Nothing asks the disk.

/// Whether a system can be given the path: it would take one with a NUL in it to end there, and answer for another
/// item.
constexpr bool isAddressable(std::string_view path) {
  return path.find('\0') == std::string_view::npos;
}

/// What follows the last slash: the whole text without one, nothing where it ends in one.
constexpr std::string_view lastPathComponent(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

/// What stands before the last slash: nothing for an item of the root, the whole text without a slash.
constexpr std::string_view parentPath(std::string_view path) {
  return path.substr(0, path.rfind('/'));
}

/// The path without its trailing slashes; the root stays "/".
constexpr std::string_view withoutTrailingSlash(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') {
    path.remove_suffix(1);
  }
  return path;
}

/// Whether the path is the folder's own or lies below it.
constexpr bool isAtOrBelow(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) &&
         (path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/');
}

}  // namespace cirrovane
