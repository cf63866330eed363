#include "core/SyncHealthReport.h"

#include "platform/Clock.h"

#include <algorithm>

namespace cirrovane {

const SyncHealthReport& SyncHealthReport::empty() {
  static const SyncHealthReport report = [] {
    SyncHealthReport made;
    made.generatedAt = SystemClock().now();
    made.summary = "Add a critical folder and run your first scan.";
    return made;
  }();
  return report;
}

std::int64_t coverageGapCount(const SyncHealthReport& report) {
  return std::ranges::count_if(report.blockers, [](const SyncBlocker& blocker) {
    return blocker.reason == BlockerReason::unavailableFolder || blocker.reason == BlockerReason::outsideICloud;
  });
}

}  // namespace cirrovane
