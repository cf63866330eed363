#include "base/BoundedRead.h"

#include "base/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cirrovane {
namespace {

/// An error number; 0 when all of the file is in the content.
int readToEnd(int file, std::size_t limit, std::string& content) {
  struct stat status {};
  if (::fstat(file, &status) != 0) {
    return errno;
  }
  if (!S_ISREG(status.st_mode)) {
    return EINVAL;
  }
  if (static_cast<std::size_t>(status.st_size) > limit) {
    return EFBIG;
  }
  // One byte more than the file is said to have, to see it grow while it is read.
  content.resize(static_cast<std::size_t>(status.st_size) + 1);
  std::size_t length = 0;
  while (true) {
    const ssize_t got = ::read(file, content.data() + length, content.size() - length);
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got < 0) {
      return errno;
    }
    if (got == 0) {
      break;
    }
    length += static_cast<std::size_t>(got);
    if (length > limit) {
      return EFBIG;
    }
    if (length == content.size()) {
      content.resize(content.size() * 2);
    }
  }
  content.resize(length);
  return 0;
}

}  // namespace

BoundedRead readBounded(const std::string& path, std::size_t limit) {
  // Without O_NONBLOCK a FIFO in the file's place would keep us waiting for a writer.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file.isOpen()) {
    return {.content = {}, .error = errno, .isOpen = false};
  }
  BoundedRead result{.content = {}, .error = 0, .isOpen = true};
  result.error = readToEnd(file.get(), limit, result.content);
  if (result.error != 0) {
    result.content.clear();
  }
  return result;
}

}  // namespace cirrovane
