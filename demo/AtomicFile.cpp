#include "demo/AtomicFile.h"

#include "demo/Failure.h"
#include "demo/Text.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace cirrovane::demo {
namespace {

/// An error number; 0 when all went well.
int writeAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = write(descriptor, content.data(), content.size());
    if (written >= 0) {
      content.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return fsync(descriptor) == 0 ? 0 : errno;
}

int writeNewFile(const std::string& path, std::string_view content, mode_t mode) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (descriptor < 0) {
    return errno;
  }
  const int writing = writeAll(descriptor, content);
  const int closing = close(descriptor) == 0 ? 0 : errno;
  return writing != 0 ? writing : closing;
}

}  // namespace

void writeAtomically(const std::filesystem::path& path, std::string_view content, mode_t mode) {
  const std::filesystem::path temporary =
      path.parent_path() / ("." + path.filename().native() + "." + std::to_string(getpid()));
  unlink(temporary.c_str());
  int error = writeNewFile(temporary, content, mode);
  if (error == 0 && std::rename(temporary.c_str(), path.c_str()) != 0) {
    error = errno;
  }
  if (error != 0) {
    unlink(temporary.c_str());
    throw CouldNot(printable(path.native()) + " cannot be written: " + systemMessage(error) + ".");
  }
}

}  // namespace cirrovane::demo
