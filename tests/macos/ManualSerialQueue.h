#pragma once

#include "platform/macos/plain/EventStream.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <utility>

namespace cirrovane::test {

/// A queue whose time the test moves on.
class ManualSerialQueue final : public SerialQueue {
 public:
  void post(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
  void postAfter(std::chrono::seconds delay, std::function<void()> task) override {
    later_.emplace(now_ + delay, std::move(task));
  }
  void runAndWait(std::function<void()> task) override {
    run();
    task();
  }

  void run() {
    while (!tasks_.empty()) {
      const auto task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
  }
  void advance(std::chrono::seconds time) {
    const std::chrono::seconds end = now_ + time;
    run();
    while (!later_.empty() && later_.begin()->first <= end) {
      now_ = later_.begin()->first;
      const auto task = std::move(later_.begin()->second);
      later_.erase(later_.begin());
      task();
      run();
    }
    now_ = end;
  }

 private:
  std::chrono::seconds now_{0};
  std::deque<std::function<void()>> tasks_;
  std::multimap<std::chrono::seconds, std::function<void()>> later_;
};

}  // namespace cirrovane::test
