#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "core/CoverageScan.h"
#include "core/SyncHealthReport.h"
#include "platform/Clock.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/SharedFile.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// How many files a folder held at a time.
struct FileCount {
  Time at;
  std::int64_t files = 0;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"at", &FileCount::at}, JSONField{"files", &FileCount::files}};
  }
  friend bool operator==(const FileCount&, const FileCount&) = default;
};

/// The numbers of files of a watched folder that count: for as long as no later one is as large.
struct FileCountHistory {
  /// Without a trailing slash.
  std::string path;
  /// One a day at most, the oldest and largest first.
  std::vector<FileCount> counts;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"path", &FileCountHistory::path}, JSONField{"counts", &FileCountHistory::counts}};
  }
  friend bool operator==(const FileCountHistory&, const FileCountHistory&) = default;
};

/// How many files each watched folder held when it was safe, and its file "coverage.json", which several programs may
/// change side by side: each call looks at the file as it is. Callable on any thread.
class FileCountStore {
 public:
  static constexpr std::chrono::days kMemory{30};
  /// A number that is still the largest is dated anew no more often than this.
  static constexpr std::chrono::hours kRedating{1};

  /// Of the file at the path, or at the default place.
  FileCountStore(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock,
                 std::optional<std::string> filePath = std::nullopt);

  /// The most files of each folder that are remembered.
  std::vector<FolderFileCount> most() const;

  /// Takes in the folders of a report, if that is a safe one; absent when nothing was to be written or it was written.
  std::optional<Failure> record(const SyncHealthReport& report) const;

  /// Forgets what the folders held before and begins with these numbers; absent when that was written.
  std::optional<Failure> beginAnew(const std::vector<FolderFileCount>& counts) const;

 private:
  const Clock& clock_;
  SharedFile<std::vector<FileCountHistory>> file_;
};

}  // namespace cirrovane
