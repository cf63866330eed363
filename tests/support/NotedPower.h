#pragma once

#include "platform/PowerGate.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {

/// Keeps what a gate tells, as lines.
class NotedPower final : public PowerGateListener {
 public:
  void leaving(PowerAct act, std::chrono::milliseconds within) override {
    note("leaving: " + nameOf(act) + " within " + std::to_string(within.count()));
  }
  void stays(PowerAct act) override { note("stays: " + nameOf(act)); }
  void stands(std::optional<std::string> reasonAgainst) override {
    note(reasonAgainst ? "against: " + *reasonAgainst : "stands");
  }

  /// The next line; fails the test where none comes.
  std::string next() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, std::chrono::seconds(60), [this] { return !lines_.empty(); })) {
      ADD_FAILURE() << "nothing was told";
      return "";
    }
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
  }
  /// All lines that are there and were not asked for yet.
  std::deque<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  static std::string nameOf(PowerAct act) { return act == PowerAct::sleep ? "sleep" : "shutdown"; }
  void note(std::string line) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::string> lines_;
};

}  // namespace cirrovane::test
