#include "platform/macos/FolderAlias.h"

namespace cirrovane {

std::string FolderAlias::asAsked(std::string path) const {
  const bool isBelow = path.size() > real.size() && path.starts_with(real) && path[real.size()] == '/';
  if (isBelow) {
    path.replace(0, real.size(), asked);
  }
  return path;
}

}  // namespace cirrovane
