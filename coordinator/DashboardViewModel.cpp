#include "coordinator/DashboardViewModel.h"

#include "coordinator/DefaultsKeys.h"
#include "coordinator/StageSequence.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cirrovane {

/// What one refresh begins with and finds out on its way.
struct DashboardViewModel::Cycle {
  std::vector<WatchFolder> folders;
  /// The verdict remembered before; absent when unknown.
  std::optional<bool> previousSafe;
  Shared<SyncHealthReport> report{SyncHealthReport()};
  std::unique_ptr<ProbeRunner> probes;
  CollectedFindings collected;
  SystemStatusSnapshot status;
};

DashboardViewModel::DashboardViewModel(DashboardServices services, const DashboardEnvironment& environment)
    : services_(std::move(services)),
      environment_(environment),
      report_(Shared<SyncHealthReport>(SyncHealthReport::empty())),
      isScanning_(false),
      systemStatus_(SystemStatusSnapshot::empty()) {}

DashboardViewModel::~DashboardViewModel() {
  if (hasStartedAutoRefresh_) {
    environment_.refreshTimer.stop();
  }
}

void DashboardViewModel::refresh() {
  if (isScanning()) {
    return;
  }
  isScanning_.set(true);
  const auto cycle = std::make_shared<Cycle>();
  cycle->folders = services_.watchlist->folders();
  cycle->probes = services_.makeProbes();
  cycle->previousSafe = environment_.userDefaults.boolean(kLastKnownSafeToCloseKey);

  const DashboardExecutors& executors = environment_.executors;
  runStages(
      {
          {executors.scan,
           [cycle, engine = services_.engine] {
             cycle->report = Shared<SyncHealthReport>(engine->scan(cycle->folders));
           }},
          {executors.diagnostics,
           [cycle, service = services_.diagnosticsService] {
             cycle->collected = service->collect(*cycle->probes, *cycle->report, cycle->folders);
           }},
          {executors.status,
           [cycle, service = services_.systemStatusService] { cycle->status = service->capture(*cycle->probes); }},
          {executors.main, [cycle, this] { publish(*cycle); }},
          {executors.main, [cycle, this] { notify(*cycle); }},
      },
      alive_);
}

void DashboardViewModel::publish(Cycle& cycle) {
  Shared<SyncHealthReport> previousReport = report_.value();
  report_.set(cycle.report);
  // The release of a large report takes its time, which nobody has to wait for on the scan's own executor.
  environment_.executors.scan.post([released = std::move(previousReport)] {});

  services_.historyStore->record(*cycle.report);
  const std::vector<FindingKey> notReached = cycle.collected.notReached;
  diagnostics_.set(withLastValues(std::move(cycle.collected), diagnostics()));
  diagnosticsUpdatedAt_.set(environment_.clock.now());
  systemStatus_.set(std::move(cycle.status));
  services_.incidentStore->merge(diagnostics(), cycle.report->generatedAt, notReached);
  incidents_.set(services_.incidentStore->records());
  isScanning_.set(false);
}

void DashboardViewModel::notify(const Cycle& cycle) const {
  if (services_.notificationService) {
    services_.notificationService->notifyStatusTransition(cycle.previousSafe, cycle.report);
  }
}

void DashboardViewModel::surfaceAppeared() {
  if (!hasStartedAutoRefresh_) {
    hasStartedAutoRefresh_ = true;
    configureRefreshTimer();
  }
  refresh();
}

void DashboardViewModel::configureRefreshTimer() {
  environment_.refreshTimer.start(kRefreshInterval, [this, owner = std::weak_ptr(alive_)] {
    if (!owner.expired()) {
      refresh();
    }
  });
}

void DashboardViewModel::addFolderFromPanel() {
  const std::weak_ptr owner = alive_;
  const auto folder = environment_.panels.chooseFolder({"Add Critical Folder", "Add to Watchlist"});
  // The panel handles events, and one of them may have ended everything.
  if (!folder || owner.expired()) {
    return;
  }
  services_.watchlist->addFolder(*folder);
  refresh();
}

void DashboardViewModel::exportProofPacket() {
  const std::weak_ptr owner = alive_;
  const std::string proposedName =
      "cirrovane-proof-" + environment_.timeText.fileNameStamp(environment_.clock.now()) + ".json";
  const auto path = environment_.panels.chooseFileToSave({"Export Proof Packet", proposedName});
  if (!path || owner.expired()) {
    return;
  }
  const std::optional<Failure> failure = exportProofPacket(*path);
  exportNote_.set(failure ? "Export failed: " + failure->message
                          : "Proof packet exported to " + path->substr(path->rfind('/') + 1) + ".");
}

std::optional<Failure> DashboardViewModel::exportProofPacket(const std::string& path) {
  return saveProofPacket(proofPacket(), environment_.fileStorage, path);
}

ProofPacket DashboardViewModel::proofPacket() const {
  return {environment_.clock.now(),
          report_.value(),
          packetHistory(services_.historyStore->snapshots()),
          diagnostics(),
          incidents(),
          systemStatus()};
}

void DashboardViewModel::revealInFinder(const std::string& path) {
  if (environment_.fileSystem.exists(path)) {
    environment_.workspace.reveal(path);
  }
}

std::vector<DiagnosticFinding> DashboardViewModel::diagnostics(DiagnosticDomain domain) const {
  std::vector<DiagnosticFinding> found;
  std::ranges::copy_if(diagnostics(), std::back_inserter(found),
                       [&](const DiagnosticFinding& finding) { return finding.domain == domain; });
  return found;
}

}  // namespace cirrovane
