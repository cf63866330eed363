#pragma once

#include "stores/IncidentRecord.h"
#include "stores/ScanSnapshot.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace cirrovane {

// What the history of scans and the incidents amount to, for cards and badges. Snapshots come newest first.

using Snapshots = std::span<const ScanSnapshot>;

/// The newest snapshots, at most eight.
Snapshots recentHistory(Snapshots snapshots);
/// The newest snapshots, at most two hundred.
Snapshots fullHistory(Snapshots snapshots);
/// The newest snapshot whose verdict was, or was not, safe to close; absent when there is none.
std::optional<ScanSnapshot> lastSnapshot(Snapshots snapshots, bool safeToClose);
/// The share of safe verdicts among the ten newest: "66% safe in last 3 scans".
std::string recentStabilityText(Snapshots snapshots);

using Incidents = std::span<const IncidentRecord>;

std::int64_t activeIncidentCount(Incidents incidents);
std::int64_t resolvedIncidentCount(Incidents incidents);
/// Active ones that were seen more than once.
std::int64_t recurringIncidentCount(Incidents incidents);

}  // namespace cirrovane
