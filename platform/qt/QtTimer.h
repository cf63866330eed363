#pragma once

#include "platform/Alarm.h"
#include "platform/Timer.h"

#include <QTimer>

namespace cirrovane {

/// A timer on the event loop, to be made when there is an application object. A tick wakes the process once.
class QtTimer final : public Timer {
 public:
  QtTimer();

  QtTimer(const QtTimer&) = delete;
  QtTimer& operator=(const QtTimer&) = delete;

  void start(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void stop() override;

 private:
  QTimer timer_;
  std::function<void()> tick_;
};

/// An alarm on the event loop, to be made when there is an application object. It wakes the process once.
class QtAlarm final : public Alarm {
 public:
  QtAlarm();

  QtAlarm(const QtAlarm&) = delete;
  QtAlarm& operator=(const QtAlarm&) = delete;

  void set(std::chrono::nanoseconds after, std::function<void()> ring) override;
  void clear() override;

  /// To be called when the machine wakes, since the timer stands still while it sleeps: rings, if the alarm is set.
  void ring();

 private:
  QTimer timer_;
  std::function<void()> ring_;
};

}  // namespace cirrovane
