#pragma once

#include "platform/WakeNotice.h"

#include <QSocketNotifier>
#include <functional>

namespace cirrovane {

/// Calls a function on the main thread when the machine wakes from sleep, and also when its clock is set. To be made
/// when there is an application object; wakes the process at no other time.
class WakeTimer {
 public:
  explicit WakeTimer(std::function<void()> woke);
  ~WakeTimer();

  WakeTimer(const WakeTimer&) = delete;
  WakeTimer& operator=(const WakeTimer&) = delete;

 private:
  WakeNotice notice_;
  QSocketNotifier notifier_;
};

}  // namespace cirrovane
