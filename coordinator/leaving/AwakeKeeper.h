#pragma once

#include "base/Published.h"
#include "base/Time.h"
#include "coordinator/LiveRules.h"
#include "diagnostics/PowerReading.h"
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
#include <string_view>

namespace cirrovane {

/// When the machine may be kept awake at all.
struct AwakeRules {
  static constexpr std::chrono::hours kLongest{8};
  static constexpr int kUsualLeastPercent = 30;

  /// On battery power, no lock is held below this charge.
  int leastBatteryPercent = kUsualLeastPercent;

  friend bool operator==(const AwakeRules&, const AwakeRules&) = default;
};

/// What the system tells whoever asks, while a wait to leave keeps the machine awake.
inline constexpr std::string_view kReasonToWaitAwake = "Waiting until it is safe to leave";

/// Why the machine is not kept awake though somebody wants it to be.
enum class AwakeObstacle : std::uint8_t { none, battery, tooLong, denied };

/// Whether the machine is kept awake.
struct AwakeStanding {
  /// Since when it is; absent while it is not.
  std::optional<Time> since;
  AwakeObstacle obstacle = AwakeObstacle::none;
  /// In a sentence for people; empty without an obstacle.
  std::string reason;

  friend bool operator==(const AwakeStanding&, const AwakeStanding&) = default;
};

/// What stands against keeping the machine awake, `held` being how long it has been without a break.
AwakeObstacle obstacleTo(const PowerSupply& supply, Uptime held, const AwakeRules& rules);

/// What an awake keeper needs; outlives it and all work that it has under way.
struct AwakeEnvironment {
  Executor& main;
  /// An executor of its own, since the system's answer takes its time.
  Executor& acting;
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  /// Rings when the machine's power is to be looked at again.
  Alarm& alarm;
  /// Both are called on the acting executor.
  std::function<PowerSupply()> supply;
  std::function<Result<std::unique_ptr<PowerHold>>(const std::string& reason)> hold;
};

/// Keeps the machine awake while somebody wants it to be, and its power and the rules allow it. Main thread only; it
/// may be destroyed at any time, and then it holds nothing.
class AwakeKeeper {
 public:
  /// The machine's power is looked at this often, so that a lock goes soon after the mains.
  static constexpr std::chrono::seconds kBetweenLooks{15};

  explicit AwakeKeeper(AwakeEnvironment environment);
  ~AwakeKeeper();

  AwakeKeeper(const AwakeKeeper&) = delete;
  AwakeKeeper& operator=(const AwakeKeeper&) = delete;

  const Published<AwakeStanding>& standing() const { return standing_; }

  /// Absent when nobody wants it any more; else what the system tells whoever asks.
  void want(std::optional<std::string> reason);
  void setRules(const AwakeRules& rules);

 private:
  /// A hold that goes on the acting executor, since that may take its time too.
  void letGo();
  void lookAtPower();
  void take(const PowerSupply& supply);
  void hold();
  void takeHold(Result<std::unique_ptr<PowerHold>> held);
  void show(AwakeStanding standing);

  AwakeEnvironment environment_;
  AwakeRules rules_;
  Published<AwakeStanding> standing_;
  std::optional<std::string> reason_;
  std::shared_ptr<PowerHold> hold_;
  Time heldSince_;
  Uptime holdBegan_{0};
  /// Whether it was held too long, after which only another wish holds it again.
  bool isUsedUp_ = false;
  bool isAsking_ = false;
  /// Goes with the wish, by which an answer on its way can tell.
  std::shared_ptr<const int> wish_;
};

}  // namespace cirrovane
