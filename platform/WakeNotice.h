#pragma once

#include "base/FileDescriptor.h"

namespace cirrovane {

/// Tells a loop that polls descriptors when the machine wakes, and costs nothing in between. Each system has its own
/// implementation; where there is none, sleep is only noticed at the next thing that happens.
class WakeNotice {
 public:
  WakeNotice();

  /// Can be read when there may be something to take; -1 where the system has no such descriptor.
  int descriptor() const { return descriptor_.get(); }
  /// Whether the machine has woken, or its clock was set, since it was last asked.
  bool take();

 private:
  void arm() const;

  FileDescriptor descriptor_;
};

}  // namespace cirrovane
