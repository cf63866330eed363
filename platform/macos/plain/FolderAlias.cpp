#include "platform/macos/plain/FolderAlias.h"

#include "base/Path.h"

#include <algorithm>

namespace cirrovane {
namespace {

/// The path of the folder or of something below it by the folder's other name; any other path stays as it is.
std::string renamed(std::string_view path, std::string_view folder, std::string_view otherName) {
  const std::string_view top = withoutTrailingSlash(folder);
  const bool isBelow =
      path.starts_with(top) && (top.ends_with('/') || path.size() == top.size() || path[top.size()] == '/');
  if (!isBelow) {
    return std::string(path);
  }
  std::string_view below = path.substr(top.size());
  below.remove_prefix(std::min(below.find_first_not_of('/'), below.size()));
  std::string found(withoutTrailingSlash(otherName));
  if (!below.empty()) {
    found += found.ends_with('/') ? "" : "/";
    found += below;
  }
  return found;
}

}  // namespace

std::string FolderAlias::realPathOf(std::string_view path) const {
  return renamed(path, asked, real);
}

std::string FolderAlias::askedPathOf(std::string_view path) const {
  return renamed(path, real, asked);
}

}  // namespace cirrovane
