#pragma once

#include "platform/Time.h"

namespace cirrovane {

/// The current time. Callable on any thread.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Time now() const = 0;
};

/// The clock of the machine.
class SystemClock final : public Clock {
 public:
  Time now() const override {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
  }
};

}  // namespace cirrovane
