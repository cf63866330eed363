#include "core/SyncHealthReport.h"

#include "platform/Clock.h"

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

}  // namespace cirrovane
