#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "core/PendingUploads.h"
#include "core/SyncHealthReport.h"
#include "platform/FileSystem.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

// How uploads go, told from what was pending at one look and no longer is at the next. Pure functions but for the one
// that reads files; callable on any thread.

namespace cirrovane {

/// A pending file from the moment on at which it was first seen.
struct FollowedUpload {
  std::string filePath;
  std::int64_t bytes = 0;
  Time pendingSince;
  /// All that was pending when this file was first seen, itself included.
  std::int64_t pendingBytesThen = 0;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"filePath", &FollowedUpload::filePath}, JSONField{"bytes", &FollowedUpload::bytes},
                      JSONField{"pendingSince", &FollowedUpload::pendingSince},
                      JSONField{"pendingBytesThen", &FollowedUpload::pendingBytesThen}};
  }
  friend bool operator==(const FollowedUpload&, const FollowedUpload&) = default;
};

/// What reached the cloud, and what became pending, within one second.
struct UploadFlow {
  Time at;
  std::int64_t filesLeft = 0;
  std::int64_t bytesLeft = 0;
  std::int64_t bytesCame = 0;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"at", &UploadFlow::at}, JSONField{"filesLeft", &UploadFlow::filesLeft},
                      JSONField{"bytesLeft", &UploadFlow::bytesLeft}, JSONField{"bytesCame", &UploadFlow::bytesCame}};
  }
  friend bool operator==(const UploadFlow&, const UploadFlow&) = default;
};

/// What is remembered of uploads from one look to the next.
struct UploadRecord {
  static constexpr std::size_t kMostFiles = 10'000;

  /// By path in bytes; when more are pending than there is room for, those that have waited longest.
  std::vector<FollowedUpload> files;
  /// Of the last ten minutes, in the order of time, and the last moment before them at which anything left.
  std::vector<UploadFlow> flows;
  /// Whether anything was pending at the last look, and all of it is followed.
  bool isWhole = false;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"files", &UploadRecord::files}, JSONField{"flows", &UploadRecord::flows},
                      JSONField{"isWhole", &UploadRecord::isWhole}};
  }
  friend bool operator==(const UploadRecord&, const UploadRecord&) = default;
};

/// One pending file of a report; points into it.
struct PendingFile {
  std::string_view filePath;
  std::string_view folderName;
  std::int64_t bytes = 0;
};

/// The pending files of a report: each path once, in the report's order.
std::vector<PendingFile> pendingFilesOf(const SyncHealthReport& report);

/// What became of a file that a look did not find pending.
enum class UploadState {
  uploaded,
  /// It waits all the same: it lies where the look did not reach, or was changed since.
  pending,
  /// It is gone, or no cloud item any more.
  none,
};

/// The states of files, in their order.
using AskUploadStates = std::function<std::vector<UploadState>(const std::vector<std::string>& paths)>;
/// As the disk has them.
std::vector<UploadState> uploadStates(const FileSystem& fileSystem, const std::vector<std::string>& paths);

/// The record after a look at `now` that found these files pending. `askStates` is asked about those that are followed
/// and were not found.
UploadRecord afterLook(UploadRecord record, const std::vector<PendingFile>& pending, Time now,
                       const AskUploadStates& askStates);

/// What is left by a look at `now`, whose files are already in the record where it has room for them.
PendingUploads pendingUploads(const UploadRecord& record, const std::vector<PendingFile>& pending, Time now);

/// Nothing for so long, and nobody knows when it goes on.
inline constexpr std::chrono::seconds kLongestUploadPause{60};

/// When anything left last; absent when nothing has.
std::optional<Time> lastDeparture(const UploadRecord& record);

/// Since when nothing has left, while anything waited; absent when nothing is followed.
std::optional<Time> quietSince(const UploadRecord& record);

/// How long nothing has left, as of `now`, while anything waited; absent when nothing is followed.
std::optional<std::chrono::microseconds> quietFor(const UploadRecord& record, Time now);

/// The same as pendingUploads without the single files.
PendingUploads pendingTotals(const UploadRecord& record, const std::vector<PendingFile>& pending, Time now);

}  // namespace cirrovane
