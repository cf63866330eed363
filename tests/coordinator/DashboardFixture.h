#pragma once

#include "coordinator/CoverageReview.h"
#include "coordinator/DashboardViewModel.h"
#include "coordinator/DefaultsKeys.h"
#include "platform/linux/host/ICUCollation.h"
#include "tests/coordinator/Builders.h"
#include "tests/diagnostics/MachineFixture.h"
#include "tests/support/FakeBundle.h"
#include "tests/support/FakeFileStorage.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/FakePanels.h"
#include "tests/support/FakeTimeText.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualMonotonicClock.h"
#include "tests/support/ManualTimer.h"
#include "tests/support/Publish.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// A dashboard over a healthy Mac whose one watched folder, iCloud Drive, holds one file.
class DashboardMachine : public MachineTest {
 protected:
  explicit DashboardMachine(const RefreshExecutors& executors) : executors_(executors) {
    makeSafe();
    clock_.set(at(18, 25));
    defaults_.hold(std::string(kGuardrailNotificationsEnabledKey), true);
  }

  void makeSafe() { setUploaded(true); }
  void makeUnsafe() { setUploaded(false); }

  /// A dashboard as the application would have it after a launch, in place of the one before.
  void launch() { launch(commands_); }
  void launch(const CommandRunner& commands) {
    dashboard_.reset();
    Services services;
    services.watchlist = std::make_unique<WatchlistStore>(files_, storage_, collation_);
    services.historyStore = std::make_unique<ScanHistoryStore>(files_, storage_);
    services.engine = std::make_shared<const ICloudScanEngine>(files_, clock_);
    services.diagnosticsService = std::make_shared<const PlatformDiagnosticsService>(system_, files_, clock_);
    services.systemStatusService = std::make_shared<const SystemStatusService>(system_, files_, clock_);
    services.makeProbes = [this, &commands] { return std::make_unique<ProbeRunner>(commands, monotonicClock_); };
    services.uploads = uploads_;
    services.incidentStore = std::make_unique<IncidentStore>(files_, storage_, clock_);
    services.coverage = std::make_shared<const CoverageKeeper>(files_, storage_, clock_);
    services.notificationService = std::make_unique<GuardrailNotificationService>(center_, bundle_, defaults_);
    dashboard_ = std::make_unique<DashboardViewModel>(
        std::move(services),
        RefreshEnvironment{executors_, storage_, defaults_, clock_, monotonicClock_, &cycleLimit_, &staleAlarm_, live_,
                           &uploadsAlarm_},
        DashboardEnvironment{timer_, panels_, workspace_, files_, timeText_, exportNoteAlarm_, removalAlarm_});
    coverage_ = std::make_unique<CoverageReview>(
        std::make_shared<const CoverageKeeper>(files_, storage_, clock_),
        CoverageReviewEnvironment{
            {executors_.main, executors_.scan, monotonicClock_, &coverageAlarm_}, executors_.status, clock_});
  }

  /// Notes the name of everything that the dashboard and its stores publish, from now on.
  void observeEverything() {
    subscriptions_.clear();
    note(dashboard_->publishedReport(), "report");
    note(dashboard_->publishedVerdict(), "verdict");
    note(dashboard_->publishedLiveness(), "liveness");
    note(dashboard_->publishedIsScanning(), "isScanning");
    note(dashboard_->publishedExportNote(), "exportNote");
    note(dashboard_->publishedDiagnostics(), "diagnostics");
    note(dashboard_->publishedDiagnosticsUpdatedAt(), "diagnosticsUpdatedAt");
    note(dashboard_->publishedSystemStatus(), "systemStatus");
    note(dashboard_->publishedIncidents(), "incidents");
    note(dashboard_->watchlist().publishedFolders(), "watchlist.folders");
    note(dashboard_->historyStore().publishedSnapshots(), "historyStore.snapshots");
    note(dashboard_->incidentStore().publishedRecords(), "incidentStore.records");
  }

  /// Publishes a report as a scan that has just ended would.
  void publishReport(SyncHealthReport report) {
    ShownVerdict verdict;
    verdict.standing = VerdictStanding::confirmed;
    verdict.safeToClose = report.safeToClose;
    verdict.status = report.status;
    verdict.confirmedAt = clock_.now();
    setPublished(dashboard_->publishedReport(), Shared(std::move(report)));
    setPublished(dashboard_->publishedVerdict(), verdict);
  }
  /// Publishes what a look has found.
  void publishCoverage(CoverageReport report) {
    setPublished(coverage_->report(), std::optional(Shared(std::move(report))));
  }
  void publishLiveness(const Liveness& liveness) { setPublished(dashboard_->publishedLiveness(), liveness); }
  /// Publishes what the report is worth now.
  void publishStanding(VerdictStanding standing) {
    ShownVerdict verdict = dashboard_->verdict();
    verdict.standing = standing;
    setPublished(dashboard_->publishedVerdict(), verdict);
  }

  static std::string storePath(const std::string& name) {
    return "/Users/test/Library/Application Support/com.quillmere.Cirrovane/" + name;
  }
  /// Puts a store's file where the next launch finds it.
  template <class Value>
  void store(const std::string& name, const Value& value) {
    files_.addExisting(storePath(name));
    storage_.put(storePath(name), encodeJSON(value));
  }

  RefreshExecutors executors_;
  ManualTimer timer_;
  ManualTimer cycleLimit_;
  ManualAlarm staleAlarm_;
  ManualAlarm uploadsAlarm_;
  ManualAlarm exportNoteAlarm_;
  ManualAlarm removalAlarm_;
  ManualAlarm coverageAlarm_;
  /// What the next launch follows the files with; nullptr for nothing.
  LiveVerdict* live_ = nullptr;
  /// What the next launch remembers of uploads with; nullptr for nothing.
  std::shared_ptr<const UploadsStore> uploads_;
  FakePanels panels_;
  FakeWorkspace workspace_;
  FakeFileStorage storage_;
  FakeUserDefaults defaults_;
  FakeTimeText timeText_;
  FakeBundle bundle_;
  FakeNotificationCenter center_;
  ICUCollation collation_{"en_US"};
  std::vector<std::string> events_;
  std::vector<Subscription> subscriptions_;
  std::unique_ptr<DashboardViewModel> dashboard_;
  std::unique_ptr<CoverageReview> coverage_;

 private:
  void setUploaded(bool isUploaded) {
    FakeValues values;
    values.isUploaded = isUploaded;
    values.downloadingStatus = DownloadingStatus::current;
    values.contentModificationDate = at(18, 20);
    const std::string drive(kDrive);
    files_.addFolder(drive, {{drive + "/a.txt", values}});
  }

  template <class Value>
  void note(const Published<Value>& published, const std::string& name) {
    subscriptions_.push_back(published.observe([this, name](const Value&) { events_.push_back(name); }));
  }
};

}  // namespace cirrovane::test
