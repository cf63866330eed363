// What a refresh does beside its required order: its report is out before its probes end, it ends without them, and a
// YES that nobody confirmed again does not stay.

#include "tests/coordinator/ManualDashboard.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;

class RefreshCycleTest : public Dashboard {
 protected:
  VerdictStanding standing() const { return dashboard_->verdict().standing; }
  std::optional<HealthState> sign() const { return dashboard_->verdict().sign(); }

  /// The machine sleeps, wakes, and its waking is noticed.
  void sleepAndWake(std::chrono::seconds asleep) {
    monotonicClock_.sleep(asleep);
    staleAlarm_.ring();
  }
};

// Uploads

TEST_F(RefreshCycleTest, pendingFiles_areRememberedWithoutHoldingTheCycleUp) {
  makeUnsafe();
  uploads_ = std::make_shared<UploadsStore>(files_, storage_);
  launch();
  cycle();
  EXPECT_EQ(dashboard_->uploads().totals.pendingFiles, 1);
  EXPECT_EQ(dashboard_->uploads().quietSince, clock_.now());
  EXPECT_THAT(storage_.files(), Contains(Key(storePath("uploads.json"))));
}

// A report is not held up

TEST_F(RefreshCycleTest, probesStillRun_verdictIsTurnedAlready) {
  cycle();
  EXPECT_EQ(sign(), HealthState::safe);
  makeUnsafe();
  dashboard_->refresh();
  runScan();
  EXPECT_FALSE(dashboard_->report().safeToClose);
  EXPECT_EQ(sign(), HealthState::warning);
  EXPECT_TRUE(dashboard_->isScanning());
  EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(1));
}

TEST_F(RefreshCycleTest, diagnosticsNeverReturn_cycleEndsAtItsLimitAndIsRecorded) {
  commands_.forget(kRoute);
  cycle();
  const auto findings = dashboard_->diagnostics();
  const auto incidents = dashboard_->incidents();
  const auto updated = dashboard_->diagnosticsUpdatedAt();
  ASSERT_THAT(incidents, Not(IsEmpty()));
  makeUnsafe();
  clock_.advance(90s);
  dashboard_->refresh();
  EXPECT_FALSE(cycleLimit_.isRunning());
  runScan();
  EXPECT_EQ(cycleLimit_.starts().back(), 35s);
  cycleLimit_.tick();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_FALSE(cycleLimit_.isRunning());
  EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(2));
  EXPECT_FALSE(dashboard_->historyStore().snapshots().front().safeToClose);
  EXPECT_EQ(dashboard_->diagnostics(), findings);
  EXPECT_EQ(dashboard_->diagnosticsUpdatedAt(), updated);
  EXPECT_EQ(dashboard_->incidents(), incidents);
}

TEST_F(RefreshCycleTest, statusNeverReturns_findingsAreTakenOver) {
  dashboard_->refresh();
  runScan();
  diagnostics_.runAll();
  main_.runOne();
  cycleLimit_.tick();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_THAT(dashboard_->diagnostics(), Not(IsEmpty()));
  EXPECT_EQ(dashboard_->systemStatus(), SystemStatusSnapshot::empty());
}

TEST_F(RefreshCycleTest, turnedVerdictBehindAHungProbe_isNotified) {
  setLastKnown(true);
  makeUnsafe();
  dashboard_->refresh();
  runScan();
  EXPECT_THAT(center_.calls(), IsEmpty());
  cycleLimit_.tick();
  main_.runAll();
  center_.answerAll();
  ASSERT_THAT(center_.posted(), SizeIs(1));
  EXPECT_EQ(center_.posted().front().title, "Cirrovane needs attention");
}

TEST_F(RefreshCycleTest, stagesOfAnEndedCycle_comeToNothingWhenTheyReturn) {
  dashboard_->refresh();
  runScan();
  cycleLimit_.tick();
  observeEverything();
  runAll();
  EXPECT_THAT(events_, IsEmpty());
  EXPECT_THAT(commands_.ran(), IsEmpty());
}

TEST_F(RefreshCycleTest, refreshAfterAnEndedCycle_scansThoughDiagnosticsStillHang) {
  dashboard_->refresh();
  runScan();
  cycleLimit_.tick();
  main_.runAll();
  makeUnsafe();
  dashboard_->refresh();
  EXPECT_TRUE(dashboard_->isScanning());
  runScan();
  EXPECT_FALSE(dashboard_->report().safeToClose);
}

TEST_F(RefreshCycleTest, safeScan_leavesTheFileCountsOfItsFolders) {
  cycle();
  EXPECT_THAT(storage_.files().at(storePath("coverage.json")), testing::HasSubstr("\"files\": 1"));
}

TEST_F(RefreshCycleTest, scanThatIsNotSafe_leavesNoFileCounts) {
  makeUnsafe();
  cycle();
  EXPECT_FALSE(storage_.files().contains(storePath("coverage.json")));
}

TEST_F(RefreshCycleTest, fileCounts_areKeptBesideTheMainThreadWhichWaitsForNothing) {
  dashboard_->refresh();
  runToPublication();
  main_.runOne();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_FALSE(isWritten(storePath("coverage.json")));
  status_.runAll();
  EXPECT_TRUE(isWritten(storePath("coverage.json")));
}

TEST_F(RefreshCycleTest, fileCountsThatCannotBeKept_leaveTheReasonUntilTheyCan) {
  storage_.lockFailure = Failure{"somebody else changes it"};
  cycle();
  ASSERT_TRUE(dashboard_->cycle().fileCountFailure());
  EXPECT_EQ(dashboard_->cycle().fileCountFailure()->message, "somebody else changes it");
  storage_.lockFailure = std::nullopt;
  cycle();
  EXPECT_FALSE(dashboard_->cycle().fileCountFailure());
}

TEST_F(RefreshCycleTest, cycleThatEndsInTime_stopsItsLimit) {
  cycle();
  EXPECT_FALSE(cycleLimit_.isRunning());
}

TEST_F(RefreshCycleTest, destroyedBeforeTheLimit_leavesNoTick) {
  dashboard_->refresh();
  runScan();
  dashboard_.reset();
  EXPECT_FALSE(cycleLimit_.isRunning());
  EXPECT_EQ(staleAlarm_.after(), std::nullopt);
}

// A YES that nobody confirmed again

TEST_F(RefreshCycleTest, beforeTheFirstScan_verdictIsUnknown) {
  EXPECT_EQ(standing(), VerdictStanding::unknown);
  EXPECT_EQ(sign(), std::nullopt);
  dashboard_->refresh();
  scan_.runAll();
  EXPECT_EQ(standing(), VerdictStanding::unknown);
}

TEST_F(RefreshCycleTest, yes_growsStaleWhenItsTimeIsUp) {
  cycle();
  ASSERT_TRUE(staleAlarm_.after());
  EXPECT_GT(*staleAlarm_.after(), 180s);
  EXPECT_LT(*staleAlarm_.after(), 181s);
  monotonicClock_.advance(*staleAlarm_.after());
  EXPECT_EQ(sign(), HealthState::safe);
  staleAlarm_.ring();
  EXPECT_EQ(standing(), VerdictStanding::expired);
  EXPECT_EQ(sign(), HealthState::warning);
  EXPECT_TRUE(dashboard_->verdict().isStale());
}

TEST_F(RefreshCycleTest, confirmation_isTheBeginningOfTheScanAndNotItsEnd) {
  dashboard_->refresh();
  const Time begin = clock_.now();
  scan_.runAll();
  clock_.advance(50s);
  monotonicClock_.advance(50s);
  main_.runOne();
  EXPECT_EQ(dashboard_->verdict().confirmedAt, begin);
  ASSERT_TRUE(staleAlarm_.after());
  EXPECT_LT(*staleAlarm_.after(), 131s);
}

TEST_F(RefreshCycleTest, alarmThatRingsEarly_isSetAgainForTheRest) {
  cycle();
  monotonicClock_.advance(100s);
  staleAlarm_.ring();
  EXPECT_EQ(standing(), VerdictStanding::confirmed);
  ASSERT_TRUE(staleAlarm_.after());
  EXPECT_LT(*staleAlarm_.after(), 81s);
}

TEST_F(RefreshCycleTest, wake_isNotGreenBeforeAScanIsThroughAndAsksForOne) {
  cycle();
  sleepAndWake(10s);
  EXPECT_EQ(standing(), VerdictStanding::slept);
  EXPECT_EQ(sign(), HealthState::warning);
  EXPECT_TRUE(dashboard_->isScanning());
  scan_.runAll();
  EXPECT_EQ(sign(), HealthState::warning);
  main_.runOne();
  EXPECT_EQ(standing(), VerdictStanding::confirmed);
  EXPECT_EQ(sign(), HealthState::safe);
}

TEST_F(RefreshCycleTest, sleepDuringAScan_itsYesIsStaleAndAnotherScanFollows) {
  dashboard_->refresh();
  scan_.runAll();
  monotonicClock_.sleep(3600s);
  main_.runOne();
  EXPECT_EQ(standing(), VerdictStanding::slept);
  EXPECT_EQ(sign(), HealthState::warning);
  runAll();
  center_.answerAll();
  runAll();
  EXPECT_EQ(scans(), 2U);
  EXPECT_EQ(standing(), VerdictStanding::confirmed);
}

TEST_F(RefreshCycleTest, expiredYes_isGreenAgainAfterAScan) {
  cycle();
  monotonicClock_.advance(200s);
  staleAlarm_.ring();
  cycle();
  EXPECT_EQ(sign(), HealthState::safe);
}

TEST_F(RefreshCycleTest, itemThatCannotBeRead_isANoWithAWarningSign) {
  files_.addFolder(std::string(kDrive), {{std::string(kDrive) + "/unreadable", std::nullopt}});
  cycle();
  EXPECT_EQ(dashboard_->report().status, HealthState::safe);
  EXPECT_FALSE(dashboard_->report().safeToClose);
  EXPECT_EQ(sign(), HealthState::warning);
}

// A watchlist that changed meanwhile

TEST_F(RefreshCycleTest, folderAddedDuringACycle_isScannedWhenThatEnds) {
  dashboard_->refresh();
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  runAll();
  center_.answerAll();
  EXPECT_TRUE(dashboard_->isScanning());
  runAll();
  center_.answerAll();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_EQ(dashboard_->report().metrics.scannedFolders, 2);
  EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(2));
}

TEST_F(RefreshCycleTest, folderAddedAndTakenAwayDuringACycle_asksForNoOther) {
  dashboard_->refresh();
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  const auto& folders = dashboard_->watchlist().folders();
  const auto added = std::ranges::find(folders, "/Users/test/Desktop", &WatchFolder::path);
  ASSERT_NE(added, folders.end());
  dashboard_->watchlist().removeFolder(added->id);
  runAll();
  center_.answerAll();
  EXPECT_FALSE(dashboard_->isScanning());
}

}  // namespace
}  // namespace cirrovane::test
