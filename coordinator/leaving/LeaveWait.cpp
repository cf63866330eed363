#include "coordinator/leaving/LeaveWait.h"

#include <algorithm>
#include <utility>

namespace cirrovane {
namespace {

Uptime timeSlept(const MonotonicClock& clock) {
  return clock.sinceBoot() - clock.awakeSinceBoot();
}

LeaveEvent eventOf(YesTrust trust) {
  switch (trust) {
    case YesTrust::none:
      return LeaveEvent::no;
    case YesTrust::first:
      return LeaveEvent::firstYes;
    case YesTrust::full:
      break;
  }
  return LeaveEvent::yes;
}

}  // namespace

LeaveWait::LeaveWait(LeaveEnvironment environment)
    : environment_(std::move(environment)),
      vouched_(environment_.coverage,
               {environment_.main, environment_.looking, environment_.monotonicClock, environment_.lookAlarm},
               [this] { look(); }) {}

LeaveWait::~LeaveWait() {
  environment_.limitAlarm.clear();
}

void LeaveWait::begin(const LeaveWish& wish) {
  if (standing_.value().isWaiting()) {
    return;
  }
  proof_.forget();
  vouched_.forget();
  refusal_.clear();
  began_ = environment_.monotonicClock.sinceBoot();
  sleptBefore_ = timeSlept(environment_.monotonicClock);
  wait_ = std::make_shared<const int>();
  standing_.set({.wish = wish});
  take(LeaveEvent::asked);
  setLimit();
  // By a turn of its own, so that whoever asks has seen it begin before it can be over.
  environment_.main.post([this, wait = std::weak_ptr(wait_)] {
    if (!wait.expired()) {
      look();
    }
  });
}

void LeaveWait::cancel() {
  take(LeaveEvent::cancelled);
}

void LeaveWait::slept() {
  take(LeaveEvent::slept);
}

void LeaveWait::look() {
  const LeaveState state = standing_.value().state;
  if (state == LeaveState::idle || state == LeaveState::acting || isLooking_) {
    return;
  }
  isLooking_ = true;
  if (hasSlept()) {
    take(LeaveEvent::slept);
    isLooking_ = false;
    return;
  }
  const VerdictSight sight = environment_.sight();
  const YesTrust trust = proof_.take(sight);
  take(eventOf(trust));
  const bool isYes = trust == YesTrust::full;
  const bool isVouchedFor = vouched_.isVouchedFor(isYes, environment_.folders());
  if (vouched_.hasLooked()) {
    showGaps(vouched_.lastReport());
  }
  if (isVouchedFor) {
    take(LeaveEvent::complete);
  } else if (vouched_.hasLastingGaps()) {
    take(LeaveEvent::lastingGaps);
  }
  // An answer takes one scan and, of a YES, one look at the coverage, however short the time.
  const bool hasAnswer = sight.safeToClose && (!isYes || vouched_.hasLooked());
  if (hasAnswer && isTimeUp()) {
    take(LeaveEvent::timeUp);
  }
  isLooking_ = false;
}

void LeaveWait::take(LeaveEvent event) {
  const LeaveEdge* edge = leaveEdge(standing_.value().state, event);
  if (edge == nullptr) {
    return;
  }
  if (edge->to == LeaveState::idle) {
    wait_ = nullptr;
    vouched_.forget();
    environment_.limitAlarm.clear();
  }
  LeaveStanding next = standing_.value();
  next.state = edge->to;
  next.outcome = edge->outcome;
  next.refusal = edge->outcome == LeaveOutcome::refused ? refusal_ : "";
  standing_.set(std::move(next));
  if (edge->to == LeaveState::acting) {
    perform();
  }
}

void LeaveWait::showGaps(const std::optional<Shared<CoverageReport>>& report) {
  const std::int64_t gaps = report ? (*report)->gapCounts.all() : 0;
  if (gaps != standing_.value().gaps) {
    LeaveStanding next = standing_.value();
    next.gaps = gaps;
    standing_.set(std::move(next));
  }
}

void LeaveWait::perform() {
  const std::optional<PowerAct> act = standing_.value().wish.act;
  if (!act) {
    take(LeaveEvent::performed);
    return;
  }
  environment_.acting.post(
      [this, wait = std::weak_ptr(wait_), perform = environment_.perform, &main = environment_.main, act = *act] {
        std::optional<Failure> failure = perform(act);
        main.post([this, wait, failure = std::move(failure)] {
          if (!wait.expired()) {
            refusal_ = failure ? failure->message : "";
            take(failure ? LeaveEvent::refused : LeaveEvent::performed);
          }
        });
      });
}

void LeaveWait::setLimit() {
  const std::optional<std::chrono::nanoseconds> limit = standing_.value().wish.limit;
  if (!limit) {
    return;
  }
  const Uptime passed = environment_.monotonicClock.sinceBoot() - began_;
  environment_.limitAlarm.set(std::max(*limit - passed, Uptime(0)), [this] {
    look();
    // An alarm may ring before its time.
    if (standing_.value().isWaiting() && !isTimeUp()) {
      setLimit();
    }
  });
}

bool LeaveWait::isTimeUp() const {
  const std::optional<std::chrono::nanoseconds> limit = standing_.value().wish.limit;
  return limit && environment_.monotonicClock.sinceBoot() - began_ >= *limit;
}

bool LeaveWait::hasSlept() const {
  return timeSlept(environment_.monotonicClock) - sleptBefore_ >= kShortestSleep;
}

}  // namespace cirrovane
