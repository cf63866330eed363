#pragma once

#include "base/Time.h"

namespace cirrovane {

/// The current time. Callable on any thread.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Time now() const = 0;
};

/// How long the machine has been up, which nobody can set. Callable on any thread.
class MonotonicClock {
 public:
  virtual ~MonotonicClock() = default;
  /// The time that it slept counted.
  virtual std::chrono::nanoseconds sinceBoot() const = 0;
  /// The time that it slept left out.
  virtual std::chrono::nanoseconds awakeSinceBoot() const = 0;
};

/// The clock of the machine.
class SystemClock final : public Clock {
 public:
  Time now() const override {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
  }
};

/// The uptime of the machine.
class SystemMonotonicClock final : public MonotonicClock {
 public:
  std::chrono::nanoseconds sinceBoot() const override;
  std::chrono::nanoseconds awakeSinceBoot() const override;
};

}  // namespace cirrovane
