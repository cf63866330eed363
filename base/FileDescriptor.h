#pragma once

#include <unistd.h>
#include <utility>

namespace cirrovane {

/// Owns an open file descriptor; closes it at the end.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int value) : value_(value) {}
  FileDescriptor(FileDescriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~FileDescriptor() {
    if (value_ >= 0) {
      ::close(value_);
    }
  }

  bool isOpen() const { return value_ >= 0; }
  /// The descriptor; -1 when none is open.
  int get() const { return value_; }

 private:
  int value_ = -1;
};

}  // namespace cirrovane
