#pragma once

#include "coordinator/SafetyCriterion.h"
#include "core/SyncBlocker.h"
#include "core/SyncHealthReport.h"
#include "stores/IncidentRecord.h"
#include "stores/ScanSnapshot.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// Why a verdict is what it is, with what came before it.
struct Explanation {
  bool safeToClose = false;
  /// Absent when nothing stands in the way.
  std::optional<SyncBlocker> topBlocker;
  std::vector<SafetyCriterion> criteria;
  std::string recentStabilityText;
  std::int64_t coverageGapCount = 0;
  std::int64_t activeIncidentCount = 0;
  std::int64_t resolvedIncidentCount = 0;
  std::int64_t recurringIncidentCount = 0;
  std::optional<ScanSnapshot> lastSafeSnapshot;
  std::optional<ScanSnapshot> lastFailedSnapshot;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"safeToClose", &Explanation::safeToClose},
                      JSONField{"topBlocker", &Explanation::topBlocker},
                      JSONField{"criteria", &Explanation::criteria},
                      JSONField{"recentStabilityText", &Explanation::recentStabilityText},
                      JSONField{"coverageGapCount", &Explanation::coverageGapCount},
                      JSONField{"activeIncidentCount", &Explanation::activeIncidentCount},
                      JSONField{"resolvedIncidentCount", &Explanation::resolvedIncidentCount},
                      JSONField{"recurringIncidentCount", &Explanation::recurringIncidentCount},
                      JSONField{"lastSafeSnapshot", &Explanation::lastSafeSnapshot},
                      JSONField{"lastFailedSnapshot", &Explanation::lastFailedSnapshot}};
  }
};

/// The explanation of a report's verdict; snapshots come newest first.
Explanation explain(const SyncHealthReport& report, const std::vector<ScanSnapshot>& snapshots,
                    const std::vector<IncidentRecord>& incidents);

}  // namespace cirrovane
