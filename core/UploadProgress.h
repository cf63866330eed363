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

  /// By path in bytes; when more are pending, those that have waited longest.
  std::vector<FollowedUpload> files;
  /// Of the last ten minutes, in the order of time, and the last moment before them at which anything left.
  std::vector<UploadFlow> flows;
  /// Whether everything that was pending at the last look is followed.
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

/// Which of these files, of which none is pending any more, still exist and are uploaded. In their order.
using AreUploaded = std::function<std::vector<bool>(const std::vector<std::string>& paths)>;
/// By their cloud state on disk.
std::vector<bool> areUploaded(const FileSystem& fileSystem, const std::vector<std::string>& paths);

/// The record after a look at `now` that found these files pending. `askUploaded` is asked about those that are
/// followed and no longer pending.
UploadRecord afterLook(UploadRecord record, const std::vector<PendingFile>& pending, Time now,
                       const AreUploaded& askUploaded);

/// What is left by a look at `now`, whose files are already in the record where it has room for them.
PendingUploads pendingUploads(const UploadRecord& record, const std::vector<PendingFile>& pending, Time now);

/// The same without the single files.
PendingUploads pendingTotals(const UploadRecord& record, const std::vector<PendingFile>& pending, Time now);

}  // namespace cirrovane
