#include "coordinator/HistorySummary.h"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kRecent = 8;
constexpr std::size_t kFull = 200;
constexpr std::size_t kStability = 10;

Snapshots first(Snapshots snapshots, std::size_t count) {
  return snapshots.first(std::min(count, snapshots.size()));
}

}  // namespace

Snapshots recentHistory(Snapshots snapshots) {
  return first(snapshots, kRecent);
}

Snapshots fullHistory(Snapshots snapshots) {
  return first(snapshots, kFull);
}

std::optional<ScanSnapshot> lastSnapshot(Snapshots snapshots, bool safeToClose) {
  const Snapshots history = fullHistory(snapshots);
  const auto found = std::ranges::find(history, safeToClose, &ScanSnapshot::safeToClose);
  return found != history.end() ? std::optional(*found) : std::nullopt;
}

std::string recentStabilityText(Snapshots snapshots) {
  const Snapshots kept = first(fullHistory(snapshots), kStability);
  if (kept.empty()) {
    return "Not enough scans yet.";
  }
  const auto safe = std::ranges::count(kept, true, &ScanSnapshot::safeToClose);
  const double percentage = static_cast<double>(safe) / static_cast<double>(kept.size()) * 100;
  return fmt::format("{}% safe in last {} scans", static_cast<std::int64_t>(percentage), kept.size());
}

std::int64_t activeIncidentCount(Incidents incidents) {
  return std::ranges::count(incidents, false, &IncidentRecord::isResolved);
}

std::int64_t resolvedIncidentCount(Incidents incidents) {
  return std::ranges::count(incidents, true, &IncidentRecord::isResolved);
}

std::int64_t recurringIncidentCount(Incidents incidents) {
  return std::ranges::count_if(
      incidents, [](const IncidentRecord& record) { return !record.isResolved && record.occurrences >= 2; });
}

}  // namespace cirrovane
