#include "coordinator/leaving/AwakeKeeper.h"
#include "tests/core/Builders.h"
#include "tests/support/FakePowerGate.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ManualMonotonicClock.h"

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

class NoListener final : public PowerGateListener {
 public:
  void leaving(PowerAct, std::chrono::milliseconds) override {}
  void stays(PowerAct) override {}
  void stands(std::optional<std::string>) override {}
};

class AwakeKeeperTest : public testing::Test {
 protected:
  AwakeKeeperTest() { make(); }

  void make() {
    keeper_ = std::make_unique<AwakeKeeper>(
        AwakeEnvironment{.main = main_,
                         .acting = acting_,
                         .clock = clock_,
                         .monotonicClock = uptime_,
                         .alarm = alarm_,
                         .supply = [this] { return supply_; },
                         .hold = [this](const std::string& reason) { return gate_.keepAwake(reason); }});
  }
  void runAll() {
    while (acting_.size() + main_.size() > 0) {
      acting_.runAll();
      main_.runAll();
    }
  }
  void want(std::optional<std::string> reason = "Uploads") {
    keeper_->want(std::move(reason));
    runAll();
  }
  void pass(std::chrono::nanoseconds time) {
    uptime_.advance(time);
    alarm_.ring();
    runAll();
  }
  AwakeObstacle obstacle() const { return keeper_->standing().value().obstacle; }
  bool isHeld() const { return keeper_->standing().value().since.has_value(); }

  FakePower power_;
  NoListener listener_;
  FakePowerGate gate_{power_, listener_};
  PowerSupply supply_;
  ManualClock clock_{at(18)};
  ManualMonotonicClock uptime_;
  ManualExecutor main_;
  ManualExecutor acting_;
  ManualAlarm alarm_;
  std::unique_ptr<AwakeKeeper> keeper_;
};

TEST_F(AwakeKeeperTest, nobodyWantsIt_nothingIsHeldAndNothingTicks) {
  EXPECT_THAT(power_.holds, IsEmpty());
  EXPECT_EQ(alarm_.after(), std::nullopt);
}

TEST_F(AwakeKeeperTest, wanted_isHeldWithItsReason) {
  want("Uploads to iCloud are pending");
  EXPECT_THAT(power_.holds, ElementsAre("Uploads to iCloud are pending"));
  EXPECT_EQ(keeper_->standing().value().since, at(18));
}

TEST_F(AwakeKeeperTest, notWantedAnyMore_isLetGo) {
  want();
  want(std::nullopt);
  EXPECT_THAT(power_.holds, IsEmpty());
  EXPECT_FALSE(isHeld());
  EXPECT_EQ(alarm_.after(), std::nullopt);
}

TEST_F(AwakeKeeperTest, anotherReason_isTheSameHold) {
  want("One");
  want("Two");
  EXPECT_EQ(power_.holdCount, 1);
  EXPECT_THAT(power_.holds, ElementsAre("One"));
}

TEST_F(AwakeKeeperTest, notWantedBeforeTheSystemAnswers_holdsNothing) {
  keeper_->want("Uploads");
  acting_.runAll();
  main_.runAll();
  acting_.runAll();
  keeper_->want(std::nullopt);
  runAll();
  EXPECT_THAT(power_.holds, IsEmpty());
  EXPECT_FALSE(isHeld());
}

TEST_F(AwakeKeeperTest, batteryUnderItsFloor_letsGo) {
  supply_ = {false, 31};
  want();
  EXPECT_TRUE(isHeld());
  supply_.batteryPercent = 29;
  pass(15s);
  EXPECT_THAT(power_.holds, IsEmpty());
  EXPECT_EQ(obstacle(), AwakeObstacle::battery);
  EXPECT_EQ(keeper_->standing().value().reason, "The battery is below 30%.");
}

TEST_F(AwakeKeeperTest, batteryAtItsFloor_holds) {
  supply_ = {false, 30};
  want();
  EXPECT_TRUE(isHeld());
}

TEST_F(AwakeKeeperTest, mainsUnplugged_letsGoWhereTheBatteryIsLow) {
  supply_ = {true, 10};
  want();
  EXPECT_TRUE(isHeld());
  supply_.isOnMains = false;
  pass(15s);
  EXPECT_FALSE(isHeld());
  supply_.isOnMains = true;
  pass(15s);
  EXPECT_TRUE(isHeld());
}

TEST_F(AwakeKeeperTest, batteryThatTellsNothing_isNotDrawnOn) {
  supply_ = {false, std::nullopt};
  want();
  EXPECT_EQ(obstacle(), AwakeObstacle::battery);
}

TEST_F(AwakeKeeperTest, otherFloor_holdsFromThenOn) {
  supply_ = {false, 40};
  want();
  EXPECT_TRUE(isHeld());
  keeper_->setRules({50});
  runAll();
  EXPECT_FALSE(isHeld());
}

TEST_F(AwakeKeeperTest, eightHoursOnEnd_areEnough) {
  want();
  pass(8h - 1ns);
  EXPECT_TRUE(isHeld());
  pass(1ns);
  EXPECT_FALSE(isHeld());
  EXPECT_EQ(obstacle(), AwakeObstacle::tooLong);
  EXPECT_EQ(keeper_->standing().value().reason, "It was kept awake for 8 hours.");
  pass(1h);
  EXPECT_FALSE(isHeld());
}

TEST_F(AwakeKeeperTest, afterEightHours_anotherWishIsHeldAgain) {
  want();
  pass(8h);
  want(std::nullopt);
  want();
  EXPECT_TRUE(isHeld());
}

TEST_F(AwakeKeeperTest, refused_saysWhyAndAsksAgain) {
  power_.refusesToHold = "Not allowed.";
  want();
  EXPECT_EQ(obstacle(), AwakeObstacle::denied);
  EXPECT_EQ(keeper_->standing().value().reason, "Not allowed.");
  power_.refusesToHold = std::nullopt;
  pass(15s);
  EXPECT_TRUE(isHeld());
}

TEST_F(AwakeKeeperTest, quit_holdsNothing) {
  want();
  keeper_.reset();
  EXPECT_THAT(power_.holds, IsEmpty());
}

}  // namespace
}  // namespace cirrovane::test
