#include "platform/qt/QtTimer.h"
#include "tests/platform_qt/EventLoop.h"

#include <memory>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""h;

TEST(QtTimer, start_ticksAgainAndAgain) {
  int ticks = 0;
  QtTimer timer;
  timer.start(1ms, [&ticks] { ++ticks; });
  EXPECT_EQ(ticks, 0);
  EXPECT_TRUE(handleEventsUntil([&ticks] { return ticks >= 3; }));
}

TEST(QtTimer, start_again_replacesIntervalAndTick) {
  int early = 0;
  int late = 0;
  QtTimer timer;
  timer.start(1h, [&early] { ++early; });
  timer.start(1ms, [&late] { ++late; });
  EXPECT_TRUE(handleEventsUntil([&late] { return late >= 2; }));
  EXPECT_EQ(early, 0);
}

TEST(QtTimer, stop_endsTicksAndReleasesWhatTheTickHeld) {
  int ticks = 0;
  int others = 0;
  const auto held = std::make_shared<int>(0);
  QtTimer timer;
  QtTimer other;
  timer.start(1ms, [&ticks, held] { ++ticks; });
  timer.stop();
  other.start(2ms, [&others] { ++others; });
  EXPECT_TRUE(handleEventsUntil([&others] { return others >= 3; }));
  EXPECT_EQ(ticks, 0);
  EXPECT_EQ(held.use_count(), 1);
}

TEST(QtTimer, tick_thatStopsTheTimer_isTheLast) {
  int ticks = 0;
  int others = 0;
  QtTimer timer;
  QtTimer other;
  timer.start(1ms, [&timer, &ticks, held = std::make_shared<int>(7)] {
    timer.stop();
    ticks += *held;
  });
  EXPECT_TRUE(handleEventsUntil([&ticks] { return ticks > 0; }));
  other.start(2ms, [&others] { ++others; });
  EXPECT_TRUE(handleEventsUntil([&others] { return others >= 3; }));
  EXPECT_EQ(ticks, 7);
}

TEST(QtTimer, tick_thatRestartsTheTimer_isReplaced) {
  int replaced = 0;
  QtTimer timer;
  timer.start(1ms, [&timer, &replaced, held = std::make_shared<int>(7)] {
    timer.start(1ms, [&replaced, step = *held] { replaced += step; });
  });
  EXPECT_TRUE(handleEventsUntil([&replaced] { return replaced >= 14; }));
}

TEST(QtTimer, end_withinATick_isHarmless) {
  bool hasTicked = false;
  auto timer = std::make_unique<QtTimer>();
  timer->start(1ms, [&timer, &hasTicked] {
    timer.reset();
    hasTicked = true;
  });
  EXPECT_TRUE(handleEventsUntil([&hasTicked] { return hasTicked; }));
}

}  // namespace
}  // namespace cirrovane::test
