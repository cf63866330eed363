#include "platform/qt/WakeTimer.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace cirrovane {

WakeTimer::WakeTimer(std::function<void()> woke)
    : woke_(std::move(woke)),
      timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      notifier_(QSocketNotifier::Read) {
  if (timer_ < 0) {
    return;
  }
  arm();
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
    std::array<std::byte, sizeof(std::uint64_t)> expirations{};
    const bool hasJumped = read(timer_, expirations.data(), expirations.size()) < 0 && errno == ECANCELED;
    arm();
    if (hasJumped) {
      woke_();
    }
  });
  notifier_.setSocket(timer_);
  notifier_.setEnabled(true);
}

WakeTimer::~WakeTimer() {
  notifier_.setEnabled(false);
  if (timer_ >= 0) {
    close(timer_);
  }
}

/// The time of day that it waits for never comes, but the kernel cancels it when that clock jumps.
void WakeTimer::arm() const {
  itimerspec never{};
  never.it_value.tv_sec = std::numeric_limits<std::int32_t>::max();
  timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

}  // namespace cirrovane
