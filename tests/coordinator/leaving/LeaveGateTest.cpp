#include "coordinator/leaving/LeaveGate.h"
#include "coordinator/leaving/LeaveWords.h"
#include "tests/coordinator/LiveFixture.h"
#include "tests/support/FakeFileStorage.h"
#include "tests/support/FakePowerGate.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A gate over a real live verdict, whose tree, watch, machine and time the test plays.
class LeaveGateTest : public LiveTest {
 protected:
  LeaveGateTest() {
    begin({.isWaiting = false, .interval = std::nullopt});
    makeGate();
  }

  void makeGate() {
    gate_ = std::make_unique<LeaveGate>(LeaveGateEnvironment{
        .main = main_,
        .looking = looking_,
        .acting = acting_,
        .clock = clock_,
        .monotonicClock = uptime_,
        .alarms = {lookAlarm_, limitAlarm_, powerAlarm_, questionAlarm_},
        .live = *live_,
        .coverage = std::make_shared<const CoverageKeeper>(tree_, storage_, clock_),
        .makeGate = [this](PowerGateListener& listener) { return std::make_unique<FakePowerGate>(power_, listener); },
        .supply = [this] { return supply_; }});
  }
  void settle() {
    do {
      runAll();
      looking_.runAll();
      acting_.runAll();
    } while (main_.size() + scan_.size() + updates_.size() + looking_.size() + acting_.size() > 0);
  }
  void turn(bool isUploaded) {
    change(isUploaded);
    settle();
    for (int step = 0; step < 20 && isSafe() != isUploaded; ++step) {
      pass(1s);
      settle();
    }
    ASSERT_EQ(isSafe(), isUploaded);
  }
  void announce(PowerAct act) {
    power_.listener->leaving(act, 40s);
    settle();
  }
  void askBeforeShutdown() {
    gate_->setPreferences({.keepsAwakeWhilePending = false, .awake = {}, .asksBeforeShutdown = true});
    settle();
  }

  FakePower power_;
  PowerSupply supply_;
  FakeFileStorage storage_;
  ManualExecutor looking_;
  ManualExecutor acting_;
  ManualAlarm lookAlarm_;
  ManualAlarm limitAlarm_;
  ManualAlarm powerAlarm_;
  ManualAlarm questionAlarm_;
  std::unique_ptr<LeaveGate> gate_;
};

TEST_F(LeaveGateTest, atFirst_asksNothingOfTheMachine) {
  settle();
  EXPECT_THAT(power_.holds, IsEmpty());
  EXPECT_EQ(power_.listener, nullptr);
}

TEST_F(LeaveGateTest, sleepWhenSafe_whileSafe_sleeps) {
  gate_->leaveWhenSafe(PowerAct::sleep);
  settle();
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::sleep));
  EXPECT_THAT(power_.holds, IsEmpty());
}

TEST_F(LeaveGateTest, sleepWhenSafe_whileUnsafe_keepsAwakeUntilItIsSafe) {
  turn(false);
  gate_->leaveWhenSafe(PowerAct::sleep);
  settle();
  EXPECT_THAT(power_.acts, IsEmpty());
  EXPECT_THAT(power_.holds, ElementsAre("Waiting until it is safe to leave"));
  EXPECT_EQ(waitSentence(gate_->wait().value()), "Sleeps as soon as it is safe.");
  turn(true);
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::sleep));
  EXPECT_THAT(power_.holds, IsEmpty());
}

TEST_F(LeaveGateTest, sleepWhenSafe_cancelled_letsGo) {
  turn(false);
  gate_->leaveWhenSafe(PowerAct::sleep);
  settle();
  gate_->cancel();
  settle();
  EXPECT_THAT(power_.holds, IsEmpty());
  turn(true);
  EXPECT_THAT(power_.acts, IsEmpty());
}

TEST_F(LeaveGateTest, sleepWhenSafe_notLive_scansUntilASecondYes) {
  watch_->tellStanding("It broke.");
  settle();
  pass(1s);
  ASSERT_EQ(state(), LivenessState::notLive);
  gate_->leaveWhenSafe(PowerAct::sleep);
  settle();
  EXPECT_EQ(gate_->wait().value().state, LeaveState::confirming);
  for (int step = 0; step < 30 && power_.acts.empty(); ++step) {
    pass(1s);
    settle();
  }
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::sleep));
}

TEST_F(LeaveGateTest, wakeInTheMiddle_endsTheWait) {
  turn(false);
  gate_->leaveWhenSafe(PowerAct::sleep);
  settle();
  uptime_.sleep(1h);
  gate_->wake();
  settle();
  EXPECT_EQ(gate_->wait().value().outcome, LeaveOutcome::slept);
  EXPECT_EQ(outcomeSentence(gate_->wait().value()), "This Mac slept before it was safe, so nothing waits any more.");
  EXPECT_THAT(power_.holds, IsEmpty());
}

TEST_F(LeaveGateTest, keepAwake_holdsWhileUploadsArePending) {
  gate_->setPreferences({.keepsAwakeWhilePending = true, .awake = {}, .asksBeforeShutdown = false});
  settle();
  EXPECT_THAT(power_.holds, IsEmpty());
  turn(false);
  settle();
  EXPECT_THAT(power_.holds, ElementsAre("Uploads to iCloud are pending"));
  turn(true);
  settle();
  EXPECT_THAT(power_.holds, IsEmpty());
}

TEST_F(LeaveGateTest, keepAwake_turnedOff_letsGo) {
  turn(false);
  gate_->setPreferences({.keepsAwakeWhilePending = true, .awake = {}, .asksBeforeShutdown = false});
  settle();
  EXPECT_EQ(power_.holds.size(), 1U);
  gate_->setPreferences({});
  settle();
  EXPECT_THAT(power_.holds, IsEmpty());
}

TEST_F(LeaveGateTest, shutdownWhileSafe_goesOnAtOnce) {
  askBeforeShutdown();
  announce(PowerAct::shutdown);
  EXPECT_EQ(power_.letGo, 1);
  EXPECT_EQ(gate_->question().state().value(), QuestionState::calm);
}

TEST_F(LeaveGateTest, shutdownWhileUnsafe_asks) {
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::shutdown);
  EXPECT_EQ(power_.letGo, 0);
  EXPECT_EQ(gate_->question().state().value(), QuestionState::asked);
  gate_->answerLeave();
  EXPECT_EQ(power_.letGo, 1);
}

TEST_F(LeaveGateTest, shutdownWhileUnsafe_waitedFor_goesOnWhenSafe) {
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::shutdown);
  gate_->answerWait();
  EXPECT_EQ(gate_->question().state().value(), QuestionState::staying);
  turn(true);
  EXPECT_EQ(power_.letGo, 1);
  EXPECT_EQ(gate_->question().state().value(), QuestionState::calm);
}

TEST_F(LeaveGateTest, shutdownThatCanBeCalledOff_isMadeUpForWhenSafe) {
  power_.letsCallOff = true;
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::shutdown);
  gate_->answerWait();
  settle();
  EXPECT_EQ(power_.calledOff, 1);
  EXPECT_EQ(gate_->question().state().value(), QuestionState::calm);
  EXPECT_THAT(power_.acts, IsEmpty());
  turn(true);
  EXPECT_THAT(power_.acts, ElementsAre(PowerAct::shutdown));
}

TEST_F(LeaveGateTest, shutdownWhileUnsafe_withoutAnAnswer_goesOn) {
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::shutdown);
  EXPECT_EQ(questionAlarm_.after(), 35s);
  uptime_.advance(35s);
  questionAlarm_.ring();
  EXPECT_EQ(power_.letGo, 1);
}

TEST_F(LeaveGateTest, shutdownCalledOff_takesTheQuestionBack) {
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::shutdown);
  power_.listener->stays(PowerAct::shutdown);
  settle();
  EXPECT_EQ(gate_->question().state().value(), QuestionState::calm);
  EXPECT_EQ(power_.letGo, 0);
}

TEST_F(LeaveGateTest, sleepAnnounced_isHeldUpByNobody) {
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::sleep);
  EXPECT_EQ(power_.letGo, 1);
  EXPECT_EQ(gate_->question().state().value(), QuestionState::calm);
}

TEST_F(LeaveGateTest, askingTurnedOff_answersWhatIsAsked) {
  askBeforeShutdown();
  turn(false);
  announce(PowerAct::shutdown);
  gate_->setPreferences({});
  EXPECT_EQ(power_.letGo, 1);
  EXPECT_EQ(power_.listener, nullptr);
}

TEST_F(LeaveGateTest, machineThatAnnouncesNothing_saysWhy) {
  power_.refusesToTell = "There is no login service.";
  askBeforeShutdown();
  EXPECT_EQ(gate_->obstacleToAsking().value(), "There is no login service.");
  gate_->setPreferences({});
  EXPECT_EQ(gate_->obstacleToAsking().value(), std::nullopt);
}

TEST_F(LeaveGateTest, quitWhileWaiting_holdsNothing) {
  turn(false);
  gate_->setPreferences({.keepsAwakeWhilePending = true, .awake = {}, .asksBeforeShutdown = true});
  gate_->leaveWhenSafe(PowerAct::sleep);
  settle();
  gate_.reset();
  EXPECT_THAT(power_.holds, IsEmpty());
  EXPECT_EQ(power_.listener, nullptr);
  settle();
  EXPECT_THAT(power_.acts, IsEmpty());
}

}  // namespace
}  // namespace cirrovane::test
