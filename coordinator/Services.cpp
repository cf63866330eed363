#include "coordinator/Services.h"

#include "coordinator/DefaultsKeys.h"

namespace cirrovane {

std::unique_ptr<WatchlistStore> openWatchlist(const Machine& machine) {
  return std::make_unique<WatchlistStore>(*machine.fileSystem, *machine.fileStorage, *machine.collation);
}

std::unique_ptr<ScanHistoryStore> openHistory(const Machine& machine) {
  return std::make_unique<ScanHistoryStore>(*machine.fileSystem, *machine.fileStorage);
}

std::unique_ptr<IncidentStore> openIncidents(const Machine& machine) {
  return std::make_unique<IncidentStore>(*machine.fileSystem, *machine.fileStorage, *machine.clock);
}

std::shared_ptr<const UploadsStore> makeUploadsStore(const Machine& machine) {
  return std::make_shared<const UploadsStore>(*machine.fileSystem, *machine.fileStorage);
}

std::shared_ptr<const CoverageKeeper> makeCoverageKeeper(const Machine& machine) {
  return std::make_shared<const CoverageKeeper>(*machine.fileSystem, *machine.fileStorage, *machine.clock);
}

std::shared_ptr<const ICloudScanEngine> makeScanEngine(const Machine& machine, ScanProgress* progress) {
  return std::make_shared<const ICloudScanEngine>(*machine.fileSystem, *machine.clock,
                                                  ICloudScanEngine::kDefaultStaleUploadThreshold, progress);
}

std::shared_ptr<const PlatformDiagnosticsService> makeDiagnosticsService(const Machine& machine) {
  return std::make_shared<const PlatformDiagnosticsService>(*machine.systemInformation, *machine.fileSystem,
                                                            *machine.clock);
}

std::shared_ptr<const SystemStatusService> makeSystemStatusService(const Machine& machine) {
  return std::make_shared<const SystemStatusService>(*machine.systemInformation, *machine.fileSystem, *machine.clock);
}

std::unique_ptr<ProbeRunner> makeProbeRunner(const Machine& machine) {
  return std::make_unique<ProbeRunner>(*machine.commandRunner, *machine.monotonicClock);
}

ToolInstaller makeToolInstaller(const Machine& machine) {
  return {*machine.commandRunner, *machine.systemInformation};
}

Services makeServices(const Machine& machine, ScanProgress* progress) {
  Services services;
  services.watchlist = openWatchlist(machine);
  services.historyStore = openHistory(machine);
  services.engine = makeScanEngine(machine, progress);
  services.diagnosticsService = makeDiagnosticsService(machine);
  services.systemStatusService = makeSystemStatusService(machine);
  services.makeProbes = [&machine] { return makeProbeRunner(machine); };
  services.incidentStore = openIncidents(machine);
  services.uploads = makeUploadsStore(machine);
  services.coverage = makeCoverageKeeper(machine);
  return services;
}

void registerDefaults(UserDefaults& userDefaults) {
  if (!userDefaults.value(kGuardrailNotificationsEnabledKey)) {
    // What cannot be stored now is tried again at the next launch.
    static_cast<void>(userDefaults.set(kGuardrailNotificationsEnabledKey, true));
  }
}

}  // namespace cirrovane
