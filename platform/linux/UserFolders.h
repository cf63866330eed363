#pragma once

#include <functional>
#include <string>

namespace cirrovane {

/// Where the user's own folders are: real paths without a trailing slash, found anew at each call. Callable on any
/// thread.
struct UserFolders {
  std::function<std::string()> home;
  /// Where programs keep the user's data.
  std::function<std::string()> applicationSupport;
  /// Where programs keep the user's settings.
  std::function<std::string()> preferences;
};

}  // namespace cirrovane
