#include "platform/posix/FileCalls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace cirrovane {

int FileCalls::openAt(int folder, const char* name, int flags, mode_t mode) const {
  return ::openat(folder, name, flags, mode);
}

int FileCalls::status(int file, struct stat* result) const {
  return ::fstat(file, result);
}

int FileCalls::lock(int file) const {
  return ::flock(file, LOCK_EX | LOCK_NB);
}

int FileCalls::duplicate(int file) const {
  return ::fcntl(file, F_DUPFD_CLOEXEC, 0);
}

ssize_t FileCalls::write(int file, const void* bytes, std::size_t count) const {
  return ::write(file, bytes, count);
}

int FileCalls::sync(int file) const {
#ifdef F_FULLFSYNC
  if (::fcntl(file, F_FULLFSYNC) == 0) {
    return 0;
  }
  // A volume on a server or of another make knows no more than the usual sync.
  return errno == ENOTSUP || errno == EINVAL || errno == ENOTTY ? ::fsync(file) : -1;
#else
  return ::fsync(file);
#endif
}

int FileCalls::close(int file) const {
  return ::close(file);
}

int FileCalls::renameAt(int folder, const char* from, const char* to) const {
  return ::renameat(folder, from, folder, to);
}

int FileCalls::unlinkAt(int folder, const char* name) const {
  return ::unlinkat(folder, name, 0);
}

int FileCalls::makeFolder(const char* path, mode_t mode) const {
  return ::mkdir(path, mode);
}

int FileCalls::changeMode(const char* path, mode_t mode) const {
  return ::chmod(path, mode);
}

}  // namespace cirrovane
