#include "coordinator/DashboardViewModel.h"
#include "tests/coordinator/ManualDashboard.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// The state before the first refresh

TEST_F(Dashboard, new_hasTheInitialValues) {
  EXPECT_EQ(dashboard_->report(), SyncHealthReport::empty());
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_EQ(dashboard_->exportNote(), std::nullopt);
  EXPECT_THAT(dashboard_->diagnostics(), IsEmpty());
  EXPECT_EQ(dashboard_->diagnosticsUpdatedAt(), std::nullopt);
  EXPECT_EQ(dashboard_->systemStatus(), SystemStatusSnapshot::empty());
  EXPECT_THAT(dashboard_->incidents(), IsEmpty());
}

TEST_F(Dashboard, new_hasNoIncidentsUntilARefreshThoughTheStoreHas) {
  store("incidents.json", std::vector{makeIncident(false, 2)});
  launch();
  EXPECT_THAT(dashboard_->incidentStore().records(), SizeIs(1));
  EXPECT_THAT(dashboard_->incidents(), IsEmpty());
  EXPECT_EQ(dashboard_->activeIncidentCount(), 0);
}

TEST_F(Dashboard, new_postsNoTaskAndStartsNoTimer) {
  EXPECT_FALSE(runOne());
  EXPECT_THAT(timer_.starts(), IsEmpty());
}

// The refresh cycle

TEST_F(Dashboard, refresh_returnsAtOnceAndIsScanning) {
  dashboard_->refresh();
  EXPECT_TRUE(dashboard_->isScanning());
  EXPECT_EQ(scans(), 0U);
  EXPECT_EQ(scan_.size(), 1U);
}

TEST_F(Dashboard, refreshTwiceInARow_startsOneCycle) {
  dashboard_->refresh();
  dashboard_->refresh();
  EXPECT_EQ(scan_.size(), 1U);
  runAll();
  EXPECT_EQ(scans(), 1U);
  EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(1));
}

TEST_F(Dashboard, refreshDuringAnyStage_isDroppedAndNotQueued) {
  dashboard_->refresh();
  for (ManualExecutor* executor : {&scan_, &main_, &diagnostics_, &main_, &status_}) {
    executor->runOne();
    dashboard_->refresh();
  }
  runAll();
  EXPECT_EQ(scans(), 1U);
  EXPECT_FALSE(dashboard_->isScanning());
}

TEST_F(Dashboard, refreshFromAnObserverOfTheResults_isDropped) {
  const Subscription subscription =
      dashboard_->publishedReport().observe([&](const Shared<SyncHealthReport>&) { dashboard_->refresh(); });
  cycle();
  EXPECT_EQ(scans(), 1U);
}

TEST_F(Dashboard, refreshAfterACycle_startsAnother) {
  cycle();
  cycle();
  EXPECT_EQ(scans(), 2U);
  EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(2));
}

TEST_F(Dashboard, stages_runInOrderEachOnItsExecutorOnceTheOneBeforeIsOver) {
  dashboard_->refresh();
  EXPECT_FALSE(main_.runOne());
  scan_.runOne();
  EXPECT_EQ(scans(), 1U);
  EXPECT_FALSE(diagnostics_.runOne());
  EXPECT_EQ(dashboard_->report(), SyncHealthReport::empty());
  EXPECT_TRUE(main_.runOne());
  EXPECT_NE(dashboard_->report(), SyncHealthReport::empty());
  EXPECT_THAT(commands_.ran(), IsEmpty());
  EXPECT_FALSE(status_.runOne());
  diagnostics_.runOne();
  const std::size_t ranForDiagnostics = commands_.ran().size();
  EXPECT_GT(ranForDiagnostics, 0U);
  EXPECT_TRUE(main_.runOne());
  EXPECT_THAT(dashboard_->diagnostics(), IsEmpty());
  status_.runOne();
  EXPECT_GT(commands_.ran().size(), ranForDiagnostics);
  EXPECT_TRUE(main_.runOne());
  EXPECT_THAT(dashboard_->diagnostics(), Not(IsEmpty()));
}

TEST_F(Dashboard, results_areThoseOfTheServices) {
  makeUnsafe();
  dashboard_->refresh();
  runScan();
  clock_.advance(std::chrono::seconds(1));
  diagnostics_.runOne();
  main_.runOne();
  clock_.advance(std::chrono::seconds(1));
  status_.runOne();
  clock_.advance(std::chrono::seconds(1));
  main_.runOne();
  EXPECT_EQ(dashboard_->report().generatedAt, at(18, 25));
  EXPECT_THAT(dashboard_->report().blockers, SizeIs(1));
  EXPECT_EQ(rowsOf(dashboard_->diagnostics()),
            rowsOf(service().collect(newProbes(), dashboard_->report(), dashboard_->watchlist().folders()).findings));
  EXPECT_THAT(dashboard_->diagnostics(), Not(IsEmpty()));
  EXPECT_EQ(dashboard_->systemStatus().capturedAt, at(18, 25) + std::chrono::seconds(2));
  EXPECT_EQ(dashboard_->systemStatus().cpuTemperatureC, 61.8);
  EXPECT_EQ(dashboard_->diagnosticsUpdatedAt(), at(18, 25) + std::chrono::seconds(3));
  EXPECT_EQ(dashboard_->historyStore().snapshots().front().timestamp, at(18, 25));
  EXPECT_EQ(dashboard_->incidents(), dashboard_->incidentStore().records());
}

TEST_F(Dashboard, findingsThatAreNotReached_keepTheirLastValuesAndTheirIncidents) {
  const auto titled = [&](const std::string& title) {
    return *std::ranges::find(dashboard_->diagnostics(), title, &DiagnosticFinding::title);
  };
  commands_.forget(pgrep("cloudd"));
  cycle();
  const DiagnosticFinding before = titled("cloudd daemon");
  ASSERT_EQ(before.severity, DiagnosticSeverity::warning);
  const std::vector<IncidentRecord> incidents = dashboard_->incidents();
  ASSERT_THAT(incidents, SizeIs(1));

  clock_.advance(std::chrono::seconds(90));
  commands_.hang(pgrep("bird"));
  cycle();
  EXPECT_EQ(titled("cloudd daemon"), before);
  EXPECT_EQ(titled("bird daemon").severity, DiagnosticSeverity::warning);
  ASSERT_THAT(dashboard_->incidents(), SizeIs(2));
  EXPECT_THAT(dashboard_->incidents(), testing::Contains(incidents[0]));
}

TEST_F(Dashboard, publication_isOfTheReportAtOnceAndThenInOrderAndOnceEach) {
  observeEverything();
  dashboard_->refresh();
  EXPECT_THAT(events_, ElementsAre("isScanning"));
  scan_.runAll();
  EXPECT_THAT(events_, ElementsAre("isScanning"));
  main_.runOne();
  EXPECT_THAT(events_, ElementsAre("isScanning", "report", "verdict"));
  diagnostics_.runAll();
  main_.runOne();
  status_.runAll();
  EXPECT_THAT(events_, ElementsAre("isScanning", "report", "verdict"));
  main_.runOne();
  EXPECT_THAT(events_,
              ElementsAre("isScanning", "report", "verdict", "historyStore.snapshots", "diagnostics",
                          "diagnosticsUpdatedAt", "systemStatus", "incidentStore.records", "incidents", "isScanning"));
  runAll();
  EXPECT_EQ(events_.size(), 10U);
}

TEST_F(Dashboard, observers_areToldBeforeEachChangeWhileTheOldValueStands) {
  commands_.forget(kRoute);
  cycle();
  const SyncHealthReport oldReport = dashboard_->report();
  const std::vector<DiagnosticFinding> oldFindings = dashboard_->diagnostics();
  const auto oldUpdate = dashboard_->diagnosticsUpdatedAt();
  const SystemStatusSnapshot oldStatus = dashboard_->systemStatus();
  const std::vector<IncidentRecord> oldIncidents = dashboard_->incidents();
  ASSERT_THAT(oldIncidents, Not(IsEmpty()));
  const std::vector<ScanSnapshot> oldSnapshots = dashboard_->historyStore().snapshots();
  int told = 0;

  const Subscription scanning = dashboard_->publishedIsScanning().observe([&](bool next) {
    EXPECT_NE(dashboard_->isScanning(), next);
    ++told;
  });
  const Subscription report = dashboard_->publishedReport().observe([&](const Shared<SyncHealthReport>& next) {
    EXPECT_EQ(dashboard_->report(), oldReport);
    EXPECT_NE(*next, oldReport);
    ++told;
  });
  const Subscription snapshots =
      dashboard_->historyStore().publishedSnapshots().observe([&](const std::vector<ScanSnapshot>& next) {
        EXPECT_NE(dashboard_->report(), oldReport);
        EXPECT_EQ(dashboard_->historyStore().snapshots(), oldSnapshots);
        EXPECT_EQ(next.size(), oldSnapshots.size() + 1);
        ++told;
      });
  const Subscription findings =
      dashboard_->publishedDiagnostics().observe([&](const std::vector<DiagnosticFinding>& next) {
        EXPECT_NE(dashboard_->historyStore().snapshots(), oldSnapshots);
        EXPECT_EQ(dashboard_->diagnostics(), oldFindings);
        EXPECT_NE(next, oldFindings);
        ++told;
      });
  const Subscription update = dashboard_->publishedDiagnosticsUpdatedAt().observe([&](const std::optional<Time>& next) {
    EXPECT_NE(dashboard_->diagnostics(), oldFindings);
    EXPECT_EQ(dashboard_->diagnosticsUpdatedAt(), oldUpdate);
    EXPECT_NE(next, oldUpdate);
    ++told;
  });
  const Subscription status = dashboard_->publishedSystemStatus().observe([&](const SystemStatusSnapshot& next) {
    EXPECT_NE(dashboard_->diagnosticsUpdatedAt(), oldUpdate);
    EXPECT_EQ(dashboard_->systemStatus(), oldStatus);
    EXPECT_NE(next, oldStatus);
    ++told;
  });
  const Subscription records =
      dashboard_->incidentStore().publishedRecords().observe([&](const std::vector<IncidentRecord>& next) {
        EXPECT_NE(dashboard_->systemStatus(), oldStatus);
        EXPECT_EQ(dashboard_->incidentStore().records(), oldIncidents);
        EXPECT_NE(next, oldIncidents);
        ++told;
      });
  const Subscription incidents = dashboard_->publishedIncidents().observe([&](const std::vector<IncidentRecord>& next) {
    EXPECT_EQ(dashboard_->incidentStore().records(), next);
    EXPECT_EQ(dashboard_->incidents(), oldIncidents);
    EXPECT_TRUE(dashboard_->isScanning());
    ++told;
  });
  clock_.advance(std::chrono::seconds(90));
  cycle();
  EXPECT_EQ(told, 9);
}

TEST_F(Dashboard, stores_areWrittenHistoryFirst) {
  cycle();
  EXPECT_THAT(storage_.written(), ElementsAre(storePath("watchlist.json"), storePath("history.json"),
                                              storePath("incidents.json"), storePath("coverage.json")));
}

TEST_F(Dashboard, folderRemovedAfterRefresh_isStillScannedAndDiagnosed) {
  dashboard_->refresh();
  dashboard_->watchlist().removeFolder(dashboard_->watchlist().folders().front().id);
  scan_.runOne();
  EXPECT_THAT(files_.enumerated(), ElementsAre(std::string(kDrive)));
  diagnostics_.runOne();
  runAll();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 1);
}

TEST_F(Dashboard, folderAddedAfterRefresh_waitsForTheNext) {
  dashboard_->refresh();
  files_.addFolder("/Users/test/Work", {});
  dashboard_->watchlist().addFolder("/Users/test/Work");
  runAll();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 1);
  cycle();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 2);
}

TEST_F(Dashboard, incidents_areDatedByTheReportAndNotByTheirPublication) {
  commands_.forget(kRoute);
  dashboard_->refresh();
  scan_.runOne();
  clock_.advance(std::chrono::minutes(5));
  runAll();
  ASSERT_THAT(dashboard_->incidents(), Not(IsEmpty()));
  EXPECT_EQ(dashboard_->incidents().front().firstSeen, at(18, 25));
  EXPECT_EQ(dashboard_->incidents().front().lastSeen, dashboard_->report().generatedAt);
  EXPECT_EQ(dashboard_->diagnosticsUpdatedAt(), at(18, 30));
}

TEST_F(Dashboard, emptyWatchlist_skipsNoStage) {
  dashboard_->watchlist().removeFolder(dashboard_->watchlist().folders().front().id);
  observeEverything();
  cycle();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 0);
  EXPECT_THAT(dashboard_->diagnostics(), Not(IsEmpty()));
  EXPECT_EQ(dashboard_->systemStatus().cpuTemperatureC, 61.8);
  EXPECT_EQ(events_.size(), 10U);
  EXPECT_THAT(center_.calls(), Not(IsEmpty()));
}

TEST_F(Dashboard, replacedReport_isReleasedOnTheScanExecutor) {
  makeUnsafe();
  cycle();
  const SyncHealthReport* old = &dashboard_->report();
  dashboard_->refresh();
  scan_.runAll();
  EXPECT_EQ(scan_.size(), 0U);
  main_.runOne();
  ASSERT_NE(&dashboard_->report(), old);
  EXPECT_EQ(scan_.size(), 1U);
  EXPECT_THAT(old->blockers, SizeIs(1));
  scan_.runAll();
}

TEST_F(Dashboard, mostFailures_stillEndTheCycle) {
  commands_ = FakeCommandRunner();
  system_.facts = {};
  storage_.failure = Failure{"disk full"};
  files_.addFolder(std::string(kDrive), {{std::string(kDrive) + "/unreadable", std::nullopt}});
  cycle();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_EQ(dashboard_->report().metrics.errors, 1);
}

// The notification

TEST_F(Dashboard, notification_isAFurtherTaskThatTheCycleDoesNotWaitFor) {
  setLastKnown(false);
  dashboard_->refresh();
  runToPublication();
  main_.runOne();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_THAT(center_.calls(), IsEmpty());
  EXPECT_EQ(main_.size(), 1U);
  main_.runOne();
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization"));
  dashboard_->refresh();
  EXPECT_TRUE(dashboard_->isScanning());
  runAll();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_THAT(center_.posted(), IsEmpty());
}

TEST_F(Dashboard, refreshBeforeTheNotificationsTurn_startsACycle) {
  dashboard_->refresh();
  runToPublication();
  main_.runOne();
  dashboard_->refresh();
  EXPECT_TRUE(dashboard_->isScanning());
  runAll();
  EXPECT_EQ(scans(), 2U);
}

TEST_F(Dashboard, changedVerdict_isNotifiedOnce) {
  setLastKnown(true);
  makeUnsafe();
  cycle();
  cycle();
  ASSERT_THAT(center_.posted(), SizeIs(1));
  EXPECT_EQ(center_.posted().front().body, "Safe to close is now red/yellow. Top issue: Not Uploaded.");
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(Dashboard, previousVerdict_isReadWhenTheRefreshStarts) {
  setLastKnown(true);
  makeUnsafe();
  dashboard_->refresh();
  setLastKnown(false);
  runAll();
  center_.answerAll();
  EXPECT_THAT(center_.posted(), SizeIs(1));
}

TEST_F(Dashboard, previousVerdictNeverWritten_isUnknown) {
  makeUnsafe();
  cycle();
  EXPECT_THAT(center_.posted(), IsEmpty());
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(Dashboard, previousVerdictThatIsNoTruthValue_isUnknown) {
  for (const DefaultsValue& value : {DefaultsValue("true"), DefaultsValue(1.0), DefaultsValue(OtherDefaultsValue())}) {
    setLastKnown(value);
    makeUnsafe();
    cycle();
    EXPECT_THAT(center_.posted(), IsEmpty());
    EXPECT_EQ(lastKnown(), false);
  }
}

// The timer

TEST_F(Dashboard, bothSurfacesAppearing_armTheTimerOnceAndAskForTwoRefreshes) {
  dashboard_->surfaceAppeared();
  EXPECT_TRUE(dashboard_->isScanning());
  runAll();
  dashboard_->surfaceAppeared();
  EXPECT_TRUE(dashboard_->isScanning());
  runAll();
  EXPECT_EQ(scans(), 2U);
  EXPECT_THAT(timer_.starts(), SizeIs(1));
}

TEST_F(Dashboard, secondSurfaceDuringTheFirstsRefresh_startsNone) {
  dashboard_->surfaceAppeared();
  dashboard_->surfaceAppeared();
  runAll();
  EXPECT_EQ(scans(), 1U);
  EXPECT_THAT(timer_.starts(), SizeIs(1));
}

TEST_F(Dashboard, surfaceDuringARefresh_stillArmsTheTimer) {
  dashboard_->refresh();
  dashboard_->surfaceAppeared();
  EXPECT_TRUE(timer_.isRunning());
}

TEST_F(Dashboard, timer_ticksEveryNinetySeconds) {
  dashboard_->surfaceAppeared();
  EXPECT_THAT(timer_.starts(), ElementsAre(std::chrono::milliseconds(90'000)));
}

TEST_F(Dashboard, tick_refreshes) {
  dashboard_->surfaceAppeared();
  runAll();
  timer_.tick();
  runAll();
  EXPECT_EQ(scans(), 2U);
}

TEST_F(Dashboard, tickDuringACycle_isDropped) {
  dashboard_->surfaceAppeared();
  timer_.tick();
  scan_.runOne();
  timer_.tick();
  runAll();
  EXPECT_EQ(scans(), 1U);
}

TEST_F(Dashboard, refreshAlone_armsNoTimer) {
  cycle();
  EXPECT_FALSE(timer_.isRunning());
}

TEST_F(Dashboard, destroyed_stopsItsTimerAndATickOnItsWayFindsNobody) {
  dashboard_->surfaceAppeared();
  runAll();
  const std::function<void()> tick = timer_.whatTicks();
  dashboard_.reset();
  EXPECT_FALSE(timer_.isRunning());
  tick();
  EXPECT_FALSE(runOne());
}

TEST_F(Dashboard, destroyedWithoutATimer_leavesTheTimerAlone) {
  dashboard_.reset();
  EXPECT_EQ(timer_.stops(), 0);
}

// Its end in the middle of a refresh

TEST_F(Dashboard, destroyedAfterAnyNumberOfTasks_publishesNothingMore) {
  commands_.forget(kRoute);
  setLastKnown(false);
  constexpr int kTasks = 6;
  for (int count = 0; count <= kTasks; ++count) {
    const testing::ScopedTrace trace("", 0, "tasks run: " + std::to_string(count));
    launch();
    observeEverything();
    dashboard_->refresh();
    for (int task = 0; task < count; ++task) {
      ASSERT_TRUE(runOne());
    }
    dashboard_.reset();
    const std::vector<std::string> events = events_;
    const std::vector<std::string> written = storage_.written();
    const std::size_t calls = center_.calls().size();
    runAll();
    EXPECT_EQ(events_, events);
    EXPECT_EQ(storage_.written(), written);
    EXPECT_EQ(center_.calls().size(), calls);
  }
}

TEST_F(Dashboard, destroyedAfterAnyNumberOfTasks_runsNoFurtherStage) {
  dashboard_->refresh();
  dashboard_.reset();
  runAll();
  EXPECT_EQ(scans(), 0U);
  launch();
  dashboard_->refresh();
  scan_.runOne();
  dashboard_.reset();
  runAll();
  EXPECT_EQ(scans(), 1U);
  EXPECT_THAT(commands_.ran(), IsEmpty());
}

TEST_F(Dashboard, executorsThatDropTheirTasksAtTheEnd_releaseEverything) {
  for (ManualExecutor* last : {&scan_, &diagnostics_, &status_, &main_}) {
    launch();
    dashboard_->refresh();
    while (last->size() == 0) {
      ASSERT_TRUE(runOne());
    }
    last->dropAll();
    dashboard_.reset();
    runAll();
  }
}

TEST_F(Dashboard, destroyedBeforeTheCentreAnswers_stillFinishesTheNotification) {
  setLastKnown(true);
  makeUnsafe();
  dashboard_->refresh();
  runAll();
  dashboard_.reset();
  center_.answerAll();
  EXPECT_THAT(center_.posted(), SizeIs(1));
  EXPECT_EQ(lastKnown(), false);
}

// Adding a folder

TEST_F(Dashboard, addFolderFromPanel_saysWhatItIsFor) {
  dashboard_->addFolderFromPanel();
  ASSERT_THAT(panels_.folderPanels(), SizeIs(1));
  EXPECT_EQ(panels_.folderPanels().front().title, "Add Critical Folder");
  EXPECT_EQ(panels_.folderPanels().front().prompt, "Add to Watchlist");
}

TEST_F(Dashboard, addFolderFromPanel_confirmed_addsAndThenRefreshes) {
  files_.addFolder("/Users/test/Work", {});
  panels_.answer = "/Users/test/Work";
  observeEverything();
  dashboard_->addFolderFromPanel();
  EXPECT_THAT(events_, ElementsAre("watchlist.folders", "isScanning"));
  runAll();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 2);
  EXPECT_TRUE(std::ranges::any_of(dashboard_->watchlist().folders(),
                                  [](const WatchFolder& folder) { return folder.path == "/Users/test/Work"; }));
}

TEST_F(Dashboard, addFolderFromPanel_cancelled_changesNothingAndDoesNotRefresh) {
  observeEverything();
  dashboard_->addFolderFromPanel();
  EXPECT_THAT(events_, IsEmpty());
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_FALSE(runOne());
}

TEST_F(Dashboard, addFolderFromPanel_duringACycle_addsAndDropsTheRefresh) {
  panels_.answer = "/Users/test/Work";
  dashboard_->refresh();
  dashboard_->addFolderFromPanel();
  EXPECT_THAT(dashboard_->watchlist().folders(), SizeIs(2));
  runAll();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 1);
}

TEST_F(Dashboard, addFolderFromPanel_ofAFolderWatchedAlready_refreshes) {
  panels_.answer = std::string(kDrive);
  dashboard_->addFolderFromPanel();
  EXPECT_THAT(dashboard_->watchlist().folders(), SizeIs(1));
  EXPECT_TRUE(dashboard_->isScanning());
}

TEST_F(Dashboard, destroyedWhileTheFolderPanelIsOpen_doesNothingWithTheAnswer) {
  panels_.answer = "/Users/test/Work";
  panels_.whileOpen = [&] { dashboard_.reset(); };
  const std::vector<std::string> written = storage_.written();
  dashboard_->addFolderFromPanel();
  EXPECT_EQ(storage_.written(), written);
  EXPECT_FALSE(runOne());
}

// Removing a folder

TEST_F(Dashboard, removeFolder_canBeUndoneForTenSeconds) {
  const WatchFolder folder = dashboard_->watchlist().folders().front();
  dashboard_->removeFolder(UUID(folder.id));
  EXPECT_THAT(dashboard_->watchlist().folders(), IsEmpty());
  EXPECT_THAT(dashboard_->removedFolders(), ElementsAre(folder));
  EXPECT_TRUE(dashboard_->isScanning());
  EXPECT_EQ(removalAlarm_.after(), std::chrono::seconds(10));
  dashboard_->restoreRemovedFolders();
  EXPECT_THAT(dashboard_->watchlist().folders(), ElementsAre(folder));
  EXPECT_THAT(dashboard_->removedFolders(), IsEmpty());
  EXPECT_EQ(removalAlarm_.after(), std::nullopt);
  runAll();
  center_.answerAll();
  runAll();
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 1);
}

TEST_F(Dashboard, removeFolder_tenSecondsLater_isDone) {
  dashboard_->removeFolder(UUID(dashboard_->watchlist().folders().front().id));
  removalAlarm_.ring();
  EXPECT_THAT(dashboard_->removedFolders(), IsEmpty());
  dashboard_->restoreRemovedFolders();
  EXPECT_THAT(dashboard_->watchlist().folders(), IsEmpty());
}

TEST_F(Dashboard, removeFolder_twoInARow_areBothUndone) {
  dashboard_->addFolders({"/Users/test/Work"});
  const std::vector<WatchFolder> folders = dashboard_->watchlist().folders();
  dashboard_->removeFolder(UUID(folders[0].id));
  dashboard_->removeFolder(UUID(folders[1].id));
  dashboard_->restoreRemovedFolders();
  EXPECT_EQ(dashboard_->watchlist().folders(), folders);
}

TEST_F(Dashboard, restoredFolder_thatWasAddedAgain_isWatchedOnce) {
  dashboard_->removeFolder(UUID(dashboard_->watchlist().folders().front().id));
  dashboard_->addFolders({std::string(kDrive)});
  dashboard_->restoreRemovedFolders();
  EXPECT_THAT(dashboard_->watchlist().folders(), SizeIs(1));
}

TEST_F(Dashboard, removeFolder_ofNoFolder_changesNothing) {
  observeEverything();
  dashboard_->removeFolder(idOf(99));
  EXPECT_THAT(events_, IsEmpty());
  EXPECT_EQ(removalAlarm_.after(), std::nullopt);
}

TEST_F(Dashboard, destroyed_leavesNoAlarmSet) {
  panels_.answer = "/tmp/proof.json";
  dashboard_->exportProofPacket();
  dashboard_->removeFolder(UUID(dashboard_->watchlist().folders().front().id));
  dashboard_.reset();
  EXPECT_EQ(removalAlarm_.after(), std::nullopt);
  EXPECT_EQ(exportNoteAlarm_.after(), std::nullopt);
}

// Revealing an item

TEST_F(Dashboard, revealInFinder_ofAnExistingItem_showsIt) {
  dashboard_->revealInFinder(std::string(kDrive));
  EXPECT_THAT(workspace_.revealed(), ElementsAre(std::string(kDrive)));
}

TEST_F(Dashboard, revealInFinder_ofAMissingItem_doesNothing) {
  dashboard_->revealInFinder("/Users/test/gone");
  EXPECT_THAT(workspace_.revealed(), IsEmpty());
}

// Derived values

TEST_F(Dashboard, historyViews_areCutAtEightAndTwoHundred) {
  const auto sizesWith = [&](std::size_t count) {
    store("history.json", makeSnapshots(count));
    launch();
    EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(count));
    EXPECT_TRUE(std::ranges::equal(dashboard_->recentHistory(),
                                   dashboard_->fullHistory().first(dashboard_->recentHistory().size())));
    EXPECT_TRUE(
        std::ranges::equal(dashboard_->fullHistory(),
                           Snapshots(dashboard_->historyStore().snapshots()).first(dashboard_->fullHistory().size())));
    return std::vector{dashboard_->recentHistory().size(), dashboard_->fullHistory().size()};
  };
  EXPECT_THAT(sizesWith(0), ElementsAre(0, 0));
  EXPECT_THAT(sizesWith(8), ElementsAre(8, 8));
  EXPECT_THAT(sizesWith(9), ElementsAre(8, 9));
  EXPECT_THAT(sizesWith(200), ElementsAre(8, 200));
  EXPECT_THAT(sizesWith(201), ElementsAre(8, 200));
}

TEST_F(Dashboard, historySummaries_lookAtTheTwoHundredNewest) {
  std::vector<ScanSnapshot> snapshots = makeSnapshots(200);
  snapshots.push_back(makeSnapshot(false));
  store("history.json", snapshots);
  launch();
  EXPECT_EQ(dashboard_->lastFailedSnapshot(), std::nullopt);
  EXPECT_EQ(dashboard_->lastSafeSnapshot(), snapshots.front());
  EXPECT_EQ(dashboard_->recentStabilityText(), "100% safe in last 10 scans");
}

TEST_F(Dashboard, historySummaries_followTheScans) {
  EXPECT_EQ(dashboard_->recentStabilityText(), "Not enough scans yet.");
  makeUnsafe();
  cycle();
  EXPECT_EQ(dashboard_->recentStabilityText(), "0% safe in last 1 scans");
  EXPECT_EQ(dashboard_->lastFailedSnapshot(), dashboard_->historyStore().snapshots().front());
  EXPECT_EQ(dashboard_->lastSafeSnapshot(), std::nullopt);
  makeSafe();
  cycle();
  EXPECT_EQ(dashboard_->recentStabilityText(), "50% safe in last 2 scans");
}

TEST_F(Dashboard, criteria_areThoseOfTheCurrentReport) {
  const auto passing = [&] {
    return std::ranges::count(dashboard_->safetyCriteria(), true, &SafetyCriterion::isPassing);
  };
  EXPECT_EQ(passing(), 5);
  makeUnsafe();
  cycle();
  EXPECT_EQ(passing(), 3);
  EXPECT_EQ(dashboard_->safetyCriteria().front().detail, "1 uploads are still pending.");
}

TEST_F(Dashboard, coverageGaps_areThoseOfTheCurrentReport) {
  EXPECT_EQ(dashboard_->coverageGapCount(), 0);
  dashboard_->watchlist().addFolder("/Users/test/gone");
  cycle();
  EXPECT_EQ(dashboard_->coverageGapCount(), 1);
}

TEST_F(Dashboard, incidentCounts_areThoseOfThePublishedIncidents) {
  commands_.forget(kRoute);
  cycle();
  const std::int64_t active = dashboard_->activeIncidentCount();
  EXPECT_GT(active, 0);
  EXPECT_EQ(dashboard_->recurringIncidentCount(), 0);
  cycle();
  EXPECT_EQ(dashboard_->activeIncidentCount(), active);
  EXPECT_EQ(dashboard_->recurringIncidentCount(), active);
  EXPECT_EQ(dashboard_->resolvedIncidentCount(), 0);
  commands_.answer(kRoute, "   route to: default\n    gateway: 192.168.1.1\n  interface: en0\n");
  cycle();
  EXPECT_EQ(dashboard_->activeIncidentCount(), 0);
  EXPECT_EQ(dashboard_->recurringIncidentCount(), 0);
  EXPECT_EQ(dashboard_->resolvedIncidentCount(), active);
}

TEST_F(Dashboard, diagnosticsOfADomain_areItsFindingsInPublishedOrder) {
  EXPECT_THAT(dashboard_->diagnostics(DiagnosticDomain::network), IsEmpty());
  cycle();
  std::vector<DiagnosticFinding> joined;
  // The order of presentation is the domains' alphabetical one.
  for (const DiagnosticDomain domain :
       {DiagnosticDomain::finder, DiagnosticDomain::network, DiagnosticDomain::performance, DiagnosticDomain::power,
        DiagnosticDomain::storage, DiagnosticDomain::system, DiagnosticDomain::iCloud}) {
    const std::vector<DiagnosticFinding> found = dashboard_->diagnostics(domain);
    EXPECT_THAT(found, Not(IsEmpty()));
    EXPECT_THAT(found, Each(testing::Field(&DiagnosticFinding::domain, domain)));
    joined.insert(joined.end(), found.begin(), found.end());
  }
  EXPECT_EQ(joined, dashboard_->diagnostics());
}

// The export

TEST_F(Dashboard, exportPanel_hasItsTitleAndProposesANameWithTheTime) {
  dashboard_->exportProofPacket();
  ASSERT_THAT(panels_.savePanels(), SizeIs(1));
  EXPECT_EQ(panels_.savePanels().front().title, "Export Proof Packet");
  EXPECT_EQ(panels_.savePanels().front().proposedName, "cirrovane-proof-2026-11-15-1825.json");
}

TEST_F(Dashboard, export_writesAllThatIsKnownAndNamesTheFile) {
  commands_.forget(kRoute);
  makeUnsafe();
  cycle();
  clock_.advance(std::chrono::minutes(1));
  panels_.answer = "/Users/test/Desktop/proof.json";
  dashboard_->exportProofPacket();
  EXPECT_EQ(dashboard_->exportNote(), "Proof packet exported to proof.json.");
  const ProofPacket packet = packetAt("/Users/test/Desktop/proof.json");
  EXPECT_EQ(packet.exportedAt, at(18, 26));
  EXPECT_EQ(*packet.report, dashboard_->report());
  EXPECT_EQ(packet.history, dashboard_->historyStore().snapshots());
  EXPECT_EQ(packet.diagnostics, dashboard_->diagnostics());
  EXPECT_EQ(packet.incidents, dashboard_->incidents());
  EXPECT_THAT(packet.incidents, Not(IsEmpty()));
  EXPECT_EQ(packet.systemStatus, dashboard_->systemStatus());
}

TEST_F(Dashboard, exportBeforeAnyRefresh_hasEmptyLists) {
  panels_.answer = "/tmp/proof.json";
  dashboard_->exportProofPacket();
  const std::string text = storage_.files().at("/tmp/proof.json");
  EXPECT_THAT(text, testing::HasSubstr("\"diagnostics\": []"));
  EXPECT_THAT(text, testing::HasSubstr("\"history\": []"));
  EXPECT_THAT(text, testing::HasSubstr("\"incidents\": []"));
}

TEST_F(Dashboard, exportedIncidents_areThePublishedOnesResolvedIncluded) {
  commands_.forget(kRoute);
  cycle();
  commands_.answer(kRoute, "   route to: default\n    gateway: 192.168.1.1\n  interface: en0\n");
  cycle();
  ASSERT_GT(dashboard_->resolvedIncidentCount(), 0);
  setPublished(dashboard_->publishedIncidents(), {});
  EXPECT_EQ(dashboard_->cycle().proofPacket().incidents, dashboard_->incidents());
  EXPECT_NE(dashboard_->cycle().proofPacket().incidents, dashboard_->incidentStore().records());
}

TEST_F(Dashboard, exportedHistoryOfFifty_isWholeAndOfMoreTheFiftyNewest) {
  for (const std::size_t count : {49U, 50U, 51U, 200U}) {
    const std::vector<ScanSnapshot> snapshots = makeSnapshots(count);
    store("history.json", snapshots);
    launch();
    panels_.answer = "/tmp/proof.json";
    dashboard_->exportProofPacket();
    const std::size_t kept = std::min<std::size_t>(count, 50);
    EXPECT_THAT(packetAt("/tmp/proof.json").history,
                testing::ElementsAreArray(snapshots.begin(), snapshots.begin() + static_cast<std::ptrdiff_t>(kept)));
  }
}

TEST_F(Dashboard, exportCancelled_writesNothingAndKeepsTheNote) {
  dashboard_->exportProofPacket();
  EXPECT_EQ(dashboard_->exportNote(), std::nullopt);
  panels_.answer = "/tmp/proof.json";
  dashboard_->exportProofPacket();
  const std::vector<std::string> written = storage_.written();
  observeEverything();
  panels_.answer.reset();
  dashboard_->exportProofPacket();
  EXPECT_EQ(dashboard_->exportNote(), "Proof packet exported to proof.json.");
  EXPECT_EQ(storage_.written(), written);
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(Dashboard, exportNote_goesByItselfWithItsFile) {
  panels_.answer = "/tmp/proof.json";
  dashboard_->exportProofPacket();
  EXPECT_EQ(dashboard_->exportedFile(), "/tmp/proof.json");
  EXPECT_EQ(exportNoteAlarm_.after(), std::chrono::seconds(20));
  exportNoteAlarm_.ring();
  EXPECT_EQ(dashboard_->exportNote(), std::nullopt);
  EXPECT_EQ(dashboard_->exportedFile(), std::nullopt);
}

TEST_F(Dashboard, exportNote_ofAFailure_staysAndHasNoFile) {
  panels_.answer = "/tmp/proof.json";
  dashboard_->exportProofPacket();
  storage_.failure = Failure{"The folder cannot be written to."};
  dashboard_->exportProofPacket();
  EXPECT_EQ(dashboard_->exportedFile(), std::nullopt);
  EXPECT_EQ(exportNoteAlarm_.after(), std::nullopt);
}

TEST_F(Dashboard, exportToAFailingPlace_tellsWhy) {
  storage_.failure = Failure{"The folder cannot be written to."};
  panels_.answer = "/Volumes/ReadOnly/proof.json";
  dashboard_->exportProofPacket();
  EXPECT_EQ(dashboard_->exportNote(), "Export failed: The folder cannot be written to.");
  EXPECT_FALSE(isWritten("/Volumes/ReadOnly/proof.json"));
}

TEST_F(Dashboard, exportNote_isToldToObserversBeforeItChanges) {
  std::vector<std::optional<std::string>> seen;
  const Subscription subscription =
      dashboard_->publishedExportNote().observe([&](const std::optional<std::string>& next) {
        seen.push_back(dashboard_->exportNote());
        seen.push_back(next);
      });
  panels_.answer = "/tmp/a.json";
  dashboard_->exportProofPacket();
  storage_.failure = Failure{"no"};
  dashboard_->exportProofPacket();
  EXPECT_THAT(seen, ElementsAre(std::nullopt, "Proof packet exported to a.json.", "Proof packet exported to a.json.",
                                "Export failed: no"));
}

TEST_F(Dashboard, refreshThatEndsWhileThePanelIsOpen_isInThePacket) {
  makeUnsafe();
  panels_.answer = "/tmp/proof.json";
  panels_.whileOpen = [&] {
    cycle();
    clock_.advance(std::chrono::minutes(10));
  };
  dashboard_->exportProofPacket();
  EXPECT_EQ(panels_.savePanels().front().proposedName, "cirrovane-proof-2026-11-15-1825.json");
  const ProofPacket packet = packetAt("/tmp/proof.json");
  EXPECT_EQ(packet.exportedAt, at(18, 35));
  EXPECT_THAT(packet.report->blockers, SizeIs(1));
  EXPECT_THAT(packet.history, SizeIs(1));
}

TEST_F(Dashboard, destroyedWhileTheSavePanelIsOpen_doesNothingWithTheAnswer) {
  panels_.answer = "/tmp/proof.json";
  panels_.whileOpen = [&] { dashboard_.reset(); };
  dashboard_->exportProofPacket();
  EXPECT_FALSE(isWritten("/tmp/proof.json"));
}

TEST_F(Dashboard, packet_isNotChangedByALaterRefresh) {
  const ProofPacket packet = dashboard_->cycle().proofPacket();
  makeUnsafe();
  cycle();
  EXPECT_EQ(*packet.report, SyncHealthReport::empty());
  EXPECT_THAT(packet.diagnostics, IsEmpty());
}

TEST_F(Dashboard, exportOfEvidence_asksForItsKindAndTakesTheSaversNoteOrFailure) {
  const auto saving = [](const Result<std::string>& answer) {
    return [answer](const ProofPacket& packet, const std::string& path, const FileStorage&) {
      EXPECT_EQ(packet.exportedAt, at(18, 25));
      EXPECT_EQ(path, "/tmp/proof.html");
      return answer;
    };
  };
  panels_.answer = "/tmp/proof.html";
  dashboard_->exportEvidence("Export Page", webPages(), saving(std::string("A page.")));
  EXPECT_EQ(panels_.savePanels().front().kind, webPages());
  EXPECT_EQ(panels_.savePanels().front().proposedName, "cirrovane-proof-2026-11-15-1825.html");
  EXPECT_EQ(dashboard_->exportNote(), "A page.");
  EXPECT_EQ(dashboard_->exportedFile(), "/tmp/proof.html");
  dashboard_->exportEvidence("Export Page", webPages(), saving(Failure{"no"}));
  EXPECT_EQ(dashboard_->exportNote(), "Export failed: no");
  EXPECT_EQ(dashboard_->exportedFile(), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
