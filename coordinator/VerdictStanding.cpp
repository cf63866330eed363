#include "coordinator/VerdictStanding.h"

#include <algorithm>

namespace cirrovane {

Confirmation confirmationNow(const Clock& clock, const MonotonicClock& monotonicClock) {
  return {clock.now(), monotonicClock.sinceBoot(), monotonicClock.awakeSinceBoot()};
}

VerdictStanding standingOf(const std::optional<Confirmation>& confirmation, const MonotonicClock& monotonicClock) {
  if (!confirmation) {
    return VerdictStanding::unknown;
  }
  const std::chrono::nanoseconds passed = monotonicClock.sinceBoot() - confirmation->sinceBoot;
  const std::chrono::nanoseconds awake = monotonicClock.awakeSinceBoot() - confirmation->awake;
  if (passed - awake >= kShortestSleep) {
    return VerdictStanding::slept;
  }
  return passed > kStaleAfter ? VerdictStanding::expired : VerdictStanding::confirmed;
}

std::chrono::nanoseconds timeUntilStale(const Confirmation& confirmation, const MonotonicClock& monotonicClock) {
  const std::chrono::nanoseconds passed = monotonicClock.sinceBoot() - confirmation.sinceBoot;
  return std::max(std::chrono::nanoseconds(kStaleAfter) - passed, std::chrono::nanoseconds(0));
}

std::optional<HealthState> ShownVerdict::sign() const {
  if (!isKnown()) {
    return std::nullopt;
  }
  const bool isSafe = safeToClose && !isStale();
  return status == HealthState::safe && !isSafe ? HealthState::warning : status;
}

ShownVerdict shownVerdict(const SyncHealthReport& report, const std::optional<Confirmation>& confirmation,
                          const MonotonicClock& monotonicClock) {
  ShownVerdict shown;
  shown.standing = standingOf(confirmation, monotonicClock);
  shown.safeToClose = report.safeToClose;
  shown.status = report.status;
  if (confirmation) {
    shown.confirmedAt = confirmation->at;
  }
  return shown;
}

}  // namespace cirrovane
