#pragma once

#include "platform/Timer.h"

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// A timer that ticks when the test says so.
class ManualTimer final : public Timer {
 public:
  void start(std::chrono::milliseconds interval, std::function<void()> tick) override {
    starts_.push_back(interval);
    tick_ = std::move(tick);
  }
  void stop() override {
    ++stops_;
    tick_ = nullptr;
  }

  /// Ticks once; nothing happens while the timer is stopped.
  void tick() const {
    if (const std::function<void()> tick = tick_) {
      tick();
    }
  }
  /// What a tick calls; empty while the timer is stopped.
  std::function<void()> whatTicks() const { return tick_; }

  bool isRunning() const { return tick_ != nullptr; }
  /// The intervals that it was started with, in order.
  const std::vector<std::chrono::milliseconds>& starts() const { return starts_; }
  int stops() const { return stops_; }

 private:
  std::function<void()> tick_;
  std::vector<std::chrono::milliseconds> starts_;
  int stops_ = 0;
};

}  // namespace cirrovane::test
