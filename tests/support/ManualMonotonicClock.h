#pragma once

#include "platform/Clock.h"

#include <atomic>
#include <chrono>

namespace cirrovane::test {

/// An uptime that stands still until a test moves it. Readable on any thread.
class ManualMonotonicClock final : public MonotonicClock {
 public:
  std::chrono::nanoseconds sinceBoot() const override { return awake_.load() + slept_.load(); }
  std::chrono::nanoseconds awakeSinceBoot() const override { return awake_; }

  void advance(std::chrono::nanoseconds by) { awake_ = awake_.load() + by; }
  /// The machine sleeps for that long.
  void sleep(std::chrono::nanoseconds by) { slept_ = slept_.load() + by; }

 private:
  std::atomic<std::chrono::nanoseconds> awake_{std::chrono::hours(5)};
  std::atomic<std::chrono::nanoseconds> slept_{std::chrono::hours(2)};
};

}  // namespace cirrovane::test
