#pragma once

#include "coordinator/LiveRules.h"

#include <optional>

namespace cirrovane {

/// When a verdict that turned between two cycles starts one, so that it is recorded and told: not one that turns back
/// at once, and never beside a cycle.
class TurnedVerdict {
 public:
  /// The verdict that is shown from now on.
  void show(bool isSafe, Uptime now);
  void cycleBegan(Uptime now);
  /// The verdict that the cycle recorded.
  void cycleEnded(bool isSafe, Uptime now);

  /// When a cycle is to be started; absent while there is no reason to.
  std::optional<Uptime> due() const;

 private:
  void compare(Uptime now);

  bool isCycling_ = false;
  std::optional<Uptime> cycleBegan_;
  std::optional<bool> recorded_;
  std::optional<bool> shown_;
  std::optional<Uptime> turnedAt_;
};

}  // namespace cirrovane
