#pragma once

#include "core/ScanProgress.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

#include <chrono>
#include <vector>

namespace cirrovane {

/// Reads the cloud state of every file in the watched folders and turns it into a report. Keeps nothing between scans.
/// A scan blocks its thread while it reads the disk, so it runs off the main thread.
class ICloudScanEngine {
 public:
  /// An upload that has not ended this long after the file's last change counts as stalled.
  static constexpr std::chrono::seconds kDefaultStaleUploadThreshold{1200};

  /// Tells `progress`, where there is one, of each folder and of the files in it as it goes.
  ICloudScanEngine(const FileSystem& fileSystem, const Clock& clock,
                   std::chrono::microseconds staleUploadThreshold = kDefaultStaleUploadThreshold,
                   ScanProgress* progress = nullptr)
      : fileSystem_(fileSystem), clock_(clock), staleUploadThreshold_(staleUploadThreshold), progress_(progress) {}

  /// The report over the folders, which are taken in the order given. Never fails: whatever goes wrong becomes a
  /// blocker or is counted.
  SyncHealthReport scan(const std::vector<WatchFolder>& folders) const;

 private:
  const FileSystem& fileSystem_;
  const Clock& clock_;
  std::chrono::microseconds staleUploadThreshold_;
  ScanProgress* progress_;
};

}  // namespace cirrovane
