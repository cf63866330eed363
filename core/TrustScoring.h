#pragma once

#include "core/BlockerReason.h"
#include "core/HealthState.h"
#include "core/SyncHealthReport.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The rules that turn the blockers and counters of a scan into its verdict. Pure functions; callable on any thread.

namespace cirrovane {

/// Points that one blocker of the reason costs; also the reason's place in the order of blockers.
std::int64_t penaltyWeight(BlockerReason reason);
/// The most points that all blockers of the reason cost together.
std::int64_t penaltyCap(BlockerReason reason);
/// Whether a single blocker of the reason rules out "Safe to Close" by itself.
bool forbidsSafeToClose(BlockerReason reason);

/// The capped sum of the blockers' weights; 0 at least, beyond 100 possibly.
std::int64_t penalty(const std::vector<SyncBlocker>& blockers);

/// The Upload Trust score, 0 to 100, of the blockers.
std::int64_t uploadTrustScore(const std::vector<SyncBlocker>& blockers);

/// The traffic light of a score and of all blockers behind it.
HealthState healthState(std::int64_t score, const std::vector<SyncBlocker>& blockers);

/// The Local Availability score, 0 to 100; reads `totalFiles` and `notDownloaded`.
std::int64_t localReadinessScore(const ScanMetrics& metrics);

/// At most three next steps, ranked from 1; reads `pendingUploads`.
std::vector<RecommendedAction> recommendedActions(const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics);

/// The report in one sentence; reads `pendingUploads`, `errors` and `notDownloaded`.
std::string summaryText(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics);

/// The verdict: nothing known that could be lost by closing now.
bool isSafeToClose(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics);

}  // namespace cirrovane
