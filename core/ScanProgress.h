#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

namespace cirrovane {

/// How far a scan has come, for whoever watches it from another thread.
class ScanProgress {
 public:
  void enterFolder(std::string path) {
    const std::lock_guard lock(mutex_);
    folder_ = std::move(path);
  }
  void addFiles(std::int64_t count) { files_.fetch_add(count, std::memory_order_relaxed); }

  /// Files seen so far, over all folders.
  std::int64_t files() const { return files_.load(std::memory_order_relaxed); }
  /// The watched folder that is being walked; empty before the first.
  std::string folder() const {
    const std::lock_guard lock(mutex_);
    return folder_;
  }

 private:
  std::atomic<std::int64_t> files_ = 0;
  mutable std::mutex mutex_;
  std::string folder_;
};

}  // namespace cirrovane
