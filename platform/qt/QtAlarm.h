#pragma once

#include "platform/Alarm.h"

#include <QTimer>

namespace cirrovane {

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
