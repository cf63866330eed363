#include "base/ByteSource.h"

#include "base/FileDescriptor.h"
#include "base/Path.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace cirrovane {
namespace {

Failure unreadable(const std::string& path, int error) {
  return {"“" + std::string(lastPathComponent(path)) + "” could not be read: " + std::strerror(error) + "."};
}

Result<std::size_t> readSome(int file, const std::string& path, std::span<char> space) {
  while (true) {
    const ssize_t got = ::read(file, space.data(), space.size());
    if (got >= 0) {
      return static_cast<std::size_t>(got);
    }
    if (errno != EINTR) {
      return unreadable(path, errno);
    }
  }
}

}  // namespace

Result<ByteSource> openByteSource(const std::string& path) {
  if (path == "-") {
    return ByteSource([](std::span<char> space) { return readSome(STDIN_FILENO, "Standard input", space); });
  }
  const auto file = std::make_shared<const FileDescriptor>(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file->isOpen()) {
    return unreadable(path, errno);
  }
  return ByteSource([file, path](std::span<char> space) { return readSome(file->get(), path, space); });
}

ByteSource byteSourceOf(std::string_view text) {
  return [text](std::span<char> space) mutable {
    const std::size_t count = std::min(space.size(), text.size());
    std::copy_n(text.begin(), count, space.begin());
    text.remove_prefix(count);
    return Result<std::size_t>(count);
  };
}

}  // namespace cirrovane
