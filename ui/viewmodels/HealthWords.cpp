#include "ui/viewmodels/HealthWords.h"

namespace cirrovane {

HealthWords healthWords(HealthState state) {
  switch (state) {
    case HealthState::safe:
      return {"Green Safe", "checkmark.seal.fill"};
    case HealthState::warning:
      return {"Yellow Needs Attention", "exclamationmark.triangle.fill"};
    case HealthState::danger:
      break;
  }
  return {"Red Unsafe", "xmark.octagon.fill"};
}

}  // namespace cirrovane
