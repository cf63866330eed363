#include "coordinator/RefreshCycle.h"

#include "coordinator/DefaultsKeys.h"
#include "coordinator/StageSequence.h"

#include <utility>

namespace cirrovane {
namespace {

/// So that the alarm for a stale verdict finds it stale.
constexpr std::chrono::milliseconds kJustAfter{1};

/// What the stages off the main thread hand over. Each value is written by one stage and taken by the next.
struct Findings {
  Confirmation confirmation;
  Shared<SyncHealthReport> report;
  std::unique_ptr<ProbeRunner> probes;
  CollectedFindings collected;
  SystemStatusSnapshot status;
};

}  // namespace

/// What one refresh begins with and what of its results has arrived. Main thread only.
struct RefreshCycle::Cycle {
  std::vector<WatchFolder> folders;
  /// The verdict remembered before; absent when unknown.
  std::optional<bool> previousSafe;
  Shared<SyncHealthReport> report;
  /// Each absent until its stage is over.
  std::optional<CollectedFindings> collected;
  std::optional<SystemStatusSnapshot> status;
};

RefreshCycle::RefreshCycle(Services services, const RefreshEnvironment& environment)
    : services_(std::move(services)),
      environment_(environment),
      report_(Shared<SyncHealthReport>(SyncHealthReport::empty())),
      isScanning_(false),
      systemStatus_(SystemStatusSnapshot::empty()) {}

RefreshCycle::~RefreshCycle() {
  if (environment_.cycleLimit != nullptr) {
    environment_.cycleLimit->stop();
  }
  if (environment_.staleAlarm != nullptr) {
    environment_.staleAlarm->clear();
  }
}

void RefreshCycle::refresh() {
  if (isScanning_.value()) {
    return;
  }
  isScanning_.set(true);
  cycle_ = std::make_shared<Cycle>();
  cycle_->folders = services_.watchlist->folders();
  cycle_->previousSafe = environment_.userDefaults.boolean(kLastKnownSafeToCloseKey);

  const RefreshExecutors& executors = environment_.executors;
  const auto found = std::make_shared<Findings>();
  found->probes = services_.makeProbes();
  runStages(
      {
          {executors.scan,
           [found, folders = cycle_->folders, engine = services_.engine, &clock = environment_.clock,
            &monotonicClock = environment_.monotonicClock] {
             found->confirmation = confirmationNow(clock, monotonicClock);
             found->report = Shared<SyncHealthReport>(engine->scan(folders));
           }},
          {executors.main, [found, this] { publishReport(found->report, found->confirmation); }},
          {executors.diagnostics,
           [found, folders = cycle_->folders, service = services_.diagnosticsService] {
             found->collected = service->collect(*found->probes, *found->report, folders);
           }},
          {executors.main, [found, this] { cycle_->collected = std::move(found->collected); }},
          {executors.status,
           [found, service = services_.systemStatusService] { found->status = service->capture(*found->probes); }},
          {executors.main,
           [found, this] {
             cycle_->status = std::move(found->status);
             finish();
           }},
      },
      cycle_);
}

void RefreshCycle::publishReport(const Shared<SyncHealthReport>& report, const Confirmation& confirmation) {
  cycle_->report = report;
  if (!confirmation_ || confirmation.sinceBoot >= confirmation_->sinceBoot) {
    confirmation_ = confirmation;
    Shared<SyncHealthReport> previous = report_.value();
    report_.set(report);
    // The release of a large report takes its time, which nobody has to wait for on the scan's own executor.
    environment_.executors.scan.post([released = std::move(previous)] {});
    showVerdict();
  }
  if (environment_.cycleLimit != nullptr) {
    environment_.cycleLimit->start(kLongestCollection, [this] { finish(); });
  }
}

void RefreshCycle::finish() {
  // The stages that are left are dropped with the cycle, wherever they wait.
  const std::shared_ptr<Cycle> cycle = std::move(cycle_);
  cycle_ = nullptr;
  if (environment_.cycleLimit != nullptr) {
    environment_.cycleLimit->stop();
  }
  services_.historyStore->record(*cycle->report);
  std::optional<CollectedFindings> collected = std::move(cycle->collected);
  std::vector<FindingKey> notReached;
  if (collected) {
    notReached = collected->notReached;
    diagnostics_.set(withLastValues(std::move(*collected), diagnostics_.value()));
    diagnosticsUpdatedAt_.set(environment_.clock.now());
  }
  if (std::optional<SystemStatusSnapshot> status = std::move(cycle->status)) {
    systemStatus_.set(std::move(*status));
  }
  if (collected) {
    services_.incidentStore->merge(diagnostics_.value(), cycle->report->generatedAt, notReached);
  }
  incidents_.set(services_.incidentStore->records());
  isScanning_.set(false);
  // Without the cycle itself, whose last holder's end is what drops its stages.
  environment_.executors.main.post([this, alive = std::weak_ptr(alive_), previousSafe = cycle->previousSafe,
                                    report = cycle->report, folders = std::move(cycle->folders)] {
    if (!alive.expired()) {
      notify(previousSafe, report, folders);
    }
  });
}

void RefreshCycle::notify(std::optional<bool> previousSafe, const Shared<SyncHealthReport>& report,
                          const std::vector<WatchFolder>& folders) {
  const auto then = [this, alive = std::weak_ptr(alive_), folders] {
    if (!alive.expired()) {
      refreshIfOutdated(folders);
    }
  };
  if (services_.notificationService) {
    services_.notificationService->notifyStatusTransition(previousSafe, report, then);
  } else {
    then();
  }
}

void RefreshCycle::refreshIfOutdated(const std::vector<WatchFolder>& scannedFolders) {
  const bool hasSlept = standingOf(confirmation_, environment_.monotonicClock) == VerdictStanding::slept;
  if (hasSlept || services_.watchlist->folders() != scannedFolders) {
    refresh();
  }
}

void RefreshCycle::showVerdict() {
  const ShownVerdict shown = shownVerdict(*report_.value(), confirmation_, environment_.monotonicClock);
  if (shown != verdict_.value()) {
    verdict_.set(shown);
  }
  if (environment_.staleAlarm == nullptr) {
    return;
  }
  if (confirmation_ && shown.standing == VerdictStanding::confirmed) {
    environment_.staleAlarm->set(timeUntilStale(*confirmation_, environment_.monotonicClock) + kJustAfter,
                                 [this] { showVerdict(); });
  } else if (shown.standing == VerdictStanding::slept) {
    refresh();
  }
}

void RefreshCycle::toggleResolved(const IncidentRecord& record) {
  if (record.isResolved) {
    services_.incidentStore->reopen(record);
  } else {
    services_.incidentStore->markResolved(record);
  }
  incidents_.set(services_.incidentStore->records());
}

std::optional<Failure> RefreshCycle::exportProofPacket(const std::string& path) const {
  return saveProofPacket(proofPacket(), environment_.fileStorage, path);
}

ProofPacket RefreshCycle::proofPacket() const {
  return {environment_.clock.now(), report_.value(),    packetHistory(services_.historyStore->snapshots()),
          diagnostics_.value(),     incidents_.value(), systemStatus_.value()};
}

}  // namespace cirrovane
