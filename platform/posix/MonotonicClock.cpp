#include "platform/Clock.h"

#include <ctime>

namespace cirrovane {
namespace {

// A Mac's monotonic clock counts sleep, Linux' does not; each system has the other kind under a name of its own.
#ifdef __APPLE__
constexpr clockid_t kWithSleep = CLOCK_MONOTONIC;
constexpr clockid_t kAwake = CLOCK_UPTIME_RAW;
#else
constexpr clockid_t kWithSleep = CLOCK_BOOTTIME;
constexpr clockid_t kAwake = CLOCK_MONOTONIC;
#endif

std::chrono::nanoseconds timeOn(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

std::chrono::nanoseconds SystemMonotonicClock::sinceBoot() const {
  return timeOn(kWithSleep);
}

std::chrono::nanoseconds SystemMonotonicClock::awakeSinceBoot() const {
  return timeOn(kAwake);
}

}  // namespace cirrovane
