#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace cirrovane {

/// The ending of a folder's name that may make a package of it; empty for a name without one. Then it is none: the
/// system makes a package of such a folder by a mark that hardly any bears, and to enter one shows more of it, never
/// less.
std::string_view packageExtensionOf(std::string_view name);

/// Which folders are packages, by the endings of their names. Asks once about each ending. Callable on any thread.
class PackageExtensions {
 public:
  using Question = std::function<bool(std::string_view extension)>;

  explicit PackageExtensions(Question isPackageExtension) : isPackageExtension_(std::move(isPackageExtension)) {}

  /// Whether a folder of this name is a package.
  bool isPackageName(std::string_view name);

 private:
  Question isPackageExtension_;
  std::mutex mutex_;
  std::map<std::string, bool, std::less<>> known_;
};

}  // namespace cirrovane
