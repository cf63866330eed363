#pragma once

#include "coordinator/CoverageKeeper.h"
#include "coordinator/GuardrailNotificationService.h"
#include "core/ICloudScanEngine.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemStatusService.h"
#include "diagnostics/ToolInstaller.h"
#include "platform/Machine.h"
#include "stores/IncidentStore.h"
#include "stores/ScanHistoryStore.h"
#include "stores/UploadsStore.h"
#include "stores/WatchlistStore.h"

#include <functional>
#include <memory>

namespace cirrovane {

/// The stores and services over one machine. Those that work off the main thread are shared with the work under way,
/// which may outlive the rest.
struct Services {
  std::unique_ptr<WatchlistStore> watchlist;
  std::unique_ptr<ScanHistoryStore> historyStore;
  std::shared_ptr<const ICloudScanEngine> engine;
  std::shared_ptr<const PlatformDiagnosticsService> diagnosticsService;
  std::shared_ptr<const SystemStatusService> systemStatusService;
  /// Makes the runner of one refresh's probes, which diagnostics and status share.
  std::function<std::unique_ptr<ProbeRunner>()> makeProbes;
  std::unique_ptr<IncidentStore> incidentStore;
  /// nullptr where nobody remembers how uploads go.
  std::shared_ptr<const UploadsStore> uploads;
  /// nullptr where nobody keeps what safe scans say of it.
  std::shared_ptr<const CoverageKeeper> coverage;
  /// nullptr where nobody is to be notified.
  std::unique_ptr<GuardrailNotificationService> notificationService;
};

// Each store and service over a machine, which outlives it.

/// Opens the watchlist: reads its file. An empty one may get its first folder.
std::unique_ptr<WatchlistStore> openWatchlist(const Machine& machine);
/// Opens the scan history: reads its file.
std::unique_ptr<ScanHistoryStore> openHistory(const Machine& machine);
/// Opens the incidents: reads their file.
std::unique_ptr<IncidentStore> openIncidents(const Machine& machine);
/// What is remembered of uploads.
std::shared_ptr<const UploadsStore> makeUploadsStore(const Machine& machine);
/// Keeps the coverage; reads no file before it is asked.
std::shared_ptr<const CoverageKeeper> makeCoverageKeeper(const Machine& machine);
/// Its scans tell `progress`, where there is one, how far they have come.
std::shared_ptr<const ICloudScanEngine> makeScanEngine(const Machine& machine, ScanProgress* progress = nullptr);
/// Judges the machine from its probes.
std::shared_ptr<const PlatformDiagnosticsService> makeDiagnosticsService(const Machine& machine);
/// Measures the machine.
std::shared_ptr<const SystemStatusService> makeSystemStatusService(const Machine& machine);
/// The runner of one refresh's probes.
std::unique_ptr<ProbeRunner> makeProbeRunner(const Machine& machine);
/// Finds and installs the optional tools.
ToolInstaller makeToolInstaller(const Machine& machine);

/// All that a refresh needs, but the notification service: every store is opened. Scans tell `progress`, where there is
/// one.
Services makeServices(const Machine& machine, ScanProgress* progress = nullptr);

/// Switches notifications on for a user who has never had a say in it.
void registerDefaults(UserDefaults& userDefaults);

}  // namespace cirrovane
