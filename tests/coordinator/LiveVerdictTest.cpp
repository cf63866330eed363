#include "tests/coordinator/LiveFixture.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using LiveVerdictTest = LiveTest;

// The first report

TEST_F(LiveVerdictTest, beforeTheFirstScan_thereIsNoReportAndItIsNotLive) {
  make({});
  EXPECT_EQ(live_->report().value(), std::nullopt);
  EXPECT_EQ(live_->confirmation(), std::nullopt);
  EXPECT_EQ(state(), LivenessState::notLive);
}

TEST_F(LiveVerdictTest, firstScan_watchesBeforeItListsAndIsLiveThen) {
  begin();
  EXPECT_THAT(watch_->starts, ElementsAre(ElementsAre(kWork)));
  EXPECT_THAT(watch_->listed(), ElementsAre(kWork));
  EXPECT_TRUE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
  EXPECT_EQ(reason(), "");
  EXPECT_EQ(watch_->proofsAsked, 1);
}

TEST_F(LiveVerdictTest, watchThatAnswersLate_isWaitedForBeforeTheScan) {
  standsAtOnce_ = false;
  begin();
  EXPECT_THAT(watch_->listed(), IsEmpty());
  watch_->tellStanding();
  runAll();
  EXPECT_THAT(watch_->listed(), SizeIs(1));
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, watchThatNeverAnswers_doesNotKeepAnybodyFromAReport) {
  standsAtOnce_ = false;
  begin();
  pass(1s);
  EXPECT_TRUE(isSafe());
  EXPECT_EQ(state(), LivenessState::notLive);
  // What was walked before it stood was not watched.
  watch_->tellStanding();
  pass(0s);
  EXPECT_THAT(watch_->listed(), SizeIs(2));
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, watchThatIsRefused_givesAReportThatIsNotLiveWithTheReason) {
  reasonAgainst_ = "The system watches no more folders.";
  begin();
  EXPECT_TRUE(isSafe());
  EXPECT_EQ(state(), LivenessState::notLive);
  EXPECT_EQ(reason(), "The system watches no more folders.");
}

TEST_F(LiveVerdictTest, systemWithoutAWatch_isNotLive) {
  live_ = std::make_unique<LiveVerdict>(ScanSource{tree_, clock_},
                                        LiveEnvironment{{main_, scan_, updates_}, clock_, uptime_, alarm_, nullptr});
  live_->follow({folder_});
  runAll();
  EXPECT_TRUE(isSafe());
  EXPECT_EQ(state(), LivenessState::notLive);
  EXPECT_EQ(reason(), "This system does not tell of changes.");
}

// A change is told

TEST_F(LiveVerdictTest, savedFile_turnsYesToNoAtOnceWithoutAScan) {
  begin();
  changeAndRun(false);
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(report().metrics.pendingUploads, 1);
  EXPECT_THAT(watch_->starts, SizeIs(1));
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, burst_isReadAHundredMillisecondsAfterItsFirstChange) {
  begin();
  pass(1s);
  watch_->tell(kWork, "a.txt");
  runAll();
  change(false);
  main_.runAll();
  EXPECT_EQ(updates_.size(), 0U);
  EXPECT_EQ(alarm_.after(), 100ms);
  pass(50ms);
  EXPECT_TRUE(isSafe());
  pass(50ms);
  EXPECT_FALSE(isSafe());
}

TEST_F(LiveVerdictTest, changeDuringAFullScan_turnsToNoBeforeTheScanEnds) {
  begin();
  live_->rescan();
  ASSERT_EQ(scan_.size(), 1U);
  change(false);
  main_.runAll();
  updates_.runAll();
  main_.runAll();
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(scan_.size(), 1U);
}

TEST_F(LiveVerdictTest, changeAfterTheScanSawTheFolder_isInItsReport) {
  begin();
  live_->rescan();
  scan_.runAll();
  change(false);
  runAll();
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
  EXPECT_EQ(live_->liveness().value().disagreements, 0);
}

TEST_F(LiveVerdictTest, folderThatIsGone_isForgottenByTheWatch) {
  tree_.makeFolder(kWork + "/sub");
  begin();
  tree_.remove(kWork + "/sub");
  watch_->tell(kWork, "sub");
  runAll();
  EXPECT_THAT(watch_->forgotten, ElementsAre(kWork + "/sub"));
}

TEST_F(LiveVerdictTest, systemWhoseCloudStateFollows_readsAChangedFolderAgainLater) {
  later_ = {1s, 5s};
  begin();
  pass(1s);
  watch_->tell(kWork, "a.txt");
  runAll();
  tree_.setValues(kFile, values(false));
  pass(999ms);
  EXPECT_TRUE(isSafe());
  pass(1ms);
  EXPECT_FALSE(isSafe());
}

TEST_F(LiveVerdictTest, uploadThatStallsByTheClockAlone_isReportedWhenItsTimeIsUp) {
  FakeValues uploading = values(true);
  uploading.isUploading = true;
  uploading.contentModificationDate = clock_.now() - 19min;
  tree_.setValues(kFile, uploading);
  begin({});
  EXPECT_THAT(report().blockers, IsEmpty());
  ASSERT_TRUE(alarm_.after());
  pass(61s);
  EXPECT_THAT(report().blockers, SizeIs(1));
}

TEST_F(LiveVerdictTest, clockThatIsSet_judgesAnew) {
  FakeValues uploading = values(true);
  uploading.isUploading = true;
  uploading.contentModificationDate = clock_.now() - 1min;
  tree_.setValues(kFile, uploading);
  begin({});
  clock_.advance(3h);
  live_->wake();
  runAll();
  EXPECT_THAT(report().blockers, SizeIs(1));
  clock_.advance(-3h);
  live_->wake();
  runAll();
  EXPECT_THAT(report().blockers, IsEmpty());
}

// NO turns to YES

TEST_F(LiveVerdictTest, uploadedFile_turnsToYesByAFullScanAlone) {
  begin();
  changeAndRun(false);
  pass(1s);
  change(true);
  main_.runAll();
  updates_.runAll();
  main_.runAll();
  EXPECT_FALSE(isSafe());
  ASSERT_EQ(scan_.size(), 1U);
  runAll();
  EXPECT_TRUE(isSafe());
}

TEST_F(LiveVerdictTest, noThatIsHeld_staysWholeUntilTheScan) {
  begin();
  changeAndRun(false);
  const SyncHealthReport before = report();
  pass(1s);
  change(true);
  main_.runAll();
  updates_.runAll();
  main_.runAll();
  EXPECT_EQ(report(), before);
  uptime_.advance(1100ms);
  alarm_.ring();
  EXPECT_EQ(state(), LivenessState::catchingUp);
  runAll();
  EXPECT_TRUE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, scanThatFindsAnotherBlocker_keepsTheNo) {
  begin();
  changeAndRun(false);
  pass(1s);
  change(true);
  main_.runAll();
  updates_.runAll();
  main_.runAll();
  tree_.makeFile(kWork + "/b.txt", values(false));
  runAll();
  EXPECT_FALSE(isSafe());
}

TEST_F(LiveVerdictTest, yesOfAScan_isNotShownBeforeTheWatchProvesThatItLives) {
  begin();
  watch_->provesAtOnce = false;
  changeAndRun(false);
  pass(1s);
  changeAndRun(true);
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(watch_->proofsAsked, 2);
  watch_->answerProof();
  runAll();
  EXPECT_TRUE(isSafe());
}

TEST_F(LiveVerdictTest, watchThatCannotProve_leavesAYesThatIsNotLive) {
  begin();
  watch_->provesAtOnce = false;
  changeAndRun(false);
  pass(1s);
  changeAndRun(true);
  watch_->tellStanding("The watch is dead.");
  runAll();
  EXPECT_TRUE(isSafe());
  EXPECT_EQ(state(), LivenessState::notLive);
  EXPECT_EQ(reason(), "The watch is dead.");
}

TEST_F(LiveVerdictTest, changeWhileTheProofIsAwaited_isNotOverlooked) {
  begin();
  watch_->provesAtOnce = false;
  changeAndRun(false);
  pass(1s);
  changeAndRun(true);
  pass(1s);
  changeAndRun(false);
  watch_->answerProof();
  runAll();
  EXPECT_FALSE(isSafe());
}

TEST_F(LiveVerdictTest, whileNo_blockersAreReadAgainEveryFiveSeconds) {
  begin();
  changeAndRun(false);
  pass(1s);
  tree_.setValues(kFile, values(true));
  pass(3s);
  EXPECT_FALSE(isSafe());
  pass(2s);
  EXPECT_TRUE(isSafe());
}

TEST_F(LiveVerdictTest, blockersReadAgain_takeAlongWhatWasTold) {
  tree_.makeFile(kWork + "/b.txt", values(false));
  tree_.makeFile(kWork + "/c.txt", values(true));
  begin();
  changeAndRun(false);
  pass(4950ms);
  watch_->tell(kWork, "a.txt");
  runAll();
  std::vector<std::int64_t> pending;
  const Subscription subscription =
      live_->report().afterChange([&](const auto&) { pending.push_back(report().metrics.pendingUploads); });
  // One is uploaded and another saved, both too soon after the last reading to be read at once.
  change(true);
  tree_.setValues(kWork + "/c.txt", values(false));
  watch_->tell(kWork, "c.txt");
  main_.runAll();
  EXPECT_THAT(pending, IsEmpty());
  pass(60ms);
  EXPECT_THAT(pending, Each(2));
  EXPECT_EQ(report().metrics.pendingUploads, 2);
  EXPECT_EQ(report().blockers.size(), 2U);
}

// Losses

TEST_F(LiveVerdictTest, loss_catchesUpByAFullScan) {
  begin();
  pass(1s);
  tree_.setValues(kFile, values(false));
  watch_->lose("More changed at once than the system can tell.");
  main_.runAll();
  EXPECT_EQ(state(), LivenessState::catchingUp);
  EXPECT_EQ(reason(), "More changed at once than the system can tell.");
  runAll();
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
  EXPECT_EQ(live_->liveness().value().disagreements, 0);
}

TEST_F(LiveVerdictTest, lossDuringAScan_asksForAnother) {
  begin();
  pass(1s);
  live_->rescan();
  scan_.runAll();
  tree_.setValues(kFile, values(false));
  watch_->lose();
  runAll();
  pass(1s);
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, sleep_isNotLiveUntilAScanIsThrough) {
  begin();
  uptime_.sleep(1h);
  clock_.advance(1h);
  EXPECT_EQ(standingOf(live_->confirmation(), uptime_), VerdictStanding::slept);
  tree_.setValues(kFile, values(false));
  live_->wake();
  EXPECT_EQ(state(), LivenessState::catchingUp);
  EXPECT_EQ(standingOf(live_->confirmation(), uptime_), VerdictStanding::slept);
  runAll();
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, watchThatDies_isNotLive_andTheVerdictGrowsStale) {
  begin({});
  pass(10min);
  EXPECT_EQ(standingOf(live_->confirmation(), uptime_), VerdictStanding::confirmed);
  watch_->tellStanding("The watch is dead.");
  runAll();
  EXPECT_EQ(state(), LivenessState::notLive);
  pass(181s);
  EXPECT_EQ(standingOf(live_->confirmation(), uptime_), VerdictStanding::expired);
}

TEST_F(LiveVerdictTest, deadWatch_isStartedAgainWithTheNextScan) {
  begin();
  watch_->tellStanding("The watch is dead.");
  runAll();
  pass(5s);
  EXPECT_THAT(watch_->starts, SizeIs(2));
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, changeThatWasNeverTold_countsAndCostsTheLiveState) {
  begin();
  pass(1s);
  tree_.makeFile(kWork + "/b.txt", values(true));
  live_->rescan();
  runAll();
  EXPECT_EQ(report().metrics.totalFiles, 2);
  EXPECT_EQ(state(), LivenessState::live);
  uptime_.advance(1s);
  alarm_.ring();
  EXPECT_EQ(state(), LivenessState::notLive);
  EXPECT_EQ(live_->liveness().value().disagreements, 1);
  runAll();
  pass(1s);
  EXPECT_EQ(state(), LivenessState::live);
  EXPECT_EQ(live_->liveness().value().disagreements, 1);
}

TEST_F(LiveVerdictTest, changeThatIsToldJustAfterTheScanSawIt_isNoDisagreement) {
  begin();
  pass(1s);
  tree_.makeFile(kWork + "/b.txt", values(true));
  live_->rescan();
  runAll();
  watch_->tell(kWork, "b.txt");
  runAll();
  pass(2s);
  EXPECT_EQ(live_->liveness().value().disagreements, 0);
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveVerdictTest, changeWhileNothingWasTold_isNoDisagreementOnceTheWatchStands) {
  reasonAgainst_ = "The system watches no more folders.";
  begin();
  tree_.setValues(kFile, values(false));
  watch_->reasonAgainst.reset();
  live_->rescan();
  runAll();
  pass(5s);
  EXPECT_FALSE(isSafe());
  EXPECT_EQ(state(), LivenessState::live);
  EXPECT_EQ(live_->liveness().value().disagreements, 0);
}

TEST_F(LiveVerdictTest, otherFolders_areNoDisagreement) {
  tree_.makeFolder(std::string(kDrive) + "/Other");
  begin();
  live_->follow({folder_, makeFolder("Other", std::string(kDrive) + "/Other")});
  runAll();
  pass(2s);
  EXPECT_THAT(watch_->starts, SizeIs(2));
  EXPECT_EQ(live_->liveness().value().disagreements, 0);
}

TEST_F(LiveVerdictTest, changeThatIsNotReadForASecond_isCatchingUp) {
  begin();
  change(false);
  main_.runAll();
  uptime_.advance(1001ms);
  alarm_.ring();
  EXPECT_EQ(state(), LivenessState::catchingUp);
  runAll();
  EXPECT_EQ(state(), LivenessState::live);
}

// Full scans of whoever waits

TEST_F(LiveVerdictTest, waitingWhileLive_scansInFullAfterNinetySeconds) {
  begin();
  pass(89s);
  tree_.makeFile(kWork + "/b.txt", values(true));
  EXPECT_EQ(report().metrics.totalFiles, 1);
  pass(1s);
  EXPECT_EQ(report().metrics.totalFiles, 2);
}

TEST_F(LiveVerdictTest, waitingWhileNotLive_scansInFullEveryFiveSeconds) {
  reasonAgainst_ = "Not here.";
  begin();
  tree_.setValues(kFile, values(false));
  pass(4s);
  EXPECT_TRUE(isSafe());
  pass(1s);
  EXPECT_FALSE(isSafe());
}

TEST_F(LiveVerdictTest, waitingWithAnInterval_scansInFullThatOften) {
  begin({.isWaiting = true, .interval = 2s});
  tree_.setValues(kFile, values(false));
  pass(2s);
  EXPECT_FALSE(isSafe());
}

// Cycles

class LiveCycleTest : public LiveTest {
 protected:
  /// Asks as a cycle does; the report once it is there.
  std::optional<Shared<SyncHealthReport>> obtain(CycleCause cause) {
    std::optional<Shared<SyncHealthReport>> got;
    live_->cycleBegan();
    live_->obtain({folder_}, cause, [&](const auto& report, const Confirmation&) { got = report; });
    runAll();
    if (got) {
      live_->cycleEnded((*got)->safeToClose);
    }
    return got;
  }
};

TEST_F(LiveCycleTest, firstCycle_scansInFullAndIsLiveThen) {
  make({});
  const auto report = obtain(CycleCause::regular);
  ASSERT_TRUE(report);
  EXPECT_TRUE((*report)->safeToClose);
  EXPECT_EQ(state(), LivenessState::live);
}

TEST_F(LiveCycleTest, quickScan_isRepeatedByEveryCycle) {
  make({});
  obtain(CycleCause::regular);
  tree_.setValues(kFile, values(false));
  const auto report = obtain(CycleCause::regular);
  ASSERT_TRUE(report);
  EXPECT_FALSE((*report)->safeToClose);
}

TEST_F(LiveCycleTest, slowScan_isSparedByTheTimerAndNotByTheUser) {
  make({});
  // The scan takes three seconds.
  tree_.setOnListing([this] { uptime_.advance(3s); });
  obtain(CycleCause::regular);
  tree_.setOnListing(nullptr);
  tree_.setValues(kFile, values(false));
  EXPECT_TRUE((*obtain(CycleCause::regular))->safeToClose);
  EXPECT_FALSE((*obtain(CycleCause::asked))->safeToClose);
}

TEST_F(LiveCycleTest, slowScan_isRepeatedAfterFiftyTimesItsDuration) {
  make({});
  tree_.setOnListing([this] { uptime_.advance(3s); });
  obtain(CycleCause::regular);
  tree_.setOnListing(nullptr);
  tree_.setValues(kFile, values(false));
  pass(149s);
  EXPECT_TRUE((*obtain(CycleCause::regular))->safeToClose);
  pass(1s);
  EXPECT_FALSE((*obtain(CycleCause::regular))->safeToClose);
}

TEST_F(LiveCycleTest, slowScanWhileNotLive_isRepeatedByEveryCycle) {
  make({});
  tree_.setOnListing([this] { uptime_.advance(3s); });
  reasonAgainst_ = "Not here.";
  obtain(CycleCause::regular);
  tree_.setValues(kFile, values(false));
  EXPECT_FALSE((*obtain(CycleCause::regular))->safeToClose);
}

TEST_F(LiveCycleTest, turnedVerdict_startsACycleOnceItHasHeld) {
  make({});
  int cycles = 0;
  live_->onTurned([&] { ++cycles; });
  obtain(CycleCause::asked);
  pass(60s);
  changeAndRun(false);
  pass(14s);
  EXPECT_EQ(cycles, 0);
  pass(1s);
  EXPECT_EQ(cycles, 1);
}

TEST_F(LiveCycleTest, saveThatIsUploadedWithinFifteenSeconds_startsNone) {
  make({});
  int cycles = 0;
  live_->onTurned([&] { ++cycles; });
  obtain(CycleCause::asked);
  pass(60s);
  changeAndRun(false);
  EXPECT_FALSE(isSafe());
  pass(10s);
  changeAndRun(true);
  EXPECT_TRUE(isSafe());
  pass(60s);
  EXPECT_EQ(cycles, 0);
}

TEST_F(LiveVerdictTest, endWhileWorkIsUnderWay_leavesNothingBehind) {
  begin();
  live_->rescan();
  change(false);
  main_.runAll();
  live_.reset();
  runAll();
  EXPECT_EQ(alarm_.after(), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
