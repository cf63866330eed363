#include "coordinator/Explanation.h"

#include "coordinator/HistorySummary.h"

namespace cirrovane {

Explanation explain(const SyncHealthReport& report, const std::vector<ScanSnapshot>& snapshots,
                    const std::vector<IncidentRecord>& incidents) {
  Explanation explanation;
  explanation.safeToClose = report.safeToClose;
  if (!report.blockers.empty()) {
    explanation.topBlocker = report.blockers.front();
  }
  explanation.criteria = safetyCriteria(report);
  explanation.recentStabilityText = recentStabilityText(snapshots);
  explanation.coverageGapCount = coverageGapCount(report);
  explanation.activeIncidentCount = activeIncidentCount(incidents);
  explanation.resolvedIncidentCount = resolvedIncidentCount(incidents);
  explanation.recurringIncidentCount = recurringIncidentCount(incidents);
  explanation.lastSafeSnapshot = lastSnapshot(snapshots, true);
  explanation.lastFailedSnapshot = lastSnapshot(snapshots, false);
  return explanation;
}

}  // namespace cirrovane
