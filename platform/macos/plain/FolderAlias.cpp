#include "platform/macos/plain/FolderAlias.h"

namespace cirrovane {
namespace {

bool leadsBelow(std::string_view folder, std::string_view path) {
  if (folder.empty()) {
    return false;
  }
  while (folder.ends_with('/')) {
    folder.remove_suffix(1);
  }
  return path.starts_with(folder) && path.substr(folder.size()).find_first_not_of('/') != std::string_view::npos &&
         path[folder.size()] == '/';
}

}  // namespace

std::string FolderAlias::asAsked(std::string path) const {
  const bool isBelow = path.size() > real.size() && path.starts_with(real) && path[real.size()] == '/';
  if (isBelow) {
    path.replace(0, real.size(), asked);
  }
  return path;
}

bool FolderAlias::isBelow(std::string_view path) const {
  return leadsBelow(real, path) || leadsBelow(asked, path);
}

}  // namespace cirrovane
