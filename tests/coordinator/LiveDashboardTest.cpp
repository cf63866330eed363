// Refreshes over a verdict that follows the files: what is shown is the newest, and what is recorded is a cycle's.

#include "coordinator/LiveVerdict.h"
#include "tests/coordinator/ManualDashboard.h"
#include "tests/support/FakeFolderWatch.h"
#include "tests/support/ManualAlarm.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class LiveDashboard : public Dashboard {
 protected:
  LiveDashboard() {
    verdict_ = std::make_unique<LiveVerdict>(
        ScanSource{files_, clock_},
        LiveEnvironment{
            {main_, scan_, updates_}, clock_, monotonicClock_, liveAlarm_, [this](FolderWatchListener& listener) {
              auto watch = std::make_unique<FakeFolderWatch>(listener);
              watch_ = watch.get();
              return watch;
            }});
    live_ = verdict_.get();
    launch();
  }
  // What shows the verdict goes before it.
  ~LiveDashboard() override { dashboard_.reset(); }

  bool runOne() { return updates_.runOne() || Dashboard::runOne(); }
  /// Runs all that is under way, notifications included.
  void runAll() {
    do {
      while (runOne()) {
      }
      center_.answerAll();
    } while (runOne());
  }
  void cycle() {
    dashboard_->refresh();
    runAll();
  }
  /// A refresh up to its report, without its probes.
  void runToReport() {
    while (scan_.runOne() || updates_.runOne() || main_.runOne()) {
    }
  }
  /// Time goes by, and what is due then is done.
  void pass(std::chrono::seconds time) {
    monotonicClock_.advance(time);
    clock_.advance(time);
    liveAlarm_.ring();
    runAll();
  }
  /// The file's state changes and the watch tells of it.
  void save() { change(/*isUploaded=*/false); }
  void upload() { change(/*isUploaded=*/true); }
  void change(bool isUploaded) {
    if (isUploaded) {
      makeSafe();
    } else {
      makeUnsafe();
    }
    watch_->tell(std::string(kDrive), "a.txt");
    while (main_.runOne() || updates_.runOne()) {
    }
  }

  bool isSafe() const { return dashboard_->report().safeToClose; }
  LivenessState state() const { return dashboard_->liveness().state; }
  VerdictStanding standing() const { return dashboard_->verdict().standing; }
  std::vector<bool> recorded() const {
    std::vector<bool> verdicts;
    for (const ScanSnapshot& snapshot : dashboard_->historyStore().snapshots()) {
      verdicts.push_back(snapshot.safeToClose);
    }
    return verdicts;
  }
  std::vector<std::string> told() const {
    std::vector<std::string> titles;
    for (const auto& notification : center_.posted()) {
      titles.push_back(notification.title);
    }
    return titles;
  }

  ManualExecutor updates_;
  ManualAlarm liveAlarm_;
  FakeFolderWatch* watch_ = nullptr;
  std::unique_ptr<LiveVerdict> verdict_;
};

TEST_F(LiveDashboard, fileThatIsSavedBetweenTwoCycles_isLeftToUploadSecondsLater) {
  uploads_ = std::make_shared<UploadsStore>(files_, storage_);
  launch();
  cycle();
  EXPECT_EQ(dashboard_->uploads().totals.pendingFiles, 0);
  save();
  EXPECT_EQ(uploadsAlarm_.after(), 5s);
  pass(5s);
  uploadsAlarm_.ring();
  runAll();
  EXPECT_EQ(dashboard_->uploads().totals.pendingFiles, 1);
  EXPECT_EQ(dashboard_->uploads().quietSince, clock_.now() - 5s);
}

TEST_F(LiveDashboard, beforeTheFirstScan_isNotLiveAndUnknown) {
  EXPECT_EQ(state(), LivenessState::notLive);
  EXPECT_EQ(standing(), VerdictStanding::unknown);
}

TEST_F(LiveDashboard, firstCycle_publishesInOrderAndIsLive) {
  observeEverything();
  dashboard_->refresh();
  EXPECT_THAT(events_, Not(testing::Contains("report")));
  runToReport();
  EXPECT_THAT(events_, ElementsAre("isScanning", "liveness", "report", "verdict", "liveness"));
  EXPECT_EQ(state(), LivenessState::live);
  EXPECT_TRUE(dashboard_->isScanning());
  events_.clear();
  runAll();
  EXPECT_THAT(events_, ElementsAre("historyStore.snapshots", "diagnostics", "diagnosticsUpdatedAt", "systemStatus",
                                   "incidentStore.records", "incidents", "isScanning"));
}

TEST_F(LiveDashboard, laterCycle_publishesItsReportOnce) {
  cycle();
  observeEverything();
  cycle();
  EXPECT_EQ(std::ranges::count(events_, "report"), 1);
  EXPECT_EQ(std::ranges::count(events_, "historyStore.snapshots"), 1);
  EXPECT_EQ(events_.front(), "isScanning");
  EXPECT_EQ(events_.back(), "isScanning");
}

TEST_F(LiveDashboard, refreshesDuringACycle_areDropped) {
  dashboard_->refresh();
  do {
    dashboard_->refresh();
    dashboard_->refresh(CycleCause::regular);
  } while (runOne() && dashboard_->isScanning());
  runAll();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_THAT(recorded(), ElementsAre(true));
}

TEST_F(LiveDashboard, saveBetweenCycles_isShownAndNotRecorded) {
  cycle();
  observeEverything();
  save();
  EXPECT_FALSE(isSafe());
  // At a glance, and then with all counts.
  EXPECT_THAT(events_, ElementsAre("report", "verdict", "report"));
  EXPECT_THAT(recorded(), ElementsAre(true));
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(LiveDashboard, saveBehindAHungProbe_isShownAtOnce) {
  cycle();
  dashboard_->refresh();
  runToReport();
  ASSERT_TRUE(dashboard_->isScanning());
  save();
  EXPECT_FALSE(isSafe());
}

TEST_F(LiveDashboard, saveDuringACyclesProbes_isNotReplacedByTheCyclesOlderReport) {
  cycle();
  dashboard_->refresh();
  runToReport();
  save();
  observeEverything();
  runAll();
  EXPECT_FALSE(isSafe());
  EXPECT_THAT(events_, Not(testing::Contains("report")));
  EXPECT_THAT(recorded(), ElementsAre(true, true));
}

TEST_F(LiveDashboard, saveDuringACyclesScan_isShownBeforeItsEndAndStaysShown) {
  cycle();
  std::vector<bool> shown;
  const Subscription subscription = dashboard_->publishedReport().afterChange(
      [&](const Shared<SyncHealthReport>& report) { shown.push_back(report->safeToClose); });
  dashboard_->refresh();
  watch_->tell(std::string(kDrive), "a.txt");
  // It looks at the file just before that changes.
  scan_.runAll();
  makeUnsafe();
  runAll();
  EXPECT_THAT(shown, Not(IsEmpty()));
  EXPECT_THAT(shown, testing::Each(false));
  EXPECT_THAT(recorded(), ElementsAre(false, true));
}

TEST_F(LiveDashboard, noThatHolds_startsOneCycleThatRecordsAndTellsIt) {
  cycle();
  pass(60s);
  save();
  pass(14s);
  EXPECT_THAT(recorded(), ElementsAre(true));
  EXPECT_THAT(told(), IsEmpty());
  pass(1s);
  EXPECT_THAT(recorded(), ElementsAre(false, true));
  EXPECT_THAT(told(), ElementsAre("Cirrovane needs attention"));
  pass(60s);
  EXPECT_THAT(recorded(), SizeIs(2));
}

TEST_F(LiveDashboard, noJustAfterACycle_waitsForAMinuteSinceThat) {
  cycle();
  save();
  pass(59s);
  EXPECT_THAT(recorded(), ElementsAre(true));
  pass(1s);
  EXPECT_THAT(recorded(), ElementsAre(false, true));
}

TEST_F(LiveDashboard, noThatTurnsBackWithinFifteenSeconds_isNeitherRecordedNorTold) {
  cycle();
  pass(60s);
  save();
  EXPECT_FALSE(isSafe());
  pass(10s);
  upload();
  runAll();
  pass(5s);
  EXPECT_TRUE(isSafe());
  pass(60s);
  EXPECT_THAT(recorded(), ElementsAre(true));
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(LiveDashboard, turnDuringACycle_startsAnotherOnlyWhenThatHasEnded) {
  cycle();
  pass(60s);
  dashboard_->refresh();
  runToReport();
  save();
  monotonicClock_.advance(61s);
  clock_.advance(61s);
  liveAlarm_.ring();
  EXPECT_THAT(recorded(), ElementsAre(true));
  // Its probes come back.
  runAll();
  EXPECT_THAT(recorded(), ElementsAre(true, true));
  pass(15s);
  EXPECT_THAT(recorded(), ElementsAre(false, true, true));
}

TEST_F(LiveDashboard, folderAddedDuringACycle_isFollowedByOneMore) {
  dashboard_->refresh();
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  runAll();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_THAT(recorded(), SizeIs(2));
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 2);
  EXPECT_EQ(verdict_->folders(), dashboard_->watchlist().folders());
  EXPECT_THAT(watch_->starts.back(), SizeIs(2));
}

TEST_F(LiveDashboard, yesThatIsLive_doesNotGrowStale) {
  cycle();
  ASSERT_TRUE(staleAlarm_.after());
  monotonicClock_.advance(600s);
  clock_.advance(600s);
  staleAlarm_.ring();
  EXPECT_EQ(standing(), VerdictStanding::confirmed);
  EXPECT_EQ(dashboard_->verdict().confirmedAt, clock_.now());
}

TEST_F(LiveDashboard, yesWhoseWatchDied_growsStaleAfterItsLastScan) {
  cycle();
  watch_->reasonAgainst = "The system told of no more changes.";
  watch_->tellStanding(watch_->reasonAgainst);
  main_.runAll();
  EXPECT_EQ(state(), LivenessState::notLive);
  ASSERT_TRUE(staleAlarm_.after());
  const auto untilStale = *staleAlarm_.after();
  EXPECT_LT(untilStale, 181s);
  monotonicClock_.advance(untilStale);
  staleAlarm_.ring();
  EXPECT_EQ(standing(), VerdictStanding::expired);
  EXPECT_EQ(dashboard_->verdict().sign(), HealthState::warning);
}

TEST_F(LiveDashboard, wake_isNotGreenBeforeAFullScanIsThrough) {
  cycle();
  monotonicClock_.sleep(600s);
  liveAlarm_.ring();
  staleAlarm_.ring();
  EXPECT_EQ(standing(), VerdictStanding::slept);
  EXPECT_EQ(dashboard_->verdict().sign(), HealthState::warning);
  EXPECT_EQ(state(), LivenessState::catchingUp);
  runAll();
  EXPECT_EQ(standing(), VerdictStanding::confirmed);
  EXPECT_EQ(dashboard_->verdict().sign(), HealthState::safe);
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveDashboard, destroyedBeforeATurnHasHeld_isAskedForNoCycle) {
  cycle();
  pass(60s);
  save();
  dashboard_.reset();
  const std::size_t ran = commands_.ran().size();
  pass(15s);
  EXPECT_EQ(commands_.ran().size(), ran);
}

TEST_F(LiveDashboard, destroyedAfterAnyNumberOfTasks_publishesNothingMore) {
  for (int tasks = 0; tasks < 12; ++tasks) {
    launch();
    observeEverything();
    dashboard_->refresh();
    for (int task = 0; task < tasks && runOne(); ++task) {
    }
    subscriptions_.clear();
    dashboard_.reset();
    runAll();
    save();
    runAll();
    upload();
    runAll();
  }
  EXPECT_EQ(staleAlarm_.after(), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
