#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// A file that has not reached the cloud.
struct PendingUpload {
  std::string filePath;
  /// The name of the watched folder in which it was found.
  std::string folderName;
  /// Its size; 0 where the file system does not say.
  std::int64_t bytes = 0;
  /// When one of our programs first recorded it as pending; absent where none has.
  std::optional<Time> pendingSince;
  /// Whether it waits longer than what waits beside it explains.
  bool isStuck = false;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"filePath", &PendingUpload::filePath},
                      JSONField{"folderName", &PendingUpload::folderName}, JSONField{"bytes", &PendingUpload::bytes},
                      JSONField{"pendingSince", &PendingUpload::pendingSince},
                      JSONField{"isStuck", &PendingUpload::isStuck}};
  }
  friend bool operator==(const PendingUpload&, const PendingUpload&) = default;
};

/// Between which moments everything that is pending now is expected to have left.
struct UploadEstimate {
  Time earliest;
  Time latest;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"earliest", &UploadEstimate::earliest}, JSONField{"latest", &UploadEstimate::latest}};
  }
  friend bool operator==(const UploadEstimate&, const UploadEstimate&) = default;
};

/// What is left to upload, and how it goes.
struct PendingUploads {
  Time generatedAt;
  /// Each file counts once, however many watched folders and reasons name it.
  std::int64_t pendingFiles = 0;
  std::int64_t pendingBytes = 0;
  /// Absent while nothing or too little has left lately.
  std::optional<double> bytesPerSecond;
  /// Absent while too little is known for a promise.
  std::optional<UploadEstimate> estimate;
  std::int64_t stuckFiles = 0;
  std::vector<PendingUpload> files;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"generatedAt", &PendingUploads::generatedAt},
                      JSONField{"pendingFiles", &PendingUploads::pendingFiles},
                      JSONField{"pendingBytes", &PendingUploads::pendingBytes},
                      JSONField{"bytesPerSecond", &PendingUploads::bytesPerSecond},
                      JSONField{"estimate", &PendingUploads::estimate},
                      JSONField{"stuckFiles", &PendingUploads::stuckFiles},
                      JSONField{"files", &PendingUploads::files}};
  }
  friend bool operator==(const PendingUploads&, const PendingUploads&) = default;
};

}  // namespace cirrovane
