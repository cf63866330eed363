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

}  // namespace cirrovane
