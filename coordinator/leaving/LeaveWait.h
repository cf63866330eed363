#pragma once

#include "base/Published.h"
#include "base/Shared.h"
#include "coordinator/LiveRules.h"
#include "coordinator/leaving/LeaveTable.h"
#include "coordinator/leaving/VouchedYes.h"
#include "coordinator/leaving/YesProof.h"
#include "core/CoverageReport.h"
#include "core/WatchFolder.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/Executor.h"
#include "platform/PowerGate.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What a wait to leave needs; outlives it and all work that it has under way.
struct LeaveEnvironment {
  Executor& main;
  /// An executor of its own, since a look takes its time.
  Executor& looking;
  /// An executor of its own, since the system's answer takes its time.
  Executor& acting;
  const MonotonicClock& monotonicClock;
  /// Rings when it is time to look at the coverage again.
  Alarm& lookAlarm;
  /// Rings when the time is up.
  Alarm& limitAlarm;
  std::shared_ptr<const CoverageKeeper> coverage;
  /// The verdict as it stands when this is called, and the folders that it is about.
  std::function<VerdictSight()> sight;
  std::function<std::vector<WatchFolder>()> folders;
  /// Has the machine leave, on the acting executor; a failure is the system's reason.
  std::function<std::optional<Failure>(PowerAct act)> perform;
};

/// What to wait for.
struct LeaveWish {
  /// What to do once it is safe; absent for nothing.
  std::optional<PowerAct> act;
  /// How long to wait; absent for ever.
  std::optional<std::chrono::nanoseconds> limit;

  friend bool operator==(const LeaveWish&, const LeaveWish&) = default;
};

/// A wait to leave as others see it.
struct LeaveStanding {
  LeaveState state = LeaveState::idle;
  LeaveWish wish = {};
  /// How the latest wait ended; absent while one goes on, and before the first.
  std::optional<LeaveOutcome> outcome = {};
  /// The system's reason; empty unless it refused.
  std::string refusal = {};
  /// For how many items the YES does not vouch, as the latest look of the wait found it.
  std::int64_t gaps = 0;

  bool isWaiting() const { return state != LeaveState::idle; }

  friend bool operator==(const LeaveStanding&, const LeaveStanding&) = default;
};

/// Waits for a verdict that one can leave by, and has the machine leave. Main thread only; it may be destroyed at any
/// time, and then nothing is done any more.
class LeaveWait {
 public:
  explicit LeaveWait(LeaveEnvironment environment);
  ~LeaveWait();

  LeaveWait(const LeaveWait&) = delete;
  LeaveWait& operator=(const LeaveWait&) = delete;

  const Published<LeaveStanding>& standing() const { return standing_; }
  /// What the latest look at the coverage found; absent before the first.
  const std::optional<Shared<CoverageReport>>& coverage() const { return vouched_.lastReport(); }

  /// Does nothing while a wait goes on.
  void begin(const LeaveWish& wish);
  void cancel();
  /// To be called whenever the verdict, its liveness or the watched folders may have changed.
  void look();
  /// To be called when the machine has woken.
  void slept();

 private:
  void take(LeaveEvent event);
  void showGaps(const std::optional<Shared<CoverageReport>>& report);
  void perform();
  void setLimit();
  bool isTimeUp() const;
  /// Whether the machine slept since the wait began, as its clocks tell.
  bool hasSlept() const;

  LeaveEnvironment environment_;
  Published<LeaveStanding> standing_;
  YesProof proof_;
  VouchedYes vouched_;
  Uptime began_{0};
  Uptime sleptBefore_{0};
  std::string refusal_;
  /// Goes with the wait, by which what is on its way can tell.
  std::shared_ptr<const int> wait_;
  bool isLooking_ = false;
};

}  // namespace cirrovane
