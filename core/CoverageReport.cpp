#include "core/CoverageReport.h"

#include "base/Path.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace cirrovane {
namespace {

// In the kinds' declaration order.
constexpr std::array<std::optional<std::int64_t> GapCounts::*, kAllGapKinds.size()> kCounts = {
    &GapCounts::pendingPackage, &GapCounts::pendingHidden, &GapCounts::syncPaused,       &GapCounts::excluded,
    &GapCounts::stateUnknown,   &GapCounts::notInICloud,   &GapCounts::unreadableFolder, &GapCounts::filesLost,
};

}  // namespace

std::int64_t GapCounts::of(GapKind kind) const {
  return (this->*kCounts.at(static_cast<std::size_t>(kind))).value_or(0);
}

std::int64_t GapCounts::all() const {
  std::int64_t sum = 0;
  for (const GapKind kind : kAllGapKinds) {
    sum += of(kind);
  }
  return sum;
}

void GapCounts::add(GapKind kind) {
  this->*kCounts.at(static_cast<std::size_t>(kind)) = of(kind) + 1;
}

void GapCounts::remove(GapKind kind) {
  auto& count = this->*kCounts.at(static_cast<std::size_t>(kind));
  const std::int64_t left = count.value_or(0) - 1;
  count = left > 0 ? std::optional(left) : std::nullopt;
}

CoverageReport withAcknowledged(CoverageReport report, const CoverageGap& gap) {
  const bool isLoss = gap.kind == GapKind::filesLost;
  std::erase_if(report.gaps, [&](const CoverageGap& one) {
    const bool isMeant = isLoss ? one.kind == gap.kind && one.path == gap.path : isAtOrBelow(one.path, gap.path);
    if (isMeant) {
      report.gapCounts.remove(one.kind);
      report.acknowledged += isLoss ? 0 : 1;
    }
    return isMeant;
  });
  report.complete = report.gapCounts.all() == 0 && report.notExamined.empty();
  return report;
}

bool hasLastingGapsOnly(const CoverageReport& report) {
  return !report.complete && std::ranges::all_of(kAllGapKinds, [&](GapKind kind) {
    return !canClose(kind) || report.gapCounts.of(kind) == 0;
  });
}

}  // namespace cirrovane
