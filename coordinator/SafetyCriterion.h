#pragma once

#include "base/JSONRecord.h"
#include "base/UUID.h"
#include "core/BlockerReason.h"
#include "core/SyncHealthReport.h"

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// One line of the checklist that explains a verdict.
struct SafetyCriterion {
  /// New each time the list is made; only tells the lines of one list apart, and so is no part of its JSON form.
  UUID id;
  std::string title;
  bool isPassing = false;
  /// One sentence.
  std::string detail;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"title", &SafetyCriterion::title}, JSONField{"isPassing", &SafetyCriterion::isPassing},
                      JSONField{"detail", &SafetyCriterion::detail}};
  }
  friend bool operator==(const SafetyCriterion&, const SafetyCriterion&) = default;
};

/// What the criteria are made of.
struct SafetyCounts {
  ScanMetrics metrics;
  /// Watched folders that are missing, or not in iCloud at all.
  std::int64_t coverageGaps = 0;
  bool hasCriticalBlocker = false;
};

/// Whether a blocker of the reason is one of the files' own that forbids a close.
bool isCritical(BlockerReason reason);

/// The five criteria over a report, made from its counts alone and never from its verdict.
std::vector<SafetyCriterion> safetyCriteria(const SyncHealthReport& report);
/// The same for whoever has no report any more.
std::vector<SafetyCriterion> safetyCriteria(const SafetyCounts& counts);

}  // namespace cirrovane
