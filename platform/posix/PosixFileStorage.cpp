#include "platform/posix/PosixFileStorage.h"

#include "base/BoundedRead.h"
#include "base/FileDescriptor.h"
#include "platform/posix/DurableWriter.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace cirrovane {
namespace {

constexpr mode_t kPrivateFolderMode = 0700;
constexpr mode_t kUsualFolderMode = 0777;
constexpr std::chrono::seconds kLongestLockWait{2};
constexpr std::chrono::milliseconds kLockPause{2};

Failure failureOf(const std::string& path, const char* action, int error) {
  return {path + " could not be " + action + ": " + std::strerror(error) + "."};
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Takes everybody else's permissions away from a folder of ours that is already there.
void makePrivate(const FileCalls& calls, const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && status.st_uid == ::geteuid() && (status.st_mode & 0077U) != 0) {
    // Nothing to be done about a refusal: the files inside are the user's alone in any case.
    static_cast<void>(calls.changeMode(path.c_str(), kPrivateFolderMode));
  }
}

}  // namespace

std::optional<Failure> PosixFileStorage::createFolders(const std::string& path, FileAccess access) const {
  int error = 0;
  for (std::size_t slash = path.find('/', 1); !path.empty(); slash = path.find('/', slash + 1)) {
    const bool isLast = slash == std::string::npos;
    const mode_t mode = isLast && access == FileAccess::privateToUser ? kPrivateFolderMode : kUsualFolderMode;
    error = calls_->makeFolder(path.substr(0, slash).c_str(), mode) == 0 ? 0 : errno;
    if (isLast) {
      break;
    }
  }
  if (!isFolder(path)) {
    return failureOf(path, "made", error != 0 && error != EEXIST ? error : ENOTDIR);
  }
  if (access == FileAccess::privateToUser) {
    makePrivate(*calls_, path);
  }
  return std::nullopt;
}

Result<std::string> PosixFileStorage::read(const std::string& path, std::size_t limit) const {
  BoundedRead file = readBounded(path, limit);
  if (file.error != 0) {
    return failureOf(path, "read", file.error);
  }
  return std::move(file.content);
}

std::optional<Failure> PosixFileStorage::writeAtomically(const std::string& path, FileAccess access,
                                                         const ByteProducer& produce) const {
  return writeDurably(*calls_, path, access, produce);
}

std::optional<Failure> PosixFileStorage::rename(const std::string& from, const std::string& to) const {
  if (::rename(from.c_str(), to.c_str()) != 0) {
    return failureOf(from, "renamed", errno);
  }
  return std::nullopt;
}

Result<FolderLock> PosixFileStorage::lockFolder(const std::string& path) const {
  auto folder = std::make_shared<FileDescriptor>(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder->isOpen()) {
    return failureOf(path, "opened", errno);
  }
  const auto end = std::chrono::steady_clock::now() + kLongestLockWait;
  while (::flock(folder->get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR && (errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= end)) {
      return failureOf(path, "locked", errno);
    }
    // The holder writes one small file; one that was stopped in the midst of it must not stop us too.
    std::this_thread::sleep_for(kLockPause);
  }
  return FolderLock(std::move(folder));
}

}  // namespace cirrovane
