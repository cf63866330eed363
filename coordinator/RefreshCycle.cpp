#include "coordinator/RefreshCycle.h"

#include "coordinator/DefaultsKeys.h"
#include "coordinator/StageSequence.h"

#include <utility>

namespace cirrovane {
namespace {

/// So that the alarm for a stale verdict finds it stale.
constexpr std::chrono::milliseconds kJustAfter{1};

/// What the stages off the main thread hand over. Each value is written by one stage and taken by the next.
struct Scanned {
  Confirmation confirmation;
  Shared<SyncHealthReport> report;
};

struct Findings {
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
  std::optional<ProbeFailures> probeFailures;
};

RefreshCycle::RefreshCycle(Services services, const RefreshEnvironment& environment)
    : services_(std::move(services)),
      environment_(environment),
      report_(Shared<SyncHealthReport>(SyncHealthReport::empty())),
      isScanning_(false),
      systemStatus_(SystemStatusSnapshot::empty()),
      uploads_(services_.uploads, report_,
               {environment.executors.main, environment.executors.scan, environment.clock, environment.monotonicClock,
                environment.uploadsAlarm}) {
  if (environment_.live != nullptr) {
    followLive();
  }
}

RefreshCycle::~RefreshCycle() {
  if (environment_.cycleLimit != nullptr) {
    environment_.cycleLimit->stop();
  }
  if (environment_.staleAlarm != nullptr) {
    environment_.staleAlarm->clear();
  }
  if (environment_.live != nullptr) {
    environment_.live->onTurned(nullptr);
  }
}

void RefreshCycle::followLive() {
  LiveVerdict& live = *environment_.live;
  liveSubscriptions_.push_back(live.report().afterChange([this](const std::optional<Shared<SyncHealthReport>>& report) {
    if (report) {
      show(*report);
      uploads_.lookSoon();
    }
  }));
  liveSubscriptions_.push_back(live.liveness().afterChange([this](const Liveness& liveness) {
    liveness_.set(liveness);
    showVerdict();
  }));
  live.onTurned([this] { refresh(CycleCause::regular); });
}

void RefreshCycle::refresh(CycleCause cause) {
  if (isScanning_.value()) {
    return;
  }
  isScanning_.set(true);
  cycle_ = std::make_shared<Cycle>();
  cycle_->folders = services_.watchlist->folders();
  cycle_->previousSafe = environment_.userDefaults.boolean(kLastKnownSafeToCloseKey);

  if (environment_.live == nullptr) {
    scan();
    return;
  }
  environment_.live->cycleBegan();
  environment_.live->obtain(
      cycle_->folders, cause,
      [this, owner = std::weak_ptr(cycle_)](const Shared<SyncHealthReport>& report, const Confirmation& confirmation) {
        if (!owner.expired()) {
          publishReport(report, confirmation);
          collect(report);
        }
      });
}

void RefreshCycle::scan() {
  const RefreshExecutors& executors = environment_.executors;
  const auto scanned = std::make_shared<Scanned>();
  runStages(
      {
          {executors.scan,
           [scanned, folders = cycle_->folders, engine = services_.engine, &clock = environment_.clock,
            &monotonicClock = environment_.monotonicClock] {
             scanned->confirmation = confirmationNow(clock, monotonicClock);
             scanned->report = Shared<SyncHealthReport>(engine->scan(folders));
           }},
          {executors.main,
           [scanned, this] {
             publishReport(scanned->report, scanned->confirmation);
             collect(scanned->report);
           }},
      },
      cycle_);
}

void RefreshCycle::collect(const Shared<SyncHealthReport>& report) {
  const RefreshExecutors& executors = environment_.executors;
  // Beside the rest of the cycle, which waits for nothing of it.
  uploads_.look(report);
  const auto found = std::make_shared<Findings>();
  found->probes = services_.makeProbes();
  runStages(
      {
          {executors.diagnostics,
           [found, report, folders = cycle_->folders, service = services_.diagnosticsService] {
             found->collected = service->collect(*found->probes, *report, folders);
           }},
          {executors.main, [found, this] { cycle_->collected = std::move(found->collected); }},
          {executors.status,
           [found, service = services_.systemStatusService] { found->status = service->capture(*found->probes); }},
          {executors.main,
           [found, this] {
             cycle_->status = std::move(found->status);
             cycle_->probeFailures = found->probes->failures();
             finish();
           }},
      },
      cycle_);
}

void RefreshCycle::publishReport(const Shared<SyncHealthReport>& report, const Confirmation& confirmation) {
  cycle_->report = report;
  const bool isNewer = !confirmation_ || confirmation.sinceBoot >= confirmation_->sinceBoot;
  // A live verdict has shown it, and perhaps a newer one since.
  if (environment_.live == nullptr && isNewer) {
    confirmation_ = confirmation;
    show(report);
  }
  if (environment_.cycleLimit != nullptr) {
    environment_.cycleLimit->start(kLongestCollection, [this] { finish(); });
  }
}

void RefreshCycle::show(const Shared<SyncHealthReport>& report) {
  Shared<SyncHealthReport> previous = report_.value();
  report_.set(report);
  // The release of a large report takes its time, which nobody has to wait for on the scan's own executor.
  environment_.executors.scan.post([released = std::move(previous)] {});
  showVerdict();
}

std::optional<Confirmation> RefreshCycle::confirmation() const {
  return environment_.live != nullptr ? environment_.live->confirmation() : confirmation_;
}

void RefreshCycle::finish() {
  // The stages that are left are dropped with the cycle, wherever they wait.
  const std::shared_ptr<Cycle> cycle = std::move(cycle_);
  cycle_ = nullptr;
  if (environment_.cycleLimit != nullptr) {
    environment_.cycleLimit->stop();
  }
  if (environment_.live != nullptr) {
    environment_.live->cycleEnded(cycle->report->safeToClose);
  }
  services_.historyStore->record(*cycle->report);
  probeFailures_ = cycle->probeFailures;
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
  recordFileCounts(cycle->report);
  isScanning_.set(false);
  // Without the cycle itself, whose last holder's end is what drops its stages.
  environment_.executors.main.post([this, alive = std::weak_ptr(alive_), previousSafe = cycle->previousSafe,
                                    report = cycle->report, folders = std::move(cycle->folders)] {
    if (!alive.expired()) {
      notify(previousSafe, report, folders);
    }
  });
}

void RefreshCycle::recordFileCounts(const Shared<SyncHealthReport>& report) {
  if (services_.coverage == nullptr) {
    return;
  }
  // Another program may hold the file's lock for a while, which nobody has to wait for.
  environment_.executors.status.post([this, alive = std::weak_ptr(alive_), report, coverage = services_.coverage,
                                      &main = environment_.executors.main, hadFailed = fileCountFailure_.has_value()] {
    std::optional<Failure> failure = coverage->record(*report);
    if (failure || hadFailed) {
      main.post([this, alive, failure = std::move(failure)]() mutable {
        if (!alive.expired()) {
          fileCountFailure_ = std::move(failure);
        }
      });
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
  const bool hasSlept = standingOf(confirmation(), environment_.monotonicClock) == VerdictStanding::slept;
  if (hasSlept || services_.watchlist->folders() != scannedFolders) {
    refresh();
  }
}

void RefreshCycle::showVerdict() {
  const std::optional<Confirmation> confirmed = confirmation();
  const ShownVerdict shown = shownVerdict(*report_.value(), confirmed, environment_.monotonicClock);
  if (shown != verdict_.value()) {
    verdict_.set(shown);
  }
  if (environment_.staleAlarm == nullptr) {
    return;
  }
  if (confirmed && shown.standing == VerdictStanding::confirmed) {
    environment_.staleAlarm->set(timeUntilStale(*confirmed, environment_.monotonicClock) + kJustAfter,
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

ProofPacket RefreshCycle::proofPacket() const {
  return {environment_.clock.now(), report_.value(),    packetHistory(services_.historyStore->snapshots()),
          diagnostics_.value(),     incidents_.value(), systemStatus_.value()};
}

}  // namespace cirrovane
