#include "platform/Clock.h"

#include <chrono>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(SystemMonotonicClock, readings_goOn) {
  const SystemMonotonicClock clock;
  const std::chrono::nanoseconds awake = clock.awakeSinceBoot();
  const std::chrono::nanoseconds first = clock.sinceBoot();
  while (clock.sinceBoot() == first) {
  }
  EXPECT_GT(clock.sinceBoot(), first);
  while (clock.awakeSinceBoot() == awake) {
  }
  EXPECT_GT(clock.awakeSinceBoot(), awake);
}

}  // namespace
}  // namespace cirrovane::test
