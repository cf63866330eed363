#include "coordinator/CoverageWatch.h"

#include <algorithm>
#include <utility>

namespace cirrovane {

CoverageWatch::~CoverageWatch() {
  if (stop_) {
    stop_->ask();
  }
  if (environment_.alarm != nullptr) {
    environment_.alarm->clear();
  }
}

void CoverageWatch::follow(std::vector<WatchFolder> folders) {
  if (folders == folders_ && (report_.value() || stop_)) {
    return;
  }
  folders_ = std::move(folders);
  takers_.clear();
  nextTakers_.clear();
  if (report_.value()) {
    report_.set(std::nullopt);
  }
  if (stop_) {
    // What it hands on when it stops is nothing, and then the next begins.
    stop_->ask();
    wantsLook_ = wantsLook_ || environment_.alarm != nullptr;
  } else if (environment_.alarm != nullptr) {
    begin();
  }
}

void CoverageWatch::look(TakeReport then) {
  if (then) {
    nextTakers_.push_back(std::move(then));
  }
  if (stop_) {
    wantsLook_ = true;
  } else {
    begin();
  }
}

Uptime CoverageWatch::waitingLookDue() const {
  if (!lastEnd_) {
    return Uptime(0);
  }
  return *lastEnd_ + std::max<Uptime>(kBetweenWaitingLooks, lastDuration_ * kRestPerLook);
}

void CoverageWatch::begin() {
  wantsLook_ = false;
  takers_ = std::exchange(nextTakers_, {});
  const CoverageStop stop;
  stop_ = stop;
  if (!isLooking_.value()) {
    isLooking_.set(true);
  }
  environment_.looking.post([this, alive = std::weak_ptr(alive_), &main = environment_.main, keeper = keeper_,
                             folders = folders_, stop, began = environment_.monotonicClock.sinceBoot()] {
    std::optional<CoverageLook> look = keeper->look(folders, stop);
    main.post([this, alive, look = std::move(look), began] {
      if (!alive.expired()) {
        finish(look, began);
      }
    });
  });
}

void CoverageWatch::finish(const std::optional<CoverageLook>& look, Uptime began) {
  const std::optional<CoverageStop> stop = std::exchange(stop_, std::nullopt);
  const bool isStopped = stop && stop->isAsked();
  const std::vector<TakeReport> takers = std::exchange(takers_, {});
  if (!isStopped && look) {
    lastEnd_ = environment_.monotonicClock.sinceBoot();
    lastDuration_ = *lastEnd_ - began;
    const Shared<CoverageReport> report(look->report);
    report_.set(report);
    for (const TakeReport& take : takers) {
      take(report);
    }
  }
  if (stop_) {
    // Whoever was told has asked for the next already.
    return;
  }
  if (wantsLook_ || !nextTakers_.empty()) {
    begin();
  } else {
    setAlarm();
    isLooking_.set(false);
  }
}

void CoverageWatch::setAlarm() {
  if (environment_.alarm != nullptr) {
    const Uptime rest = std::max<Uptime>(kBetweenLooks, lastDuration_ * kRestPerLook);
    environment_.alarm->set(rest, [this] {
      // The alarm also rings when the machine wakes, and that is a good moment too.
      look();
    });
  }
}

}  // namespace cirrovane
