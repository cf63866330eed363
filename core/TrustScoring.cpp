#include "core/TrustScoring.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

struct ReasonRule {
  std::int64_t weight;
  std::int64_t cap;
  bool forbidsSafeToClose;
};

constexpr std::size_t kReasonCount = kAllBlockerReasons.size();

// In the declaration order of the reasons.
constexpr std::array<ReasonRule, kReasonCount> kReasonRules = {{
    /* unavailableFolder  */ {24, 40, true},
    /* outsideICloud      */ {16, 40, false},
    /* unresolvedConflict */ {30, 60, true},
    /* uploadError        */ {24, 60, true},
    /* downloadError      */ {24, 60, true},
    /* stalledUpload      */ {16, 40, true},
    /* notUploaded        */ {10, 40, true},
    /* notDownloaded      */ {0, 0, false},
}};

constexpr std::int64_t kDangerBelow = 70;
constexpr std::int64_t kSafeAbove = 94;
constexpr std::size_t kMaximumActions = 3;

const ReasonRule& ruleOf(BlockerReason reason) {
  return kReasonRules.at(static_cast<std::size_t>(reason));
}

/// How many blockers each reason has.
std::array<std::int64_t, kReasonCount> countByReason(const std::vector<SyncBlocker>& blockers) {
  std::array<std::int64_t, kReasonCount> counts{};
  for (const SyncBlocker& blocker : blockers) {
    ++counts.at(static_cast<std::size_t>(blocker.reason));
  }
  return counts;
}

bool areAllCloudOnly(const std::vector<SyncBlocker>& blockers) {
  return std::ranges::all_of(blockers,
                             [](const SyncBlocker& blocker) { return blocker.reason == BlockerReason::notDownloaded; });
}

}  // namespace

std::int64_t penaltyWeight(BlockerReason reason) {
  return ruleOf(reason).weight;
}

std::int64_t penaltyCap(BlockerReason reason) {
  return ruleOf(reason).cap;
}

bool forbidsSafeToClose(BlockerReason reason) {
  return ruleOf(reason).forbidsSafeToClose;
}

std::int64_t penalty(const std::vector<SyncBlocker>& blockers) {
  const auto counts = countByReason(blockers);
  std::int64_t sum = 0;
  for (const BlockerReason reason : kAllBlockerReasons) {
    sum += std::min(penaltyWeight(reason) * counts.at(static_cast<std::size_t>(reason)), penaltyCap(reason));
  }
  return sum;
}

std::int64_t uploadTrustScore(const std::vector<SyncBlocker>& blockers) {
  return std::max<std::int64_t>(0, 100 - penalty(blockers));
}

HealthState healthState(std::int64_t score, const std::vector<SyncBlocker>& blockers) {
  if (areAllCloudOnly(blockers) && score > kSafeAbove) {
    return HealthState::safe;
  }
  return score < kDangerBelow ? HealthState::danger : HealthState::warning;
}

std::int64_t localReadinessScore(const ScanMetrics& metrics) {
  if (metrics.totalFiles < 1) {
    return 100;
  }
  const auto localFiles = static_cast<double>(std::max<std::int64_t>(0, metrics.totalFiles - metrics.notDownloaded));
  return std::llround(localFiles / static_cast<double>(metrics.totalFiles) * 100);
}

std::vector<RecommendedAction> recommendedActions(const std::vector<SyncBlocker>& blockers,
                                                  const ScanMetrics& metrics) {
  UUIDGenerator makeID;
  std::vector<RecommendedAction> actions;
  const auto append = [&](std::string_view title, std::string_view detail) {
    actions.push_back(
        {makeID(), static_cast<std::int64_t>(actions.size()) + 1, std::string(title), std::string(detail)});
  };

  if (blockers.empty()) {
    append("You are clear", "No blockers were detected. Keep scans running before major travel or shutdown events.");
    return actions;
  }

  const auto counts = countByReason(blockers);
  const auto isPresent = [&](BlockerReason reason) { return counts.at(static_cast<std::size_t>(reason)) > 0; };
  if (isPresent(BlockerReason::unavailableFolder)) {
    append("Reconnect missing watchlist folders",
           "Open Watchlist and remove/re-add any folder paths that no longer exist on this Mac.");
  }
  if (isPresent(BlockerReason::unresolvedConflict)) {
    append("Resolve file conflicts first",
           "Open conflicted files and decide which version is canonical before more edits happen.");
  }
  if (isPresent(BlockerReason::uploadError) || isPresent(BlockerReason::downloadError)) {
    append("Stabilize network and re-check",
           "Confirm reliable internet, then run scan again before trying deeper troubleshooting.");
  }
  if (isPresent(BlockerReason::stalledUpload) || metrics.pendingUploads >= 1) {
    append("Keep Mac awake until pending uploads clear",
           "Avoid shutdown or travel until pending files drop to zero in the next scan cycle.");
  }
  if (isPresent(BlockerReason::outsideICloud)) {
    append("Move critical folders into iCloud Drive",
           "Folders outside iCloud cannot be covered by upload trust checks.");
  }
  if (actions.empty()) {
    append("Run another scan in 2-3 minutes", "If blockers persist across scans, export a proof packet for support.");
  }
  if (actions.size() > kMaximumActions) {
    actions.resize(kMaximumActions);
  }
  return actions;
}

std::string summaryText(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics) {
  if (blockers.empty()) {
    return "No blockers detected in your watchlist.";
  }
  if (areAllCloudOnly(blockers) && metrics.notDownloaded >= 1) {
    return fmt::format("Upload trust is strong. {} files are cloud-only on this Mac.", metrics.notDownloaded);
  }
  switch (status) {
    case HealthState::safe:
      return "Minor issues found, but critical upload risk appears clear.";
    case HealthState::warning:
      return fmt::format("{} issues found. Review blockers before leaving or shutting down.", blockers.size());
    case HealthState::danger:
      break;
  }
  return fmt::format("Sync trust is low: {} pending uploads and {} errors need attention.", metrics.pendingUploads,
                     metrics.errors);
}

bool isSafeToClose(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics) {
  return status == HealthState::safe &&
         std::ranges::none_of(blockers,
                              [](const SyncBlocker& blocker) { return forbidsSafeToClose(blocker.reason); }) &&
         metrics.pendingUploads == 0 && metrics.unresolvedConflicts == 0 && metrics.errors == 0;
}

}  // namespace cirrovane
