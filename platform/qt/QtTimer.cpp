#include "platform/qt/QtTimer.h"

#include <utility>

namespace cirrovane {

QtTimer::QtTimer() {
  // A long coarse timer moves to whole seconds; a precise one wakes the process no more often.
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
    // A copy, because a tick may stop or restart the timer, and so replace the tick that runs.
    const auto tick = tick_;
    tick();
  });
}

void QtTimer::start(std::chrono::milliseconds interval, std::function<void()> tick) {
  tick_ = std::move(tick);
  timer_.start(interval);
}

void QtTimer::stop() {
  timer_.stop();
  tick_ = nullptr;
}

QtAlarm::QtAlarm() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { ring(); });
}

void QtAlarm::set(std::chrono::nanoseconds after, std::function<void()> ring) {
  ring_ = std::move(ring);
  timer_.start(std::chrono::ceil<std::chrono::milliseconds>(after));
}

void QtAlarm::clear() {
  timer_.stop();
  ring_ = nullptr;
}

void QtAlarm::ring() {
  timer_.stop();
  if (const auto ring = std::exchange(ring_, nullptr)) {
    ring();
  }
}

}  // namespace cirrovane
