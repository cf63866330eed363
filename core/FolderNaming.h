#pragma once

#include <string>
#include <string_view>

namespace cirrovane {

/// Where iCloud Drive lies below a home folder. A path that holds this text anywhere counts as inside iCloud Drive.
inline constexpr std::string_view kICloudDriveSubpath = "/Library/Mobile Documents/com~apple~CloudDocs";

/// Whether the path lies inside iCloud Drive.
bool isInsideICloudDrive(std::string_view path);

/// The name that a watched folder gets from its path: "iCloud Drive" in any iCloud container, else the last component,
/// else "Folder".
std::string watchFolderName(std::string_view path);

}  // namespace cirrovane
