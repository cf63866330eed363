#include "platform/macos/plain/PackageExtensions.h"

namespace cirrovane {

bool PackageExtensions::isPackageName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  // A name that only consists of an ending is hidden, not a package.
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) {
    return false;
  }
  const std::string_view extension = name.substr(dot + 1);
  const std::lock_guard lock(mutex_);
  auto known = known_.find(extension);
  if (known == known_.end()) {
    known = known_.emplace(extension, isPackageExtension_(extension)).first;
  }
  return known->second;
}

}  // namespace cirrovane
