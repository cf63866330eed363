#include "core/FolderNaming.h"

#include "base/Path.h"

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
  const std::string_view name = trimmed == "/" ? trimmed : lastPathComponent(trimmed);
  return name.empty() ? "Folder" : std::string(name);
}

}  // namespace cirrovane
