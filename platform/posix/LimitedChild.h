#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <sys/types.h>

namespace cirrovane {

/// Sleeps for so long, or until a signal.
void pauseFor(std::chrono::nanoseconds time);

/// How long to pause between two looks at something that may take long or end at once: a share of the time that it has
/// taken already, so that looking costs little and is never late by much.
class Pauses {
 public:
  explicit Pauses(std::chrono::nanoseconds began) : began_(began) {}

  std::chrono::nanoseconds next(std::chrono::nanoseconds now) const;

 private:
  std::chrono::nanoseconds began_;
};

/// A child process that leads a process group, which endLimitedCommands() can kill from the child's start to its end.
class LimitedChild {
 public:
  /// Starts the process in a group of its own; absent when that fails.
  using Start = std::function<std::optional<pid_t>()>;

  /// Starts nothing when the program is about to end, or too many such children are there.
  explicit LimitedChild(const Start& start);
  /// Kills the group if the child has not ended. What even that does not end at once is left for one of the next
  /// children to bury.
  ~LimitedChild();
  LimitedChild(const LimitedChild&) = delete;
  LimitedChild& operator=(const LimitedChild&) = delete;

  bool isStarted() const { return process_ > 0; }
  /// Whether the child has ended; never waits.
  bool hasEnded();
  /// Of a child that has ended; absent when a signal ended it, or somebody else took its status away.
  std::optional<int> exitStatus() const { return exitStatus_; }

 private:
  void bury();

  /// Where the process is noted for endLimitedCommands().
  std::atomic<pid_t>* place_ = nullptr;
  /// 0 when none was started.
  pid_t process_ = 0;
  bool hasEnded_ = false;
  std::optional<int> exitStatus_;
};

}  // namespace cirrovane
