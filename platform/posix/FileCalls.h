#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>

namespace cirrovane {

/// The system calls by which files are written, each as its manual page has it. A class, so that a test can make each
/// of them fail at the moment of its choice.
class FileCalls {
 public:
  virtual ~FileCalls() = default;

  virtual int openAt(int folder, const char* name, int flags, mode_t mode) const;
  virtual int status(int file, struct stat* result) const;
  /// Takes the lock of an open file for this process's use alone, without waiting for it.
  virtual int lock(int file) const;
  /// A second descriptor for an open file.
  virtual int duplicate(int file) const;
  virtual ssize_t write(int file, const void* bytes, std::size_t count) const;
  /// Waits until the file's content is on the medium, the medium's own cache included.
  virtual int sync(int file) const;
  virtual int close(int file) const;
  virtual int renameAt(int folder, const char* from, const char* to) const;
  virtual int unlinkAt(int folder, const char* name) const;
  virtual int makeFolder(const char* path, mode_t mode) const;
  virtual int changeMode(const char* path, mode_t mode) const;
};

}  // namespace cirrovane
