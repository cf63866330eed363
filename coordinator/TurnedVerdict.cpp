#include "coordinator/TurnedVerdict.h"

namespace cirrovane {

void TurnedVerdict::show(bool isSafe, Uptime now) {
  shown_ = isSafe;
  compare(now);
}

void TurnedVerdict::cycleBegan(Uptime now) {
  isCycling_ = true;
  cycleBegan_ = now;
}

void TurnedVerdict::cycleEnded(bool isSafe, Uptime now) {
  isCycling_ = false;
  recorded_ = isSafe;
  compare(now);
}

std::optional<Uptime> TurnedVerdict::due() const {
  if (isCycling_ || !turnedAt_) {
    return std::nullopt;
  }
  return turnedCycleDue(*turnedAt_, cycleBegan_);
}

void TurnedVerdict::compare(Uptime now) {
  if (!recorded_ || !shown_ || *recorded_ == *shown_) {
    turnedAt_.reset();
  } else if (!turnedAt_) {
    turnedAt_ = now;
  }
}

}  // namespace cirrovane
