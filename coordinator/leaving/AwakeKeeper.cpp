#include "coordinator/leaving/AwakeKeeper.h"

#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string reasonFor(AwakeObstacle obstacle, const AwakeRules& rules) {
  switch (obstacle) {
    case AwakeObstacle::battery:
      return fmt::format("The battery is below {}%.", rules.leastBatteryPercent);
    case AwakeObstacle::tooLong:
      return fmt::format("It was kept awake for {} hours.", AwakeRules::kLongest.count());
    case AwakeObstacle::denied:
    case AwakeObstacle::none:
      break;
  }
  return "";
}

}  // namespace

AwakeObstacle obstacleTo(const PowerSupply& supply, Uptime held, const AwakeRules& rules) {
  if (!supply.isOnMains && supply.batteryPercent.value_or(0) < rules.leastBatteryPercent) {
    return AwakeObstacle::battery;
  }
  return held >= AwakeRules::kLongest ? AwakeObstacle::tooLong : AwakeObstacle::none;
}

AwakeKeeper::AwakeKeeper(AwakeEnvironment environment) : environment_(std::move(environment)) {}

AwakeKeeper::~AwakeKeeper() {
  environment_.alarm.clear();
}

void AwakeKeeper::want(std::optional<std::string> reason) {
  if (reason == reason_) {
    return;
  }
  const bool isSameWish = reason && reason_;
  reason_ = std::move(reason);
  if (isSameWish) {
    return;
  }
  letGo();
  isUsedUp_ = false;
  isAsking_ = false;
  wish_ = reason_ ? std::make_shared<const int>() : nullptr;
  environment_.alarm.clear();
  show({});
  if (reason_) {
    lookAtPower();
  }
}

void AwakeKeeper::setRules(const AwakeRules& rules) {
  if (rules != rules_) {
    rules_ = rules;
    lookAtPower();
  }
}

void AwakeKeeper::letGo() {
  if (hold_ != nullptr) {
    environment_.acting.post([hold = std::exchange(hold_, nullptr)]() mutable { hold.reset(); });
  }
}

void AwakeKeeper::lookAtPower() {
  if (!reason_) {
    return;
  }
  environment_.acting.post(
      [this, wish = std::weak_ptr(wish_), supply = environment_.supply, &main = environment_.main] {
        main.post([this, wish, found = supply()] {
          if (!wish.expired()) {
            take(found);
          }
        });
      });
  environment_.alarm.set(kBetweenLooks, [this] { lookAtPower(); });
}

void AwakeKeeper::take(const PowerSupply& supply) {
  const Uptime held = hold_ ? environment_.monotonicClock.sinceBoot() - holdBegan_ : Uptime(0);
  const AwakeObstacle obstacle = isUsedUp_ ? AwakeObstacle::tooLong : obstacleTo(supply, held, rules_);
  if (obstacle != AwakeObstacle::none) {
    isUsedUp_ = isUsedUp_ || obstacle == AwakeObstacle::tooLong;
    letGo();
    show({std::nullopt, obstacle, reasonFor(obstacle, rules_)});
  } else if (hold_ == nullptr && !isAsking_) {
    hold();
  }
}

void AwakeKeeper::hold() {
  isAsking_ = true;
  environment_.acting.post([this, wish = std::weak_ptr(wish_), hold = environment_.hold, &main = environment_.main,
                            reason = reason_.value_or("")] {
    // Shared, since what is posted has to be copied.
    auto held = std::make_shared<Result<std::unique_ptr<PowerHold>>>(hold(reason));
    main.post([this, wish, held] {
      if (!wish.expired()) {
        takeHold(std::move(*held));
      }
    });
  });
}

void AwakeKeeper::takeHold(Result<std::unique_ptr<PowerHold>> held) {
  isAsking_ = false;
  if (!held) {
    show({std::nullopt, AwakeObstacle::denied, held.message()});
    return;
  }
  hold_ = std::move(*held);
  heldSince_ = environment_.clock.now();
  holdBegan_ = environment_.monotonicClock.sinceBoot();
  show({heldSince_, AwakeObstacle::none, ""});
}

void AwakeKeeper::show(AwakeStanding standing) {
  if (standing != standing_.value()) {
    standing_.set(std::move(standing));
  }
}

}  // namespace cirrovane
