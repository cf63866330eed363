#pragma once

#include "platform/Executor.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace cirrovane::test {

/// Keeps its tasks until the test runs them, on the test's own thread. Other threads may post too.
class ManualExecutor final : public Executor {
 public:
  void post(std::function<void()> task) override {
    // Told under the lock, so that whoever has seen the task may end the executor.
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    posted_.notify_all();
  }

  /// Tasks that wait to be run.
  std::size_t size() const {
    const std::lock_guard lock(mutex_);
    return tasks_.size();
  }

  /// Runs the oldest task; false when there is none.
  bool runOne() {
    std::function<void()> task;
    {
      const std::lock_guard lock(mutex_);
      if (tasks_.empty()) {
        return false;
      }
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
    return true;
  }

  /// Runs tasks, and those that they post, until none is left.
  void runAll() {
    while (runOne()) {
    }
  }

  /// Drops all tasks, as an executor does that ends before they had their turn.
  void dropAll() {
    std::deque<std::function<void()>> dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(tasks_);
  }

  /// Returns when there is a task, which another thread has yet to post.
  void waitForTask() {
    std::unique_lock lock(mutex_);
    posted_.wait(lock, [&] { return !tasks_.empty(); });
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> tasks_;
};

}  // namespace cirrovane::test
