#include "platform/WakeNotice.h"

namespace cirrovane {

// The watch of folders tells of waking itself.
WakeNotice::WakeNotice() = default;

bool WakeNotice::take() {
  return false;
}

}  // namespace cirrovane
