#include "platform/qt/QtAlarm.h"

#include <utility>

namespace cirrovane {

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
