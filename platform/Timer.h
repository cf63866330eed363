#pragma once

#include <chrono>
#include <functional>

namespace cirrovane {

/// A repeating timer. Main thread only, where it also ticks.
class Timer {
 public:
  virtual ~Timer() = default;
  /// Ticks after each interval from now on, in place of whatever it did before.
  virtual void start(std::chrono::milliseconds interval, std::function<void()> tick) = 0;
  virtual void stop() = 0;
};

}  // namespace cirrovane
