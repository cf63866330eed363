#include "core/FolderNaming.h"

namespace cirrovane {
namespace {

constexpr std::string_view kICloudContainersSubpath = "/Library/Mobile Documents/";

}  // namespace

bool isInsideICloudDrive(std::string_view path) {
  return path.find(kICloudDriveSubpath) != std::string_view::npos;
}

std::string watchFolderName(std::string_view path) {
  if (isInsideICloudDrive(path) || path.find(kICloudContainersSubpath) != std::string_view::npos) {
    return "iCloud Drive";
  }
  const std::string_view trimmed = withoutTrailingSlash(path);
  // The last component of the root is "/" itself, as in a file URL.
  const std::string_view name = trimmed == "/" ? trimmed : trimmed.substr(trimmed.rfind('/') + 1);
  return name.empty() ? "Folder" : std::string(name);
}

std::string_view withoutTrailingSlash(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') {
    path.remove_suffix(1);
  }
  return path;
}

}  // namespace cirrovane
