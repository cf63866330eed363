#include "coordinator/StageSequence.h"

#include <cstddef>
#include <utility>

namespace cirrovane {
namespace {

struct Sequence {
  std::vector<Stage> stages;
  std::weak_ptr<const void> owner;
};

void runFrom(const std::shared_ptr<Sequence>& sequence, std::size_t index) {
  if (index == sequence->stages.size()) {
    return;
  }
  sequence->stages[index].executor.post([sequence, index] {
    if (sequence->owner.expired()) {
      return;
    }
    sequence->stages[index].work();
    // What a stage holds is released where it ran, and not wherever the last one ends.
    sequence->stages[index].work = nullptr;
    runFrom(sequence, index + 1);
  });
}

}  // namespace

void runStages(std::vector<Stage> stages, std::weak_ptr<const void> owner) {
  runFrom(std::make_shared<Sequence>(Sequence{std::move(stages), std::move(owner)}), 0);
}

}  // namespace cirrovane
