#include "platform/linux/LinuxFileSystem.h"

#include "base/Path.h"
#include "platform/linux/macroot/MachineFacts.h"
#include "platform/linux/walk/LinuxWalk.h"
#include "platform/posix/walk/NamedItems.h"

#include <filesystem>
#include <sys/statvfs.h>
#include <system_error>
#include <unistd.h>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

VolumeCapacities hostCapacities(const std::string& folder) {
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

}  // namespace

bool LinuxFileSystem::exists(const std::string& path) const {
  return isAddressable(path) && access(path.c_str(), F_OK) == 0;
}

std::unique_ptr<FolderWalk> LinuxFileSystem::enumerate(const WalkRequest& request) const {
  const std::string& folder = request.folder;
  if (!isAddressable(folder)) {
    return nullptr;
  }
  // The reading threads change their working directory, against which a relative path would lose its meaning.
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(folder, error);
  WalkRequest resolved = request;
  resolved.folder = error ? folder : absolute.native();
  return startLinuxWalk(resolved, optionsFor(request));
}

std::unique_ptr<ItemBatch> LinuxFileSystem::readItems(const std::string& folder,
                                                      const std::vector<std::string>& names) const {
  return isAddressable(folder) ? readNamedItems(folder, names, *makeLinuxSource()) : nullptr;
}

VolumeCapacities LinuxFileSystem::volumeCapacities(const std::string& folder) const {
  if (root_.describesHost()) {
    return hostCapacities(folder);
  }
  const nlohmann::json volume = root_.facts().value("volume", nlohmann::json::object());
  return {integerFact(volume, "availableForImportantUsage"), integerFact(volume, "total")};
}

}  // namespace cirrovane
