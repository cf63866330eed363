#include "coordinator/Services.h"

#include "coordinator/DefaultsKeys.h"

namespace cirrovane {

Services makeServices(const Machine& machine, ScanProgress* progress) {
  const FileSystem& files = machine.fileSystem();
  const FileStorage& storage = machine.fileStorage();
  const Clock& clock = machine.clock();
  Services services;
  services.watchlist = std::make_unique<WatchlistStore>(files, storage, machine.collation());
  services.historyStore = std::make_unique<ScanHistoryStore>(files, storage);
  services.engine =
      std::make_shared<const ICloudScanEngine>(files, clock, ICloudScanEngine::kDefaultStaleUploadThreshold, progress);
  services.diagnosticsService =
      std::make_shared<const PlatformDiagnosticsService>(machine.systemInformation(), files, clock);
  services.systemStatusService = std::make_shared<const SystemStatusService>(machine.systemInformation(), files, clock);
  services.makeProbes = [&machine] {
    return std::make_unique<ProbeRunner>(machine.commandRunner(), machine.monotonicClock());
  };
  services.incidentStore = std::make_unique<IncidentStore>(files, storage, clock);
  return services;
}

void registerDefaults(UserDefaults& userDefaults) {
  if (!userDefaults.value(kGuardrailNotificationsEnabledKey)) {
    // What cannot be stored now is tried again at the next launch.
    static_cast<void>(userDefaults.set(kGuardrailNotificationsEnabledKey, true));
  }
}

}  // namespace cirrovane
