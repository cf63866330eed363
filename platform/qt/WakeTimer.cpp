#include "platform/qt/WakeTimer.h"

#include <utility>

namespace cirrovane {

WakeTimer::WakeTimer(std::function<void()> woke) : notifier_(QSocketNotifier::Read) {
  if (notice_.descriptor() < 0) {
    return;
  }
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this, woke = std::move(woke)] {
    if (notice_.take()) {
      woke();
    }
  });
  notifier_.setSocket(notice_.descriptor());
  notifier_.setEnabled(true);
}

WakeTimer::~WakeTimer() {
  notifier_.setEnabled(false);
}

}  // namespace cirrovane
