#pragma once

#include <functional>

namespace cirrovane {

/// Runs tasks one after another, in the order in which they were posted, each to its end.
class Executor {
 public:
  virtual ~Executor() = default;
  /// Callable on any thread. A task that the executor does not live to run is dropped.
  virtual void post(std::function<void()> task) = 0;
};

/// Runs each task at once, on the thread that posts it: for a program that has nothing else to do meanwhile.
class InlineExecutor final : public Executor {
 public:
  void post(std::function<void()> task) override { task(); }
};

}  // namespace cirrovane
