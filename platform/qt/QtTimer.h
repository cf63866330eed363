#pragma once

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

}  // namespace cirrovane
