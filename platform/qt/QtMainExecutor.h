#pragma once

#include "platform/Executor.h"

#include <memory>

namespace cirrovane {

/// Runs tasks on the main thread's event loop. To be made on the main thread, when there is an application object; once
/// the application quits, or its object is gone, tasks are dropped. It may live longer than the application object.
///
/// A task that opens a panel lets the event loop run meanwhile, and with it the tasks behind it.
class QtMainExecutor final : public Executor {
 public:
  QtMainExecutor();
  ~QtMainExecutor() override;

  QtMainExecutor(const QtMainExecutor&) = delete;
  QtMainExecutor& operator=(const QtMainExecutor&) = delete;

  void post(std::function<void()> task) override;

 private:
  class Queue;
  class Receiver;

  std::shared_ptr<Queue> queue_;
};

}  // namespace cirrovane
