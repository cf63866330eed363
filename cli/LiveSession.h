#pragma once

#include "cli/Command.h"
#include "cli/ProgressLine.h"
#include "coordinator/LiveVerdict.h"
#include "coordinator/leaving/VouchedYes.h"
#include "core/ScanProgress.h"
#include "platform/WakeNotice.h"
#include "platform/posix/EventLoop.h"
#include "platform/posix/ThreadExecutor.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The live verdict of one command that waits at a terminal: over the folders it was given, or over the watchlist,
/// whose changes it follows.
class LiveSession {
 public:
  /// `folders` as arguments; none for the watchlist.
  LiveSession(CommandContext& context, const std::vector<std::string>& folders, LivePace pace);
  ~LiveSession();

  LiveSession(const LiveSession&) = delete;
  LiveSession& operator=(const LiveSession&) = delete;

  const LiveVerdict& verdict() const { return verdict_; }
  Machine& machine() const { return context_.machine; }
  /// What it runs on.
  EventLoop& loop() { return loop_; }
  /// For looks at the coverage, which nothing else waits for.
  Executor& looks() { return looks_; }
  /// What looks at the coverage beside the verdict, and has `look` called at what it finds. One at a time.
  std::unique_ptr<VouchedYes> waitForCoverage();
  bool isTimeUp() const { return isTimeUp_; }

  /// Also ends when a signal asks for it.
  void endOnSignals();
  /// Also ends when nobody reads the answer any more.
  void endOnClosedOutput();
  /// Has `look` called once all that changes at one stroke has changed.
  void lookSoon();
  /// Runs until `look`, which is called after every change and when the time is up, says that it is over.
  void run(std::optional<std::chrono::nanoseconds> timeout, std::function<bool()> look);
  /// Has `run` look again and again too, for what changes by time alone.
  void lookEvery(std::chrono::nanoseconds interval);

  /// Ends the process with the status if work is under way that would hold up its end.
  void leave(ExitStatus status) const;
  /// Ends it whatever is under way.
  [[noreturn]] void endAtOnce(ExitStatus status) const;

 private:
  class WatchlistFollower;

  std::vector<WatchFolder> currentFolders() const;
  /// An alarm may ring before its time.
  void awaitEnd(std::chrono::nanoseconds end);
  void look();

  CommandContext& context_;
  std::vector<WatchFolder> given_;
  ScanProgress progress_;
  std::optional<ProgressLine> progressLine_;
  EventLoop loop_;
  std::optional<QuitOnSignals> quits_;
  ThreadExecutor scan_;
  ThreadExecutor updates_;
  ThreadExecutor looks_;
  std::unique_ptr<Alarm> alarm_;
  std::unique_ptr<Alarm> timeout_;
  std::unique_ptr<Alarm> tick_;
  std::unique_ptr<Alarm> nextLook_;
  WakeNotice wakeNotice_;
  LiveVerdict verdict_;
  std::unique_ptr<WatchlistFollower> follower_;
  std::vector<Subscription> subscriptions_;
  std::function<bool()> look_;
  bool isLookPosted_ = false;
  bool isTimeUp_ = false;
};

}  // namespace cirrovane
