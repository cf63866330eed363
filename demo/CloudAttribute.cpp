#include "demo/CloudAttribute.h"

#include "demo/Failure.h"
#include "demo/Text.h"

#include <cerrno>
#include <sys/xattr.h>

namespace cirrovane::demo {
namespace {

constexpr const char* kAttribute = "user.icloud";
/// The kernel keeps no longer attribute.
constexpr std::size_t kLargestAttribute = std::size_t{64} * 1024;

[[noreturn]] void fail(const std::filesystem::path& path, int error) {
  const std::string name = printable(path.native());
  switch (error) {
    case ENOTSUP:
      throw CouldNot("The file system of " + name +
                     " has no extended attributes, which hold the iCloud state of files. Use a folder on another one: "
                     "ext4, XFS and Btrfs have them.");
    case EPERM:
      throw CouldNot("The iCloud state of " + name +
                     " cannot be changed: it is protected, or neither a file nor a folder (a symbolic link, say).");
    case ENOSPC:
    case E2BIG:
    case ERANGE:
      throw CouldNot("There is no room for the iCloud state of " + name + ". Use a shorter text, or free some space.");
    default:
      throw CouldNot("The iCloud state of " + name + " cannot be reached: " + systemMessage(error) + ".");
  }
}

bool isWithoutState(int error) {
  return error == ENODATA;
}

}  // namespace

std::optional<CloudState> readCloudState(const std::filesystem::path& path) {
  std::string text(kLargestAttribute, '\0');
  const ssize_t length = lgetxattr(path.c_str(), kAttribute, text.data(), text.size());
  if (length < 0) {
    if (isWithoutState(errno) || errno == ENOTSUP) {
      return std::nullopt;
    }
    fail(path, errno);
  }
  return CloudState(std::string_view(text).substr(0, static_cast<std::size_t>(length)));
}

void writeCloudState(const std::filesystem::path& path, const CloudState& state) {
  if (state.isEmpty()) {
    if (lremovexattr(path.c_str(), kAttribute) != 0 && !isWithoutState(errno)) {
      fail(path, errno);
    }
    return;
  }
  const std::string text = state.text();
  if (lsetxattr(path.c_str(), kAttribute, text.data(), text.size(), 0) != 0) {
    fail(path, errno);
  }
}

void requireCloudStates(const std::filesystem::path& folder) {
  CloudState state;
  state.set("isUploaded", "true");
  writeCloudState(folder, state);
  writeCloudState(folder, CloudState());
}

}  // namespace cirrovane::demo
