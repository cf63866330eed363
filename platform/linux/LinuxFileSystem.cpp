#include "platform/linux/LinuxFileSystem.h"

#include "platform/linux/ReadAheadWalk.h"

#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace cirrovane {
namespace {

/// The system would take the path to end at a NUL and answer for another item.
bool isAddressable(const std::string& path) {
  return path.find('\0') == std::string::npos;
}

}  // namespace

bool LinuxFileSystem::exists(const std::string& path) const {
  return isAddressable(path) && access(path.c_str(), F_OK) == 0;
}

std::unique_ptr<FolderWalk> LinuxFileSystem::enumerate(const std::string& folder) const {
  if (!isAddressable(folder)) {
    return nullptr;
  }
  // The reading threads change their working directory, against which a relative path would lose its meaning.
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(folder, error);
  return std::make_unique<ReadAheadWalk>(error ? folder : absolute.native());
}

}  // namespace cirrovane
