#include "platform/macos/plain/PackageExtensions.h"

namespace cirrovane {

std::string_view packageExtensionOf(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  // A name that only consists of an ending is hidden, not a package.
  return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

bool PackageExtensions::isPackageName(std::string_view name) {
  const std::string_view extension = packageExtensionOf(name);
  if (extension.empty()) {
    return false;
  }
  const std::lock_guard lock(mutex_);
  auto known = known_.find(extension);
  if (known == known_.end()) {
    known = known_.emplace(extension, isPackageExtension_(extension)).first;
  }
  return known->second;
}

}  // namespace cirrovane
