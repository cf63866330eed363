#pragma once

#include "coordinator/GuardrailNotificationService.h"
#include "coordinator/HistorySummary.h"
#include "coordinator/SafetyCriterion.h"
#include "core/ICloudScanEngine.h"
#include "core/Published.h"
#include "core/Shared.h"
#include "core/SyncHealthReport.h"
#include "diagnostics/DiagnosticFinding.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemStatusService.h"
#include "platform/Clock.h"
#include "platform/Executor.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "platform/Panels.h"
#include "platform/TimeText.h"
#include "platform/Timer.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "stores/IncidentStore.h"
#include "stores/ProofPacket.h"
#include "stores/ScanHistoryStore.h"
#include "stores/WatchlistStore.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The main thread, and the one executor each for scans, diagnostics and status samples.
struct DashboardExecutors {
  Executor& main;
  Executor& scan;
  Executor& diagnostics;
  Executor& status;
};

/// The stores and services of one dashboard. Those that work off the main thread are shared with the work under way,
/// which may outlive the dashboard.
struct DashboardServices {
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

/// What a dashboard needs of the machine; outlives it and all work that it has under way.
struct DashboardEnvironment {
  DashboardExecutors executors;
  Timer& refreshTimer;
  Panels& panels;
  Workspace& workspace;
  const FileSystem& fileSystem;
  const FileStorage& fileStorage;
  const UserDefaults& userDefaults;
  const TimeText& timeText;
  const Clock& clock;
};

/// What every screen shows and does: the published results of the latest refresh, the refresh itself, and the actions
/// that need a panel. Main thread only. It may be destroyed at any time; a refresh under way then comes to nothing.
class DashboardViewModel {
 public:
  static constexpr std::chrono::seconds kRefreshInterval{90};

  DashboardViewModel(DashboardServices services, const DashboardEnvironment& environment);
  ~DashboardViewModel();

  DashboardViewModel(const DashboardViewModel&) = delete;
  DashboardViewModel& operator=(const DashboardViewModel&) = delete;

  // Published state; observers of each are told before it changes.

  /// Of the latest scan.
  const SyncHealthReport& report() const { return *report_.value(); }
  Published<Shared<SyncHealthReport>>& publishedReport() { return report_; }
  /// Whether a refresh is under way.
  bool isScanning() const { return isScanning_.value(); }
  Published<bool>& publishedIsScanning() { return isScanning_; }
  /// How the latest export ended; absent before the first.
  const std::optional<std::string>& exportNote() const { return exportNote_.value(); }
  Published<std::optional<std::string>>& publishedExportNote() { return exportNote_; }
  /// Of the latest refresh, in the order of presentation.
  const std::vector<DiagnosticFinding>& diagnostics() const { return diagnostics_.value(); }
  Published<std::vector<DiagnosticFinding>>& publishedDiagnostics() { return diagnostics_; }
  const std::optional<Time>& diagnosticsUpdatedAt() const { return diagnosticsUpdatedAt_.value(); }
  Published<std::optional<Time>>& publishedDiagnosticsUpdatedAt() { return diagnosticsUpdatedAt_; }
  const SystemStatusSnapshot& systemStatus() const { return systemStatus_.value(); }
  Published<SystemStatusSnapshot>& publishedSystemStatus() { return systemStatus_; }
  /// As the store held them after the latest refresh.
  const std::vector<IncidentRecord>& incidents() const { return incidents_.value(); }
  Published<std::vector<IncidentRecord>>& publishedIncidents() { return incidents_; }

  // Whoever may only look at the dashboard may not change its stores.
  // NOLINTBEGIN(readability-make-member-function-const)
  WatchlistStore& watchlist() { return *services_.watchlist; }
  ScanHistoryStore& historyStore() { return *services_.historyStore; }
  IncidentStore& incidentStore() { return *services_.incidentStore; }
  // NOLINTEND(readability-make-member-function-const)

  // Actions

  /// Begins a refresh and returns; does nothing while one is under way.
  void refresh();
  /// To be called each time that a surface appears: refreshes, and from the first time on every 90 seconds.
  void surfaceAppeared();
  /// Lets the user pick a folder, watches it, and refreshes.
  void addFolderFromPanel();
  /// Lets the user name a file, and exports a proof packet to it.
  void exportProofPacket();
  /// Exports a proof packet to the file at the path; absent when it was written.
  std::optional<Failure> exportProofPacket(const std::string& path);
  /// Everything known now.
  ProofPacket proofPacket() const;
  /// Shows an item in the file manager, if it exists.
  void revealInFinder(const std::string& path);

  // Derived values, made anew at each reading

  Snapshots recentHistory() const { return cirrovane::recentHistory(services_.historyStore->snapshots()); }
  Snapshots fullHistory() const { return cirrovane::fullHistory(services_.historyStore->snapshots()); }
  std::vector<SafetyCriterion> safetyCriteria() const { return cirrovane::safetyCriteria(report()); }
  std::optional<ScanSnapshot> lastFailedSnapshot() const { return lastSnapshot(fullHistory(), false); }
  std::optional<ScanSnapshot> lastSafeSnapshot() const { return lastSnapshot(fullHistory(), true); }
  std::string recentStabilityText() const { return cirrovane::recentStabilityText(fullHistory()); }
  std::int64_t coverageGapCount() const { return cirrovane::coverageGapCount(report()); }
  std::int64_t activeIncidentCount() const { return cirrovane::activeIncidentCount(incidents()); }
  std::int64_t resolvedIncidentCount() const { return cirrovane::resolvedIncidentCount(incidents()); }
  std::int64_t recurringIncidentCount() const { return cirrovane::recurringIncidentCount(incidents()); }
  /// The findings of one domain, in the order of presentation.
  std::vector<DiagnosticFinding> diagnostics(DiagnosticDomain domain) const;

 private:
  struct Cycle;

  void configureRefreshTimer();
  void publish(Cycle& cycle);
  void notify(const Cycle& cycle) const;

  DashboardServices services_;
  DashboardEnvironment environment_;
  bool hasStartedAutoRefresh_ = false;

  Published<Shared<SyncHealthReport>> report_;
  Published<bool> isScanning_;
  Published<std::optional<std::string>> exportNote_;
  Published<std::vector<DiagnosticFinding>> diagnostics_;
  Published<std::optional<Time>> diagnosticsUpdatedAt_;
  Published<SystemStatusSnapshot> systemStatus_;
  Published<std::vector<IncidentRecord>> incidents_;

  /// Gone with the dashboard, by which work under way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
