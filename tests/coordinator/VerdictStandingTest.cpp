#include "coordinator/VerdictStanding.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualMonotonicClock.h"

#include <chrono>
#include <optional>
#include <tuple>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;

class VerdictStandingTest : public testing::Test {
 protected:
  /// The verdict as it is shown after the machine was awake, then slept, then was awake again.
  ShownVerdict shownAfter(HealthState status, bool safeToClose, std::chrono::nanoseconds awake,
                          std::chrono::nanoseconds asleep = 0s, std::chrono::nanoseconds awakeAgain = 0s) {
    ManualMonotonicClock uptime;
    const Confirmation confirmation = confirmationNow(clock_, uptime);
    uptime.advance(awake);
    uptime.sleep(asleep);
    uptime.advance(awakeAgain);
    SyncHealthReport report;
    report.status = status;
    report.safeToClose = safeToClose;
    return shownVerdict(report, confirmation, uptime);
  }

  ManualClock clock_;
};

TEST_F(VerdictStandingTest, beforeTheFirstScan_isUnknownAndHasNoSign) {
  const ManualMonotonicClock uptime;
  const ShownVerdict shown = shownVerdict(SyncHealthReport::empty(), std::nullopt, uptime);
  EXPECT_EQ(shown.standing, VerdictStanding::unknown);
  EXPECT_FALSE(shown.isKnown());
  EXPECT_FALSE(shown.isStale());
  EXPECT_EQ(shown.sign(), std::nullopt);
  EXPECT_EQ(shown, ShownVerdict());
}

TEST_F(VerdictStandingTest, yesOfAwakeMachine_isGreenFor180SecondsAndThenStale) {
  for (const auto& [awake, sign, isStale] :
       {std::tuple{0ns, HealthState::safe, false}, std::tuple{180'000'000'000ns, HealthState::safe, false},
        std::tuple{180'000'000'001ns, HealthState::warning, true},
        std::tuple{86'400'000'000'000ns, HealthState::warning, true}}) {
    const ShownVerdict shown = shownAfter(HealthState::safe, true, awake);
    EXPECT_EQ(shown.sign(), sign) << awake.count();
    EXPECT_EQ(shown.isStale(), isStale) << awake.count();
    EXPECT_EQ(shown.confirmedAt, clock_.now());
  }
}

TEST_F(VerdictStandingTest, yesBeforeSleepOfAnyLength_isStaleOnWaking) {
  for (const std::chrono::seconds asleep : {1s, 10s, 179s, 3600s}) {
    const ShownVerdict shown = shownAfter(HealthState::safe, true, 5s, asleep);
    EXPECT_EQ(shown.standing, VerdictStanding::slept) << asleep.count();
    EXPECT_TRUE(shown.isStale()) << asleep.count();
    EXPECT_EQ(shown.sign(), HealthState::warning) << asleep.count();
  }
  EXPECT_EQ(shownAfter(HealthState::safe, true, 5s, 10s, 500s).standing, VerdictStanding::slept);
}

TEST_F(VerdictStandingTest, clocksReadOneAfterTheOther_areNoSleep) {
  EXPECT_EQ(shownAfter(HealthState::safe, true, 5s, 2ms).standing, VerdictStanding::confirmed);
}

TEST_F(VerdictStandingTest, no_isNeverStaleAndKeepsItsSign) {
  for (const std::chrono::seconds asleep : {0s, 3600s}) {
    for (const HealthState status : {HealthState::warning, HealthState::danger}) {
      const ShownVerdict shown = shownAfter(status, false, 300s, asleep);
      EXPECT_FALSE(shown.isStale());
      EXPECT_EQ(shown.sign(), status);
    }
  }
}

TEST_F(VerdictStandingTest, noWithASafeState_hasTheWarningSign) {
  EXPECT_EQ(shownAfter(HealthState::safe, false, 0s).sign(), HealthState::warning);
}

TEST_F(VerdictStandingTest, wallClockSet_changesNothing) {
  const ManualMonotonicClock uptime;
  const Confirmation confirmation = confirmationNow(clock_, uptime);
  clock_.advance(-std::chrono::hours(48));
  EXPECT_EQ(standingOf(confirmation, uptime), VerdictStanding::confirmed);
  clock_.advance(std::chrono::hours(96));
  EXPECT_EQ(standingOf(confirmation, uptime), VerdictStanding::confirmed);
}

TEST_F(VerdictStandingTest, timeUntilStale_runsOutAndStopsAtZero) {
  ManualMonotonicClock uptime;
  const Confirmation confirmation = confirmationNow(clock_, uptime);
  EXPECT_EQ(timeUntilStale(confirmation, uptime), 180s);
  uptime.advance(100s);
  EXPECT_EQ(timeUntilStale(confirmation, uptime), 80s);
  uptime.advance(100s);
  EXPECT_EQ(timeUntilStale(confirmation, uptime), 0s);
}

TEST(SystemMonotonicClockTest, runsForwardAndCountsNoLessWithSleep) {
  const SystemMonotonicClock clock;
  const auto before = clock.sinceBoot();
  const auto awake = clock.awakeSinceBoot();
  EXPECT_GT(awake.count(), 0);
  EXPECT_GE(clock.sinceBoot(), before);
  EXPECT_GE(clock.awakeSinceBoot(), awake);
  EXPECT_GE(clock.sinceBoot(), awake);
}

}  // namespace
}  // namespace cirrovane::test
