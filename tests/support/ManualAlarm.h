#pragma once

#include "platform/Alarm.h"

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace cirrovane::test {

/// An alarm that rings when the test says so.
class ManualAlarm final : public Alarm {
 public:
  void set(std::chrono::nanoseconds after, std::function<void()> ring) override {
    after_ = after;
    ring_ = std::move(ring);
  }
  void clear() override {
    after_.reset();
    ring_ = nullptr;
  }

  /// Rings, if it is set.
  void ring() {
    after_.reset();
    if (const auto ring = std::exchange(ring_, nullptr)) {
      ring();
    }
  }
  /// What it is set to; absent while it is not set.
  std::optional<std::chrono::nanoseconds> after() const { return after_; }

 private:
  std::optional<std::chrono::nanoseconds> after_;
  std::function<void()> ring_;
};

}  // namespace cirrovane::test
