#pragma once

#include "coordinator/GuardrailNotificationService.h"
#include "core/ICloudScanEngine.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemStatusService.h"
#include "platform/Machine.h"
#include "stores/IncidentStore.h"
#include "stores/ScanHistoryStore.h"
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
  /// nullptr where nobody is to be notified.
  std::unique_ptr<GuardrailNotificationService> notificationService;
};

/// Opens the stores and makes the services of a machine, in the order in which they depend on each other. Scans tell
/// `progress`, where there is one. Without the notification service.
Services makeServices(const Machine& machine, ScanProgress* progress = nullptr);

/// Switches notifications on for a user who has never had a say in it.
void registerDefaults(UserDefaults& userDefaults);

}  // namespace cirrovane
