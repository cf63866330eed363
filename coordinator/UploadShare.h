#pragma once

#include "core/PendingUploads.h"

#include <algorithm>
#include <cstdint>

namespace cirrovane {

/// How much has left of all that left or still waits, since something began to wait.
class UploadShare {
 public:
  /// Takes in what is left now. Where that is nothing, what comes next is another matter.
  void take(const PendingUploads& uploads) {
    waitingFiles_ = uploads.pendingFiles;
    waitingBytes_ = uploads.pendingBytes;
    allFiles_ = waitingFiles_ == 0 ? 0 : std::max(allFiles_, waitingFiles_);
    allBytes_ = waitingFiles_ == 0 ? 0 : std::max(allBytes_, waitingBytes_);
  }

  std::int64_t allFiles() const { return allFiles_; }
  std::int64_t allBytes() const { return allBytes_; }
  std::int64_t filesDone() const { return allFiles_ - waitingFiles_; }
  std::int64_t bytesDone() const { return allBytes_ - waitingBytes_; }
  /// From 0 to 1, by bytes.
  double ratio() const { return allBytes_ > 0 ? static_cast<double>(bytesDone()) / static_cast<double>(allBytes_) : 0; }

 private:
  std::int64_t allFiles_ = 0;
  std::int64_t allBytes_ = 0;
  std::int64_t waitingFiles_ = 0;
  std::int64_t waitingBytes_ = 0;
};

}  // namespace cirrovane
