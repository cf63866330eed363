#pragma once

#include "base/Published.h"
#include "base/Shared.h"
#include "coordinator/LiveVerdict.h"
#include "coordinator/Services.h"
#include "coordinator/UploadTracker.h"
#include "coordinator/VerdictStanding.h"
#include "core/SyncHealthReport.h"
#include "diagnostics/DiagnosticFinding.h"
#include "diagnostics/SystemStatusSnapshot.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/Executor.h"
#include "platform/FileStorage.h"
#include "platform/Timer.h"
#include "platform/UserDefaults.h"
#include "stores/IncidentRecord.h"
#include "stores/ProofPacket.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The main thread, and the one executor each for scans, diagnostics and status samples.
struct RefreshExecutors {
  Executor& main;
  Executor& scan;
  Executor& diagnostics;
  Executor& status;
};

/// What refreshes need of the machine; outlives them and all work that they have under way.
struct RefreshEnvironment {
  RefreshExecutors executors;
  const FileStorage& fileStorage;
  const UserDefaults& userDefaults;
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  /// Ends a cycle whose probes do not come back. nullptr where everything runs at once on the calling thread.
  Timer* cycleLimit = nullptr;
  /// Tells when a YES grows stale. nullptr where nobody looks at a verdict for that long.
  Alarm* staleAlarm = nullptr;
  /// Gives the reports, and follows the files between refreshes. nullptr where each refresh is all that is asked for.
  LiveVerdict* live = nullptr;
  /// Follows uploads between refreshes. nullptr where nobody looks on.
  Alarm* uploadsAlarm = nullptr;
};

/// The refresh: its stages, the published results of the latest one, and the packet made of them. Main thread only. It
/// may be destroyed at any time; a refresh under way then comes to nothing.
class RefreshCycle {
 public:
  /// After its report is out, a cycle waits no longer for findings and status.
  static constexpr std::chrono::seconds kLongestCollection{35};

  RefreshCycle(Services services, const RefreshEnvironment& environment);
  ~RefreshCycle();

  RefreshCycle(const RefreshCycle&) = delete;
  RefreshCycle& operator=(const RefreshCycle&) = delete;

  // What is published: observers are told before each change and after it.

  /// Of the latest scan, as soon as that is over, or of what changed since.
  const Published<Shared<SyncHealthReport>>& report() const { return report_; }
  /// The latest report's verdict and what it is worth now.
  const Published<ShownVerdict>& verdict() const { return verdict_; }
  /// How the report stands to what happens in the watched folders.
  const Published<Liveness>& liveness() const { return liveness_; }
  /// Whether a refresh is under way.
  const Published<bool>& isScanning() const { return isScanning_; }
  /// Of the latest refresh, in the order of presentation.
  const Published<std::vector<DiagnosticFinding>>& diagnostics() const { return diagnostics_; }
  const Published<std::optional<Time>>& diagnosticsUpdatedAt() const { return diagnosticsUpdatedAt_; }
  const Published<SystemStatusSnapshot>& systemStatus() const { return systemStatus_; }
  /// How uploads stand after the latest refresh's scan, or what changed since.
  const Published<UploadStanding>& uploads() const { return uploads_.standing(); }
  /// What is remembered of each file that uploads.
  const Published<Shared<UploadRecord>>& uploadRecord() const { return uploads_.record(); }
  /// Of the latest refresh; absent where its probes have not come back, and before the first.
  const std::optional<ProbeFailures>& probeFailures() const { return probeFailures_; }
  /// As the store held them after the latest refresh or the user's latest change.
  const Published<std::vector<IncidentRecord>>& incidents() const { return incidents_; }

  // Whoever may only look at the results may not change the stores.
  // NOLINTBEGIN(readability-make-member-function-const)
  WatchlistStore& watchlist() { return *services_.watchlist; }
  // NOLINTEND(readability-make-member-function-const)
  const WatchlistStore& watchlist() const { return *services_.watchlist; }
  const ScanHistoryStore& historyStore() const { return *services_.historyStore; }
  const IncidentStore& incidentStore() const { return *services_.incidentStore; }
  /// Why the file counts of the latest refresh could not be kept; absent when they were, or there was nothing to keep.
  /// Known a while after the refresh, unless everything runs on the calling thread.
  const std::optional<Failure>& fileCountFailure() const { return fileCountFailure_; }

  /// Begins a refresh and returns; does nothing while one is under way.
  void refresh(CycleCause cause = CycleCause::asked);

  /// Resolves an active incident, or reopens a resolved one.
  void toggleResolved(const IncidentRecord& record);

  /// Everything known now.
  ProofPacket proofPacket() const;
  /// Where files are kept.
  const FileStorage& fileStorage() const { return environment_.fileStorage; }

 private:
  struct Cycle;

  /// Shows what the live verdict shows, from now on.
  void followLive();
  /// Shows a report in place of the one before.
  void show(const Shared<SyncHealthReport>& report);
  /// Up to when the shown report is known to hold; absent before the first.
  std::optional<Confirmation> confirmation() const;
  /// Scans, and publishes the report.
  void scan();
  /// What follows a report: findings, status, and the end.
  void collect(const Shared<SyncHealthReport>& report);
  void publishReport(const Shared<SyncHealthReport>& report, const Confirmation& confirmation);
  /// Publishes what has arrived besides the report, and ends the cycle.
  void finish();
  /// Has the files that a safe scan counted remembered, beside the rest.
  void recordFileCounts(const Shared<SyncHealthReport>& report);
  /// Tells the user of a turned verdict over the scanned folders.
  void notify(std::optional<bool> previousSafe, const Shared<SyncHealthReport>& report,
              const std::vector<WatchFolder>& folders);
  /// Refreshes once more where the latest scan missed a change of the watchlist or began before the machine slept.
  void refreshIfOutdated(const std::vector<WatchFolder>& scannedFolders);
  /// Publishes what the report is worth now, and has the change to come noticed.
  void showVerdict();

  Services services_;
  RefreshEnvironment environment_;

  Published<Shared<SyncHealthReport>> report_;
  Published<ShownVerdict> verdict_;
  Published<Liveness> liveness_;
  Published<bool> isScanning_;
  Published<std::vector<DiagnosticFinding>> diagnostics_;
  Published<std::optional<Time>> diagnosticsUpdatedAt_;
  Published<SystemStatusSnapshot> systemStatus_;
  Published<std::vector<IncidentRecord>> incidents_;
  /// Of the published report; absent before the first.
  std::optional<Confirmation> confirmation_;

  std::optional<ProbeFailures> probeFailures_;
  std::optional<Failure> fileCountFailure_;
  UploadTracker uploads_;

  std::vector<Subscription> liveSubscriptions_;

  /// The cycle under way; nullptr between two. Its stages are dropped as soon as it goes.
  std::shared_ptr<Cycle> cycle_;
  /// Gone with this object, by which a task on its way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
