#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "base/UUID.h"
#include "core/BlockerReason.h"
#include "core/HealthState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace cirrovane {

/// What one scan leaves in the history.
struct ScanSnapshot {
  /// New for every snapshot.
  UUID id;
  /// When the report was made.
  Time timestamp;
  /// Upload Trust, 0 to 100.
  std::int64_t score = 0;
  HealthState status = HealthState::warning;
  bool safeToClose = false;
  std::int64_t blockerCount = 0;
  std::int64_t pendingUploads = 0;
  /// 0 to 100; absent in files written before it was recorded.
  std::optional<std::int64_t> localAvailabilityScore;
  /// The first blocker's; all three absent when there was none, and in older files.
  std::optional<BlockerReason> topBlockerReason;
  std::optional<std::string> topBlockerFilePath;
  std::optional<std::string> topBlockerFolderName;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &ScanSnapshot::id},
                      JSONField{"timestamp", &ScanSnapshot::timestamp},
                      JSONField{"score", &ScanSnapshot::score},
                      JSONField{"status", &ScanSnapshot::status},
                      JSONField{"safeToClose", &ScanSnapshot::safeToClose},
                      JSONField{"blockerCount", &ScanSnapshot::blockerCount},
                      JSONField{"pendingUploads", &ScanSnapshot::pendingUploads},
                      JSONField{"localAvailabilityScore", &ScanSnapshot::localAvailabilityScore},
                      JSONField{"topBlockerReason", &ScanSnapshot::topBlockerReason},
                      JSONField{"topBlockerFilePath", &ScanSnapshot::topBlockerFilePath},
                      JSONField{"topBlockerFolderName", &ScanSnapshot::topBlockerFolderName}};
  }
  friend bool operator==(const ScanSnapshot&, const ScanSnapshot&) = default;
};

}  // namespace cirrovane
