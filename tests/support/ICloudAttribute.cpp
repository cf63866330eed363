#include "tests/support/ICloudAttribute.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/xattr.h>

namespace cirrovane::test {

void setICloudAttribute(const std::string& path, const std::string& content) {
  if (lsetxattr(path.c_str(), "user.icloud", content.data(), content.size(), 0) != 0) {
    throw std::runtime_error("no attribute on " + path + ": " + std::strerror(errno));
  }
}

}  // namespace cirrovane::test
