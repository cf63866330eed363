#pragma once

#include "coordinator/Liveness.h"
#include "core/CoverageReport.h"
#include "core/PendingUploads.h"
#include "core/SyncHealthReport.h"
#include "diagnostics/ProbeRunner.h"
#include "stores/IncidentRecord.h"
#include "stores/ScanSnapshot.h"

#include <optional>
#include <span>
#include <string>

namespace cirrovane {

/// What metrics are made of. All of it outlives the call that gets it.
struct FleetFacts {
  const SyncHealthReport& report;
  /// nullptr before anybody has looked.
  const CoverageReport* coverage;
  /// Its totals; the files are not looked at.
  const PendingUploads& uploads;
  /// Newest first, as recorded; the report's own scan is not among them where nothing was recorded of it.
  std::span<const ScanSnapshot> history;
  std::span<const IncidentRecord> incidents;
  /// "v1.2 (45)".
  std::string version;
  /// Of the latest refresh; absent where none has told.
  std::optional<ProbeFailures> probeFailures = std::nullopt;
  /// Absent where nobody follows the files.
  std::optional<Liveness> liveness = std::nullopt;
};

/// The state of this machine in the Prometheus text format 0.0.4: each family with its help and type, no timestamps,
/// no name and no path of a file. What is not known is left out. The same facts give the same text.
std::string fleetMetrics(const FleetFacts& facts);

}  // namespace cirrovane
