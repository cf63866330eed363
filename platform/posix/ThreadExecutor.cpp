#include "platform/posix/ThreadExecutor.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace cirrovane {

/// What the executor and its thread share; it lives as long as either.
class ThreadExecutor::Queue {
 public:
  void post(std::function<void()> task) {
    {
      const std::lock_guard lock(mutex_);
      tasks_.push_back(std::move(task));
    }
    changed_.notify_one();
  }

  void close() {
    // What a task holds may post when it goes, so the tasks go after the lock.
    std::deque<std::function<void()>> dropped;
    {
      const std::lock_guard lock(mutex_);
      isClosed_ = true;
      dropped.swap(tasks_);
    }
    changed_.notify_one();
  }

  bool isBusy() const {
    const std::lock_guard lock(mutex_);
    return isRunning_ || !tasks_.empty();
  }

  /// Runs the tasks until the queue is closed.
  void run() {
    while (const auto task = take()) {
      task();
    }
  }

 private:
  /// Waits for a task; empty when the queue is closed. Calling it again says that the last one is done.
  std::function<void()> take() {
    std::unique_lock lock(mutex_);
    isRunning_ = false;
    changed_.wait(lock, [this] { return isClosed_ || !tasks_.empty(); });
    if (isClosed_) {
      return nullptr;
    }
    std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    isRunning_ = true;
    return task;
  }

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  bool isRunning_ = false;
  bool isClosed_ = false;
};

ThreadExecutor::ThreadExecutor() : queue_(std::make_shared<Queue>()) {
  std::thread([queue = queue_] { queue->run(); }).detach();
}

ThreadExecutor::~ThreadExecutor() {
  queue_->close();
}

void ThreadExecutor::post(std::function<void()> task) {
  queue_->post(std::move(task));
}

bool ThreadExecutor::isBusy() const {
  return queue_->isBusy();
}

}  // namespace cirrovane
