#pragma once

#include "platform/Clock.h"

namespace cirrovane::test {

/// A clock that stands still until a test moves it.
class ManualClock final : public Clock {
 public:
  explicit ManualClock(Time now = Time(std::chrono::seconds(1'763'231'000))) : now_(now) {}

  Time now() const override { return now_; }
  void set(Time now) { now_ = now; }
  void advance(std::chrono::microseconds by) { now_ += by; }

 private:
  Time now_;
};

}  // namespace cirrovane::test
