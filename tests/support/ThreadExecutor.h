#pragma once

#include "platform/Executor.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace cirrovane::test {

/// One thread of its own and a queue. When it ends, it waits for the task that runs and drops the others.
class ThreadExecutor final : public Executor {
 public:
  ThreadExecutor() = default;
  ~ThreadExecutor() override {
    {
      const std::lock_guard lock(mutex_);
      isEnding_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }

  ThreadExecutor(const ThreadExecutor&) = delete;
  ThreadExecutor& operator=(const ThreadExecutor&) = delete;

  void post(std::function<void()> task) override {
    // Told under the lock, so that whoever has seen the task run may end the executor.
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    changed_.notify_all();
  }

  /// Runs the task on the thread after all that was posted before, and waits for its end.
  void runAndWait(const std::function<void()>& task = [] {}) {
    const auto done = std::make_shared<std::promise<void>>();
    post([&task, done] {
      task();
      done->set_value();
    });
    done->get_future().wait();
  }

 private:
  void run() {
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock, [&] { return isEnding_ || !tasks_.empty(); });
      if (isEnding_) {
        return;
      }
      std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
      task = nullptr;
      lock.lock();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  bool isEnding_ = false;
  /// Last, so that it starts when everything else is there.
  std::thread thread_{[this] { run(); }};
};

}  // namespace cirrovane::test
