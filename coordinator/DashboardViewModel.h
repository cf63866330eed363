#pragma once

#include "coordinator/HistorySummary.h"
#include "coordinator/RefreshCycle.h"
#include "coordinator/SafetyCriterion.h"
#include "platform/Alarm.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "platform/Panels.h"
#include "platform/TimeText.h"
#include "platform/Timer.h"
#include "platform/Workspace.h"
#include "stores/ProofPacket.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What the window's errands need of the machine besides the refresh; outlives them.
struct DashboardEnvironment {
  Timer& refreshTimer;
  Panels& panels;
  Workspace& workspace;
  const FileSystem& fileSystem;
  const TimeText& timeText;
  /// Takes the note of an export away.
  Alarm& exportNoteAlarm;
  /// Ends the time in which a removal can be undone.
  Alarm& removalAlarm;
};

/// Writes what is made of a packet to a path, and answers the note on it.
using EvidenceSaver =
    std::function<Result<std::string>(const ProofPacket& packet, const std::string& path, const FileStorage& storage)>;

/// What every screen shows and does: the published results of the latest refresh, the refresh every 90 seconds, and the
/// actions that need a panel. Main thread only. It may be destroyed at any time.
class DashboardViewModel {
 public:
  static constexpr std::chrono::seconds kRefreshInterval{90};
  /// How long the note of an export that succeeded is shown.
  static constexpr std::chrono::seconds kExportNoteLifetime{20};
  /// How long a removal can be undone.
  static constexpr std::chrono::seconds kUndoTime{10};

  DashboardViewModel(Services services, const RefreshEnvironment& refreshEnvironment,
                     const DashboardEnvironment& environment);
  ~DashboardViewModel();

  DashboardViewModel(const DashboardViewModel&) = delete;
  DashboardViewModel& operator=(const DashboardViewModel&) = delete;

  /// The refresh behind it all.
  const RefreshCycle& cycle() const { return cycle_; }

  // Published state; observers of each are told before it changes and after it.

  /// Of the latest scan.
  const SyncHealthReport& report() const { return *cycle_.report().value(); }
  const Published<Shared<SyncHealthReport>>& publishedReport() const { return cycle_.report(); }
  /// The latest report's verdict and what it is worth now.
  const ShownVerdict& verdict() const { return cycle_.verdict().value(); }
  const Published<ShownVerdict>& publishedVerdict() const { return cycle_.verdict(); }
  /// How the report stands to what happens in the watched folders.
  const Liveness& liveness() const { return cycle_.liveness().value(); }
  const Published<Liveness>& publishedLiveness() const { return cycle_.liveness(); }
  /// Whether a refresh is under way.
  bool isScanning() const { return cycle_.isScanning().value(); }
  const Published<bool>& publishedIsScanning() const { return cycle_.isScanning(); }
  /// How the latest export ended; absent before the first, and some time after one that succeeded.
  const std::optional<std::string>& exportNote() const { return exportNote_.value(); }
  const Published<std::optional<std::string>>& publishedExportNote() const { return exportNote_; }
  /// The file that the note is about; absent without a note and for an export that failed.
  const std::optional<std::string>& exportedFile() const { return exportedFile_; }
  /// What the user has just removed from the watchlist and may want back, in the order of removal.
  const std::vector<WatchFolder>& removedFolders() const { return removedFolders_.value(); }
  const Published<std::vector<WatchFolder>>& publishedRemovedFolders() const { return removedFolders_; }
  /// Of the latest refresh, in the order of presentation.
  const std::vector<DiagnosticFinding>& diagnostics() const { return cycle_.diagnostics().value(); }
  const Published<std::vector<DiagnosticFinding>>& publishedDiagnostics() const { return cycle_.diagnostics(); }
  const std::optional<Time>& diagnosticsUpdatedAt() const { return cycle_.diagnosticsUpdatedAt().value(); }
  const Published<std::optional<Time>>& publishedDiagnosticsUpdatedAt() const { return cycle_.diagnosticsUpdatedAt(); }
  const SystemStatusSnapshot& systemStatus() const { return cycle_.systemStatus().value(); }
  const Published<SystemStatusSnapshot>& publishedSystemStatus() const { return cycle_.systemStatus(); }
  /// How uploads stand.
  const UploadStanding& uploads() const { return cycle_.uploads().value(); }
  const Published<UploadStanding>& publishedUploads() const { return cycle_.uploads(); }
  /// What is remembered of each file that uploads.
  const Published<Shared<UploadRecord>>& publishedUploadRecord() const { return cycle_.uploadRecord(); }
  /// As the store held them after the latest refresh or the user's latest change.
  const std::vector<IncidentRecord>& incidents() const { return cycle_.incidents().value(); }
  const Published<std::vector<IncidentRecord>>& publishedIncidents() const { return cycle_.incidents(); }

  WatchlistStore& watchlist() { return cycle_.watchlist(); }
  const WatchlistStore& watchlist() const { return cycle_.watchlist(); }
  const ScanHistoryStore& historyStore() const { return cycle_.historyStore(); }
  const IncidentStore& incidentStore() const { return cycle_.incidentStore(); }

  // Actions

  /// Begins a refresh and returns; does nothing while one is under way.
  void refresh(CycleCause cause = CycleCause::asked) { cycle_.refresh(cause); }
  /// To be called each time that a surface appears: refreshes, and from the first time on every 90 seconds.
  void surfaceAppeared();
  /// Lets the user pick a folder, watches it, and refreshes.
  void addFolderFromPanel();
  /// Watches the folders at these paths too, and refreshes.
  void addFolders(const std::vector<std::string>& paths);
  /// Stops watching a folder, which can be undone for a while, and refreshes.
  void removeFolder(const UUID& id);
  /// Watches removedFolders() again, and refreshes.
  void restoreRemovedFolders();
  /// Lets the user name a file, and exports a proof packet to it.
  void exportProofPacket();
  /// Lets the user name a file of a kind, and has something else that is made of a proof packet written there.
  void exportEvidence(const std::string& title, const FileKind& kind, const EvidenceSaver& save);
  /// Shows an item in the file manager, if it exists.
  void revealInFinder(const std::string& path);
  /// Resolves an active incident, or reopens a resolved one.
  void toggleResolved(const IncidentRecord& record) { cycle_.toggleResolved(record); }

  const FileSystem& fileSystem() const { return environment_.fileSystem; }
  /// By the clock behind all of it.
  Time now() const { return clock_.now(); }

  // Derived values, made anew at each reading

  Snapshots recentHistory() const { return cirrovane::recentHistory(historyStore().snapshots()); }
  Snapshots fullHistory() const { return cirrovane::fullHistory(historyStore().snapshots()); }
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
  void configureRefreshTimer();
  void clearExportNote();

  RefreshCycle cycle_;
  DashboardEnvironment environment_;
  const Clock& clock_;
  bool hasStartedAutoRefresh_ = false;
  std::optional<std::string> exportedFile_;
  Published<std::optional<std::string>> exportNote_;
  Published<std::vector<WatchFolder>> removedFolders_;

  /// Gone with the dashboard, by which a panel that was open meanwhile can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
