#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "cli/TextStyle.h"
#include "coordinator/LiveVerdict.h"
#include "core/HealthState.h"
#include "core/SyncHealthReport.h"
#include "platform/Clock.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace cirrovane {

/// What a watch at the terminal says at each change.
struct WatchLine {
  Time at;
  std::int64_t blockerCount = 0;
  /// Up to when the rest is known to hold.
  Time confirmedAt;
  std::string liveness;
  std::int64_t localAvailabilityScore = 0;
  std::int64_t pendingUploads = 0;
  /// Why it is not live; absent while it is.
  std::optional<std::string> reason;
  bool safeToClose = false;
  std::int64_t score = 0;
  HealthState status = HealthState::warning;
  /// Path of the most serious blocker; absent when there is none.
  std::optional<std::string> topBlocker;
  std::int64_t totalFiles = 0;

  /// Whether nothing but the times differs.
  bool saysTheSame(const WatchLine& other) const;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"at", &WatchLine::at},
                      JSONField{"blockerCount", &WatchLine::blockerCount},
                      JSONField{"confirmedAt", &WatchLine::confirmedAt},
                      JSONField{"liveness", &WatchLine::liveness},
                      JSONField{"localAvailabilityScore", &WatchLine::localAvailabilityScore},
                      JSONField{"pendingUploads", &WatchLine::pendingUploads},
                      JSONField{"reason", &WatchLine::reason},
                      JSONField{"safeToClose", &WatchLine::safeToClose},
                      JSONField{"score", &WatchLine::score},
                      JSONField{"status", &WatchLine::status},
                      JSONField{"topBlocker", &WatchLine::topBlocker},
                      JSONField{"totalFiles", &WatchLine::totalFiles}};
  }
  friend bool operator==(const WatchLine&, const WatchLine&) = default;
};

/// What there is to say of the verdict's report now.
WatchLine watchLine(const SyncHealthReport& report, const LiveVerdict& verdict, const Clock& clock);

/// As one JSON object and a line end.
std::string lineOfJSON(const WatchLine& line);
/// For people, with a line end.
std::string lineOfText(const WatchLine& line, const TextStyle& style);

}  // namespace cirrovane
