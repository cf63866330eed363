#pragma once

#include "platform/Executor.h"

#include <memory>

namespace cirrovane {

/// Runs tasks on a thread of its own. Its end waits for nothing: tasks that have not begun are dropped, and one that
/// runs, perhaps for ever, is left to itself with the thread. Such a task must own what it uses; a process that ends
/// while it runs leaves by `std::_Exit`, since it would otherwise take down what the task still uses.
class ThreadExecutor final : public Executor {
 public:
  ThreadExecutor();
  ~ThreadExecutor() override;

  ThreadExecutor(const ThreadExecutor&) = delete;
  ThreadExecutor& operator=(const ThreadExecutor&) = delete;

  void post(std::function<void()> task) override;

  /// Whether a task runs or waits. Callable on any thread.
  bool isBusy() const;

 private:
  class Queue;

  std::shared_ptr<Queue> queue_;
};

}  // namespace cirrovane
