#pragma once

#include "core/PendingUploads.h"
#include "core/SyncHealthReport.h"
#include "core/UploadProgress.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// How uploads stand, as a look found them and as time goes by after it. Pure functions.

namespace cirrovane {

/// A file that waits longer than what waits beside it explains.
struct StuckUpload {
  std::string filePath;
  std::int64_t bytes = 0;
  Time pendingSince;
  /// What the system says of it; empty where it says nothing.
  std::string error;

  friend bool operator==(const StuckUpload&, const StuckUpload&) = default;
};

/// What a look found.
struct UploadStanding {
  static constexpr std::size_t kMostStuck = 100;

  /// Without the single files.
  PendingUploads totals;
  /// Absent where nothing has left.
  std::optional<Time> lastLeft;
  /// Since when nothing has left; absent while nothing waits.
  std::optional<Time> quietSince;
  /// Those that have waited longest, in that order.
  std::vector<StuckUpload> stuck;
  /// How much has left of all that left or still waits, from 0 to 1.
  double share = 0;

  friend bool operator==(const UploadStanding&, const UploadStanding&) = default;
};

/// A pause of this length is no pause yet.
inline constexpr std::chrono::minutes kShortestQuiet{2};

/// Of a record that has taken the report in. The share is left to who follows it.
UploadStanding uploadStanding(const UploadRecord& record, const SyncHealthReport& report);

/// What is left as of `now`: an estimate does not outlive what it was made of.
PendingUploads totalsAt(const UploadStanding& standing, Time now);
/// How long nothing has left, as of `now`; absent while nothing waits.
std::optional<std::chrono::microseconds> quietAt(const UploadStanding& standing, Time now);
/// Whether anything has left lately, and something still waits.
bool isMoving(const UploadStanding& standing, Time now);
/// In how much time the words of it will be others, with no look in between; absent where they stay.
std::optional<std::chrono::microseconds> untilOtherWords(const UploadStanding& standing, Time now);

}  // namespace cirrovane
