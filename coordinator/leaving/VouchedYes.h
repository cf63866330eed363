#pragma once

#include "base/Shared.h"
#include "coordinator/CoverageKeeper.h"
#include "coordinator/CoverageWatch.h"
#include "core/CoverageReport.h"
#include "core/WatchFolder.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/Executor.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace cirrovane {

/// What a wait for the coverage needs; outlives it and all work that it has under way.
struct VouchingEnvironment {
  Executor& main;
  /// An executor of its own: a look takes its time.
  Executor& looking;
  const MonotonicClock& monotonicClock;
  /// Rings when it is time to look again.
  Alarm& alarm;
};

/// The coverage for somebody who waits for a verdict that leaves nothing out: looked at each time that the verdict is a
/// YES, until it is complete. Main thread only; it may be destroyed at any time, and stops the look under way.
class VouchedYes {
 public:
  /// `found` is called whenever a look has ended.
  VouchedYes(std::shared_ptr<const CoverageKeeper> keeper, const VouchingEnvironment& environment,
             std::function<void()> found);
  ~VouchedYes();

  VouchedYes(const VouchedYes&) = delete;
  VouchedYes& operator=(const VouchedYes&) = delete;

  /// To be told of each verdict over these folders; whether it is a YES that the coverage, looked at after it, vouches
  /// for.
  bool isVouchedFor(bool safeToClose, const std::vector<WatchFolder>& folders);
  /// Whether a look has ended since the verdict became a YES.
  bool hasLooked() const { return report_.has_value(); }
  /// Whether the latest two looks since then found the same, and time alone changes nothing of it.
  bool hasLastingGaps() const { return isLasting_; }
  /// What the latest look found; absent before the first.
  const std::optional<Shared<CoverageReport>>& lastReport() const { return watch_.report().value(); }
  /// Ends the look under way, and waits for the next YES.
  void forget();

 private:
  void look();
  void take(const Shared<CoverageReport>& report);

  VouchingEnvironment environment_;
  std::function<void()> found_;
  CoverageWatch watch_;
  /// Of a look that began while the verdict was the YES that it still is.
  std::optional<Shared<CoverageReport>> report_;
  bool isLasting_ = false;
  std::vector<WatchFolder> folders_;
  /// Goes when the verdict is no YES any more, and with it what is found for it.
  std::shared_ptr<const int> yes_;
};

}  // namespace cirrovane
