#include "coordinator/SafetyCriterion.h"

#include <algorithm>

#include <fmt/format.h>

namespace cirrovane {

// A folder outside iCloud has a criterion of its own, and a file that is only in the cloud cannot be lost by closing.
bool isCritical(BlockerReason reason) {
  return reason != BlockerReason::outsideICloud && reason != BlockerReason::notDownloaded;
}

std::vector<SafetyCriterion> safetyCriteria(const SyncHealthReport& report) {
  return safetyCriteria({report.metrics, coverageGapCount(report),
                         std::ranges::any_of(report.blockers, isCritical, &SyncBlocker::reason)});
}

std::vector<SafetyCriterion> safetyCriteria(const SafetyCounts& counts) {
  UUIDGenerator makeID;
  std::vector<SafetyCriterion> criteria;
  const auto add = [&](const char* title, bool isPassing, const char* ifPassing, std::string otherwise) {
    criteria.push_back({makeID(), title, isPassing, isPassing ? ifPassing : std::move(otherwise)});
  };
  const ScanMetrics& metrics = counts.metrics;
  const std::int64_t gaps = counts.coverageGaps;
  add("No pending uploads", metrics.pendingUploads == 0, "No pending uploads detected.",
      fmt::format("{} uploads are still pending.", metrics.pendingUploads));
  add("No unresolved conflicts", metrics.unresolvedConflicts == 0, "No unresolved conflict states detected.",
      fmt::format("{} conflict states remain unresolved.", metrics.unresolvedConflicts));
  add("No upload/download errors", metrics.errors == 0, "No iCloud transfer errors detected.",
      fmt::format("{} transfer errors were detected.", metrics.errors));
  add("No critical blockers", !counts.hasCriticalBlocker, "No critical blocker category is active.",
      "Critical blockers exist in the current watchlist.");
  add("Watchlist coverage intact", gaps == 0, "All watched folders are reachable and within coverage.",
      fmt::format("{} watchlist entries are outside iCloud or missing.", gaps));
  return criteria;
}

}  // namespace cirrovane
