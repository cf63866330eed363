#pragma once

#include <QAnimationDriver>
#include <QCoreApplication>

namespace cirrovane::test {

/// Frames that come when the test says so, in place of those of a window.
class ManualFrames : public QAnimationDriver {
 public:
  ManualFrames() { install(); }
  ~ManualFrames() override { uninstall(); }

  qint64 elapsed() const override { return now_; }

  void pass(int milliseconds) {
    // What has just been started waits for the event loop.
    QCoreApplication::processEvents();
    now_ += milliseconds;
    advanceAnimation();
  }

 private:
  qint64 now_ = 0;
};

}  // namespace cirrovane::test
