#include "platform/WakeNotice.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <sys/timerfd.h>
#include <unistd.h>

namespace cirrovane {

WakeNotice::WakeNotice() : descriptor_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
  arm();
}

bool WakeNotice::take() {
  std::array<std::byte, sizeof(std::uint64_t)> expirations{};
  const bool hasJumped = read(descriptor_.get(), expirations.data(), expirations.size()) < 0 && errno == ECANCELED;
  arm();
  return hasJumped;
}

/// The time of day that it waits for never comes, but the kernel cancels it when that clock jumps: when the machine
/// wakes, and when somebody sets the clock, which Linux tells in one breath.
void WakeNotice::arm() const {
  itimerspec never{};
  never.it_value.tv_sec = std::numeric_limits<std::int32_t>::max();
  timerfd_settime(descriptor_.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

}  // namespace cirrovane
