#include "tests/platform_qt/EventLoop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>

namespace cirrovane::test {

bool handleEventsUntil(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(std::chrono::seconds(60));
  // Wakes the loop for conditions that other threads and processes make true.
  QTimer waker;
  waker.start(std::chrono::milliseconds(5));
  while (!condition()) {
    if (deadline.hasExpired()) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

void handleEvents() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents();
}

}  // namespace cirrovane::test
