#include "platform/macos/plain/FolderAlias.h"

#include "base/Path.h"

#include <algorithm>

namespace cirrovane {

std::string FolderAlias::realPathOf(std::string_view path) const {
  const std::string_view top = withoutTrailingSlash(asked);
  const bool isBelow =
      path.starts_with(top) && (top.ends_with('/') || path.size() == top.size() || path[top.size()] == '/');
  if (!isBelow) {
    return std::string(path);
  }
  std::string_view below = path.substr(top.size());
  below.remove_prefix(std::min(below.find_first_not_of('/'), below.size()));
  std::string found(withoutTrailingSlash(real));
  if (!below.empty()) {
    found += found.ends_with('/') ? "" : "/";
    found += below;
  }
  return found;
}

}  // namespace cirrovane
