#include "platform/linux/host/HostDisk.h"

#include "base/Path.h"

#include <cstdlib>
#include <optional>
#include <pwd.h>
#include <string_view>
#include <sys/statvfs.h>
#include <unistd.h>

namespace cirrovane {
namespace {

std::string folderOf(std::string_view path) {
  return std::string(withoutTrailingSlash(path));
}

std::string hostHome() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
    return folderOf(home);
  }
  const passwd* user = getpwuid(getuid());
  return folderOf(user != nullptr ? user->pw_dir : "/");
}

/// A folder that the user may have moved by a variable, as the desktop's base directories are.
std::string hostFolder(const char* variable, const char* belowHome) {
  if (const char* path = std::getenv(variable); path != nullptr && *path == '/') {
    return folderOf(path);
  }
  return hostHome() + belowHome;
}

}  // namespace

UserFolders hostFolders() {
  return {hostHome, [] { return hostFolder("XDG_DATA_HOME", "/.local/share"); },
          [] { return hostFolder("XDG_CONFIG_HOME", "/.config"); }};
}

VolumeCapacities hostVolume(const std::string& folder) {
  struct statvfs volume {};
  if (!isAddressable(folder) || statvfs(folder.c_str(), &volume) != 0) {
    return {};
  }
  const auto inBytes = [&](fsblkcnt_t blocks) {
    std::int64_t bytes = 0;
    return __builtin_mul_overflow(blocks, volume.f_frsize, &bytes) ? std::nullopt : std::optional(bytes);
  };
  return {inBytes(volume.f_bavail), inBytes(volume.f_blocks)};
}

}  // namespace cirrovane
