#pragma once

#include "platform/Executor.h"

#include <functional>
#include <memory>
#include <vector>

namespace cirrovane {

/// One step of work and the executor that it is done on.
struct Stage {
  Executor& executor;
  std::function<void()> work;
};

/// Runs the stages one after another, each on its own executor and each only once the one before it is over. What is
/// left of them is dropped as soon as `owner` is gone; a stage that runs at that moment goes on to its end.
void runStages(std::vector<Stage> stages, std::weak_ptr<const void> owner);

}  // namespace cirrovane
