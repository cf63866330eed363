#include "platform/linux/walk/LinuxFileSystem.h"

#include "base/Path.h"
#include "platform/linux/walk/LinuxWalk.h"
#include "platform/posix/walk/NamedItems.h"

#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace cirrovane {

bool LinuxFileSystem::exists(const std::string& path) const {
  return isAddressable(path) && access(path.c_str(), F_OK) == 0;
}

std::unique_ptr<FolderWalk> LinuxFileSystem::enumerate(const WalkRequest& request) const {
  const std::string& folder = request.folder;
  if (!isAddressable(folder)) {
    return nullptr;
  }
  WalkOptions options;
  if (!request.isDeep) {
    // One folder of usual size is read sooner than a thread is started.
    options.threadCount = 0;
  }
  // The reading threads change their working directory, against which a relative path would lose its meaning.
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(folder, error);
  return startLinuxWalk({error ? folder : absolute.native(), request.isDeep, request.observer}, options);
}

std::unique_ptr<ItemBatch> LinuxFileSystem::readItems(const std::string& folder,
                                                      const std::vector<std::string>& names) const {
  return isAddressable(folder) ? readNamedItems(folder, names, *makeLinuxSource()) : nullptr;
}

}  // namespace cirrovane
