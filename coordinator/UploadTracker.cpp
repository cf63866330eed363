#include "coordinator/UploadTracker.h"

#include "coordinator/StageSequence.h"

#include <algorithm>
#include <utility>

namespace cirrovane {

/// By a look.
struct UploadTracker::Found {
  UploadStanding standing;
  Shared<UploadRecord> record;
};

UploadTracker::UploadTracker(std::shared_ptr<const UploadsStore> store,
                             const Published<Shared<SyncHealthReport>>& reports, const UploadTracking& environment)
    : store_(std::move(store)), reports_(reports), environment_(environment) {}

UploadTracker::~UploadTracker() {
  if (environment_.alarm != nullptr) {
    environment_.alarm->clear();
  }
}

void UploadTracker::look(const Shared<SyncHealthReport>& report) {
  if (store_ == nullptr) {
    return;
  }
  lastLook_ = environment_.monotonicClock.sinceBoot();
  wantsLook_ = false;
  const auto found = std::make_shared<Found>();
  runStages({{environment_.looking,
              [found, report, store = store_] {
                UploadRecord record = store->note(*report).record;
                found->standing = uploadStanding(record, *report);
                found->record = Shared<UploadRecord>(std::move(record));
              }},
             {environment_.main, [this, found] { take(std::move(*found)); }}},
            alive_);
}

void UploadTracker::lookSoon() {
  // The first look is a refresh's.
  if (environment_.alarm == nullptr || !lastLook_) {
    return;
  }
  wantsLook_ = !reports_.value()->blockers.empty() || standing_.value().totals.pendingFiles > 0;
  setAlarm();
}

void UploadTracker::take(Found found) {
  share_.take(found.standing.totals);
  found.standing.share = share_.ratio();
  record_.set(std::move(found.record));
  standing_.set(std::move(found.standing));
  setAlarm();
}

void UploadTracker::setAlarm() {
  if (environment_.alarm == nullptr) {
    return;
  }
  std::optional<std::chrono::nanoseconds> wait = untilOtherWords(standing_.value(), environment_.clock.now());
  if (wantsLook_ && lastLook_) {
    const std::chrono::nanoseconds untilTurn =
        std::max(*lastLook_ + kBetweenLooks - environment_.monotonicClock.sinceBoot(), std::chrono::nanoseconds(0));
    wait = std::min(untilTurn, wait.value_or(untilTurn));
  }
  if (wait) {
    environment_.alarm->set(*wait, [this] { ring(); });
  } else {
    environment_.alarm->clear();
  }
}

void UploadTracker::ring() {
  if (wantsLook_ && lastLook_ && environment_.monotonicClock.sinceBoot() >= *lastLook_ + kBetweenLooks) {
    look(reports_.value());
    return;
  }
  standing_.set(standing_.value());
  setAlarm();
}

}  // namespace cirrovane
