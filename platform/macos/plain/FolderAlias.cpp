#include "platform/macos/plain/FolderAlias.h"

#include "base/Path.h"

#include <algorithm>

namespace cirrovane {
namespace {

/// The path below one folder as it is below another; a path that is not below the first stays as it is.
std::string replaced(std::string_view path, std::string_view from, std::string_view to) {
  from = withoutTrailingSlash(from);
  const bool isThere =
      path.starts_with(from) && (from.ends_with('/') || path.size() == from.size() || path[from.size()] == '/');
  if (!isThere) {
    return std::string(path);
  }
  std::string_view below = path.substr(from.size());
  below.remove_prefix(std::min(below.find_first_not_of('/'), below.size()));
  std::string found(withoutTrailingSlash(to));
  if (!below.empty()) {
    found += found.ends_with('/') ? "" : "/";
    found += below;
  }
  return found;
}

}  // namespace

std::string FolderAlias::realPathOf(std::string_view path) const {
  return replaced(path, asked, real);
}

std::string FolderAlias::asAsked(std::string_view path) const {
  return replaced(path, real, asked);
}

}  // namespace cirrovane
