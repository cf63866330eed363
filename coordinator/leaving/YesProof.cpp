#include "coordinator/leaving/YesProof.h"

namespace cirrovane {

VerdictSight sightOf(const LiveVerdict& verdict, const MonotonicClock& clock) {
  VerdictSight sight;
  sight.liveness = verdict.liveness().value().state;
  const std::optional<Shared<SyncHealthReport>>& report = verdict.report().value();
  if (!report) {
    return sight;
  }
  sight.safeToClose = (*report)->safeToClose;
  const std::optional<Confirmation> confirmation = verdict.confirmation();
  if (confirmation) {
    sight.confirmed = confirmation->sinceBoot;
  }
  sight.isStale = standingOf(confirmation, clock) != VerdictStanding::confirmed;
  return sight;
}

YesTrust YesProof::take(const VerdictSight& sight) {
  const bool isYes = sight.safeToClose.value_or(false) && sight.confirmed && !sight.isStale;
  if (!isYes || sight.liveness == LivenessState::catchingUp) {
    forget();
    return YesTrust::none;
  }
  if (!first_ || *sight.confirmed < *first_) {
    first_ = sight.confirmed;
  }
  const bool isSecond = *sight.confirmed - *first_ >= kBetweenTwo;
  return sight.liveness == LivenessState::live || isSecond ? YesTrust::full : YesTrust::first;
}

}  // namespace cirrovane
