#include "coordinator/leaving/LeaveWait.h"
#include "tests/core/Builders.h"
#include "tests/support/FakeFileStorage.h"
#include "tests/support/FakePowerGate.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ManualMonotonicClock.h"

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A wait over a verdict, a machine and a time that the test plays.
class LeaveWaitTest : public testing::Test {
 protected:
  LeaveWaitTest() {
    std::string path;
    for (const std::string name : {"/Users", "/test", "/Library", "/Mobile Documents", "/com~apple~CloudDocs"}) {
      tree_.makeFolder(path += name);
    }
    make();
  }

  void make() {
    wait_ = std::make_unique<LeaveWait>(
        LeaveEnvironment{.main = main_,
                         .looking = looking_,
                         .acting = acting_,
                         .monotonicClock = uptime_,
                         .lookAlarm = lookAlarm_,
                         .limitAlarm = limitAlarm_,
                         .coverage = std::make_shared<const CoverageKeeper>(tree_, storage_, clock_),
                         .sight = [this] { return sight_; },
                         .folders = [this] { return folders_; },
                         .perform = [this](PowerAct act) -> std::optional<Failure> {
                           if (power_.refusesToAct) {
                             return Failure{*power_.refusesToAct};
                           }
                           power_.acts.push_back(act);
                           return std::nullopt;
                         }});
  }
  void begin(std::optional<PowerAct> act = PowerAct::sleep, std::optional<std::chrono::nanoseconds> limit = {}) {
    wait_->begin({act, limit});
    main_.runAll();
  }
  /// What is under way ends.
  void runAll() {
    while (looking_.size() + main_.size() + acting_.size() > 0) {
      looking_.runAll();
      acting_.runAll();
      main_.runAll();
    }
  }
  void verdict(bool isSafe, LivenessState liveness = LivenessState::live) {
    sight_ = {isSafe, liveness, uptime_.sinceBoot(), false};
    wait_->look();
  }
  /// A scan says it while nobody tells of changes.
  void scanSays(bool isSafe) { verdict(isSafe, LivenessState::notLive); }
  void addGap(const std::string& name, bool canClose) {
    FakeValues values;
    values.isUbiquitousItem = canClose;
    values.isUploaded = false;
    tree_.makeFile(std::string(kDrive) + "/" + name, values);
  }
  void removeGap(const std::string& name) { tree_.remove(std::string(kDrive) + "/" + name); }
  void lookAgain() {
    uptime_.advance(10s);
    lookAlarm_.ring();
    runAll();
  }

  LeaveState state() const { return wait_->standing().value().state; }
  std::optional<LeaveOutcome> outcome() const { return wait_->standing().value().outcome; }
  void expectEnd(LeaveOutcome outcome) {
    EXPECT_EQ(state(), LeaveState::idle);
    EXPECT_EQ(this->outcome(), outcome);
  }

  FakeTree tree_;
  FakeFileStorage storage_;
  ManualClock clock_{at(18)};
  ManualMonotonicClock uptime_;
  ManualExecutor main_;
  ManualExecutor looking_;
  ManualExecutor acting_;
  ManualAlarm lookAlarm_;
  ManualAlarm limitAlarm_;
  FakePower power_;
  VerdictSight sight_;
  std::vector<WatchFolder> folders_ = {makeFolder("Drive", std::string(kDrive))};
  std::unique_ptr<LeaveWait> wait_;
};

TEST_F(LeaveWaitTest, atFirst_nothingIsWaitedFor) {
  EXPECT_EQ(state(), LeaveState::idle);
  EXPECT_EQ(outcome(), std::nullopt);
}

TEST_F(LeaveWaitTest, idle_asked_waits) {
  begin();
  EXPECT_EQ(state(), LeaveState::waiting);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, idle_anyVerdict_doesNothing) {
  verdict(true);
  runAll();
  EXPECT_EQ(state(), LeaveState::idle);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, waiting_askedAgain_goesOnAsItWas) {
  begin(PowerAct::sleep);
  begin(PowerAct::shutdown);
  EXPECT_EQ(wait_->standing().value().wish.act, PowerAct::sleep);
}

TEST_F(LeaveWaitTest, waiting_no_waitsOn) {
  begin();
  verdict(false);
  runAll();
  EXPECT_EQ(state(), LeaveState::waiting);
}

TEST_F(LeaveWaitTest, waiting_yesThatIsCatchingUp_waitsOn) {
  begin();
  verdict(true, LivenessState::catchingUp);
  runAll();
  EXPECT_EQ(state(), LeaveState::waiting);
}

TEST_F(LeaveWaitTest, waiting_yesThatIsStale_waitsOn) {
  begin();
  sight_ = {true, LivenessState::notLive, uptime_.sinceBoot(), true};
  wait_->look();
  runAll();
  EXPECT_EQ(state(), LeaveState::waiting);
}

TEST_F(LeaveWaitTest, waiting_firstYesThatIsNotLive_isToBeConfirmed) {
  begin();
  scanSays(true);
  runAll();
  EXPECT_EQ(state(), LeaveState::confirming);
}

TEST_F(LeaveWaitTest, waiting_liveYes_looksAtTheCoverage) {
  begin();
  verdict(true);
  EXPECT_EQ(state(), LeaveState::vouching);
  EXPECT_EQ(looking_.size(), 1U);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, waiting_cancelled_ends) {
  begin();
  wait_->cancel();
  expectEnd(LeaveOutcome::cancelled);
  verdict(true);
  runAll();
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, waiting_timeUp_ends) {
  begin(PowerAct::sleep, 60s);
  verdict(false);
  EXPECT_EQ(limitAlarm_.after(), 60s);
  uptime_.advance(59s);
  limitAlarm_.ring();
  EXPECT_EQ(state(), LeaveState::waiting);
  EXPECT_EQ(limitAlarm_.after(), 1s);
  uptime_.advance(1s);
  limitAlarm_.ring();
  expectEnd(LeaveOutcome::timeUp);
}

TEST_F(LeaveWaitTest, waiting_timeUpBeforeTheFirstScan_waitsForIt) {
  begin(PowerAct::sleep, 0s);
  limitAlarm_.ring();
  EXPECT_EQ(state(), LeaveState::waiting);
  verdict(false);
  expectEnd(LeaveOutcome::timeUp);
}

TEST_F(LeaveWaitTest, waiting_wake_ends) {
  begin();
  uptime_.sleep(1s);
  wait_->look();
  expectEnd(LeaveOutcome::slept);
}

TEST_F(LeaveWaitTest, waiting_wakeThatTheMachineTells_ends) {
  begin();
  wait_->slept();
  expectEnd(LeaveOutcome::slept);
}

TEST_F(LeaveWaitTest, confirming_secondYesTenSecondsLater_looksAtTheCoverage) {
  begin();
  scanSays(true);
  uptime_.advance(10s);
  scanSays(true);
  EXPECT_EQ(state(), LeaveState::vouching);
}

TEST_F(LeaveWaitTest, confirming_secondYesTooSoon_isNone) {
  begin();
  scanSays(true);
  uptime_.advance(10s - 1ns);
  scanSays(true);
  EXPECT_EQ(state(), LeaveState::confirming);
}

TEST_F(LeaveWaitTest, confirming_theSameScanLater_isNoSecondOne) {
  begin();
  scanSays(true);
  uptime_.advance(1min);
  wait_->look();
  runAll();
  EXPECT_EQ(state(), LeaveState::confirming);
}

TEST_F(LeaveWaitTest, confirming_no_beginsAnew) {
  begin();
  scanSays(true);
  uptime_.advance(5s);
  scanSays(false);
  EXPECT_EQ(state(), LeaveState::waiting);
  uptime_.advance(5s);
  scanSays(true);
  EXPECT_EQ(state(), LeaveState::confirming);
}

TEST_F(LeaveWaitTest, confirming_liveAgain_looksAtTheCoverage) {
  begin();
  scanSays(true);
  verdict(true);
  EXPECT_EQ(state(), LeaveState::vouching);
}

TEST_F(LeaveWaitTest, confirming_cancelled_ends) {
  begin();
  scanSays(true);
  wait_->cancel();
  expectEnd(LeaveOutcome::cancelled);
}

TEST_F(LeaveWaitTest, confirming_timeUp_ends) {
  begin(PowerAct::sleep, 5s);
  scanSays(true);
  uptime_.advance(5s);
  limitAlarm_.ring();
  expectEnd(LeaveOutcome::timeUp);
}

TEST_F(LeaveWaitTest, confirming_wake_ends) {
  begin();
  scanSays(true);
  wait_->slept();
  expectEnd(LeaveOutcome::slept);
}

TEST_F(LeaveWaitTest, vouching_completeCoverage_sleepsOnce) {
  begin();
  verdict(true);
  runAll();
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::sleep));
  expectEnd(LeaveOutcome::done);
  verdict(true);
  runAll();
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::sleep));
}

TEST_F(LeaveWaitTest, vouching_completeCoverage_shutsDownWhereThatIsWished) {
  begin(PowerAct::shutdown);
  verdict(true);
  runAll();
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::shutdown));
}

TEST_F(LeaveWaitTest, vouching_completeCoverage_withNothingToDo_isDone) {
  begin(std::nullopt);
  verdict(true);
  runAll();
  expectEnd(LeaveOutcome::done);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_noWhileTheLookGoesOn_isNoYesAnyMore) {
  begin();
  verdict(true);
  verdict(false);
  EXPECT_EQ(state(), LeaveState::waiting);
  runAll();
  EXPECT_EQ(state(), LeaveState::waiting);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_noInTheSecondBeforeSleep_keepsTheMachineUp) {
  begin();
  verdict(true);
  looking_.runAll();
  // The look has ended, and its end is on its way, when the verdict turns.
  sight_.safeToClose = false;
  runAll();
  EXPECT_EQ(state(), LeaveState::waiting);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_noAndYesWhileTheLookGoesOn_isLookedAtAnew) {
  begin();
  verdict(true);
  verdict(false);
  addGap(".env", false);
  verdict(true);
  runAll();
  EXPECT_EQ(state(), LeaveState::vouching);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_notLiveAnyMore_isToBeConfirmed) {
  begin();
  verdict(true);
  uptime_.advance(1s);
  scanSays(true);
  EXPECT_EQ(state(), LeaveState::confirming);
  runAll();
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_otherFolders_areLookedAtAnew) {
  begin();
  verdict(true);
  looking_.runAll();
  addGap(".env", false);
  folders_.front().name = "Other";
  runAll();
  EXPECT_EQ(state(), LeaveState::vouching);
  EXPECT_EQ(wait_->standing().value().gaps, 1);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_gapThatCloses_isWaitedFor) {
  addGap(".draft", true);
  begin();
  verdict(true);
  runAll();
  EXPECT_EQ(state(), LeaveState::vouching);
  EXPECT_EQ(wait_->standing().value().gaps, 1);
  EXPECT_EQ(lookAlarm_.after(), 10s);
  lookAgain();
  EXPECT_EQ(state(), LeaveState::vouching);
  removeGap(".draft");
  lookAgain();
  expectEnd(LeaveOutcome::done);
}

TEST_F(LeaveWaitTest, vouching_gapThatLasts_endsAfterTwoLooks) {
  addGap(".env", false);
  begin();
  verdict(true);
  runAll();
  EXPECT_EQ(state(), LeaveState::vouching);
  lookAgain();
  expectEnd(LeaveOutcome::lastingGaps);
  EXPECT_EQ((*wait_->coverage())->gapCounts.notInICloud, 1);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_gapsThatLastAndOneThatCloses_areWaitedFor) {
  addGap(".env", false);
  addGap(".draft", true);
  begin();
  verdict(true);
  runAll();
  lookAgain();
  lookAgain();
  EXPECT_EQ(state(), LeaveState::vouching);
  removeGap(".draft");
  lookAgain();
  EXPECT_EQ(state(), LeaveState::vouching);
  lookAgain();
  expectEnd(LeaveOutcome::lastingGaps);
}

TEST_F(LeaveWaitTest, vouching_anotherGapThatLasts_hasToBeFoundTwiceToo) {
  addGap(".env", false);
  begin();
  verdict(true);
  runAll();
  addGap(".npmrc", false);
  lookAgain();
  EXPECT_EQ(state(), LeaveState::vouching);
  lookAgain();
  expectEnd(LeaveOutcome::lastingGaps);
}

TEST_F(LeaveWaitTest, vouching_cancelled_ends) {
  begin();
  verdict(true);
  wait_->cancel();
  runAll();
  expectEnd(LeaveOutcome::cancelled);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, vouching_timeUp_endsAfterTheLook) {
  addGap(".env", false);
  begin(PowerAct::sleep, 0s);
  verdict(true);
  limitAlarm_.ring();
  EXPECT_EQ(state(), LeaveState::vouching);
  runAll();
  expectEnd(LeaveOutcome::timeUp);
}

TEST_F(LeaveWaitTest, vouching_timeUpAndComplete_isDone) {
  begin(PowerAct::sleep, 0s);
  verdict(true);
  limitAlarm_.ring();
  runAll();
  expectEnd(LeaveOutcome::done);
}

TEST_F(LeaveWaitTest, vouching_wake_ends) {
  begin();
  verdict(true);
  uptime_.sleep(1min);
  runAll();
  expectEnd(LeaveOutcome::slept);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, acting_refused_saysWhy) {
  power_.refusesToAct = "An update is being installed.";
  begin();
  verdict(true);
  runAll();
  expectEnd(LeaveOutcome::refused);
  EXPECT_EQ(wait_->standing().value().refusal, "An update is being installed.");
}

TEST_F(LeaveWaitTest, acting_cancelledOrNo_cannotBeTakenBack) {
  begin();
  verdict(true);
  looking_.runAll();
  main_.runAll();
  ASSERT_EQ(state(), LeaveState::acting);
  wait_->cancel();
  verdict(false);
  EXPECT_EQ(state(), LeaveState::acting);
  runAll();
  expectEnd(LeaveOutcome::done);
}

TEST_F(LeaveWaitTest, acting_wakeBeforeTheAnswer_isDone) {
  begin();
  verdict(true);
  looking_.runAll();
  main_.runAll();
  acting_.runAll();
  wait_->slept();
  expectEnd(LeaveOutcome::done);
  runAll();
  expectEnd(LeaveOutcome::done);
}

TEST_F(LeaveWaitTest, endedWait_beginsAnewWithAllThatItHadFoundForgotten) {
  addGap(".env", false);
  begin();
  verdict(true);
  runAll();
  lookAgain();
  expectEnd(LeaveOutcome::lastingGaps);
  begin();
  EXPECT_EQ(outcome(), std::nullopt);
  verdict(true);
  runAll();
  EXPECT_EQ(state(), LeaveState::vouching);
}

TEST_F(LeaveWaitTest, quitWhileWaiting_doesNothingAnyMore) {
  begin();
  verdict(true);
  looking_.runAll();
  wait_.reset();
  runAll();
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveWaitTest, quitWhileActing_isSafe) {
  begin();
  verdict(true);
  looking_.runAll();
  main_.runAll();
  wait_.reset();
  runAll();
}

TEST_F(LeaveWaitTest, twoAtOnce_areOneAfterTheOtherWithTheMachine) {
  const std::unique_ptr<LeaveWait> first = std::move(wait_);
  make();
  first->begin({PowerAct::sleep, std::nullopt});
  begin();
  verdict(true);
  first->look();
  runAll();
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::sleep, PowerAct::sleep));
  EXPECT_EQ(first->standing().value().outcome, LeaveOutcome::done);
  expectEnd(LeaveOutcome::done);
}

TEST(LeaveTable, everyEdge_isThereOnce) {
  std::set<std::pair<LeaveState, LeaveEvent>> seen;
  for (const LeaveEdge& edge : leaveTable()) {
    EXPECT_TRUE(seen.emplace(edge.from, edge.event).second);
    EXPECT_EQ(edge.outcome.has_value(), edge.to == LeaveState::idle);
  }
  EXPECT_EQ(seen.size(), 21U);
}

}  // namespace
}  // namespace cirrovane::test
