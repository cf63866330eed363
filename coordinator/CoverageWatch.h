#pragma once

#include "base/Published.h"
#include "base/Shared.h"
#include "coordinator/CoverageKeeper.h"
#include "coordinator/LiveRules.h"
#include "core/CoverageReport.h"
#include "core/WatchFolder.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/Executor.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace cirrovane {

/// What a coverage watch needs; outlives it and all work that it has under way.
struct CoverageEnvironment {
  Executor& main;
  /// An executor of its own: a look takes its time.
  Executor& looking;
  const MonotonicClock& monotonicClock;
  /// Rings when it is time to look again. nullptr where looks are asked for alone.
  Alarm* alarm = nullptr;
};

/// Looks at the coverage of the watched folders from time to time and on demand, and publishes what it last found. Main
/// thread only; it may be destroyed at any time, and stops the look under way.
class CoverageWatch {
 public:
  /// Looks follow each other no faster unless they are asked for, and no faster than this many times their duration.
  static constexpr std::chrono::minutes kBetweenLooks{10};
  static constexpr int kRestPerLook = 50;
  /// The same where somebody waits for the coverage alone.
  static constexpr std::chrono::seconds kBetweenWaitingLooks{10};

  using TakeReport = std::function<void(const Shared<CoverageReport>& report)>;

  CoverageWatch(std::shared_ptr<const CoverageKeeper> keeper, const CoverageEnvironment& environment)
      : keeper_(std::move(keeper)), environment_(environment) {}
  ~CoverageWatch();

  CoverageWatch(const CoverageWatch&) = delete;
  CoverageWatch& operator=(const CoverageWatch&) = delete;

  /// The latest report over the folders that are followed; absent before the first.
  const Published<std::optional<Shared<CoverageReport>>>& report() const { return report_; }

  /// Whether a look is under way.
  const Published<bool>& isLooking() const { return isLooking_; }

  /// Follows these folders from now on: a look at others stops at once. With an alarm, it looks now and from time to
  /// time.
  void follow(std::vector<WatchFolder> folders);
  /// Looks as soon as it can, and hands on what a look finds that began after this call. Nothing is handed on when
  /// other folders are followed meanwhile.
  void look(TakeReport then = nullptr);

  /// When somebody who waits for the coverage alone may look again, after the latest look ended; zero before the first.
  Uptime waitingLookDue() const;

 private:
  void begin();
  void finish(const std::optional<CoverageLook>& look, Uptime began);
  void setAlarm();

  std::shared_ptr<const CoverageKeeper> keeper_;
  CoverageEnvironment environment_;
  std::vector<WatchFolder> folders_;
  Published<std::optional<Shared<CoverageReport>>> report_;
  Published<bool> isLooking_;
  /// Of the look under way; absent between two.
  std::optional<CoverageStop> stop_;
  std::vector<TakeReport> takers_;
  std::vector<TakeReport> nextTakers_;
  bool wantsLook_ = false;
  std::optional<Uptime> lastEnd_;
  Uptime lastDuration_{0};
  /// Gone with this object, by which a look on its way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
