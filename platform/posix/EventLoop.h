#pragma once

#include "base/FileDescriptor.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/Executor.h"

#include <array>
#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace cirrovane {

/// The main thread of a program without windows: runs what other threads post and rings its alarms, and sleeps in
/// between without a tick. But for `post` and `quit`, its members are called on the thread that runs it.
class EventLoop final : public Executor {
 public:
  /// Throws where the system gives no pipe.
  explicit EventLoop(const MonotonicClock& clock);
  ~EventLoop() override;

  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  void post(std::function<void()> task) override;

  /// Runs until `quit`; what is posted after that is dropped.
  void run();
  /// Callable on any thread, and by a signal's handler.
  void quit();

  /// Calls the function whenever the descriptor can be read, or its other end is closed, for as long as it is open.
  void watchDescriptor(int descriptor, std::function<void()> told);
  /// Calls the function once when nobody reads the descriptor's other end any more.
  void watchForClosing(int descriptor, std::function<void()> closed);

  /// An alarm on this loop; goes before it does.
  std::unique_ptr<Alarm> makeAlarm();
  /// To be called when the machine wakes: rings every alarm that is set.
  void ringAlarms();

 private:
  class LoopAlarm;

  struct Watched {
    int descriptor;
    short events;
    bool isOnce;
    std::function<void()> told;
  };

  void wait();
  void runPosted();
  void ringDue();
  /// Milliseconds until the next alarm; -1 where none is set.
  int timeout() const;

  const MonotonicClock& clock_;
  /// A pipe: its end to read from, and the one to write to.
  std::array<FileDescriptor, 2> wakeUp_;
  mutable std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
  std::atomic<bool> isQuitting_ = false;
  std::vector<Watched> watched_;
  std::vector<LoopAlarm*> alarms_;
};

/// Has the loop quit on SIGINT and SIGTERM while this lives. One at a time in a process.
class QuitOnSignals {
 public:
  explicit QuitOnSignals(EventLoop& loop);
  ~QuitOnSignals();

  QuitOnSignals(const QuitOnSignals&) = delete;
  QuitOnSignals& operator=(const QuitOnSignals&) = delete;
};

}  // namespace cirrovane
