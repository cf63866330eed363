#include "coordinator/LiveVerdict.h"

#include "base/Path.h"

#include <algorithm>
#include <utility>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;

/// A wall clock that moves otherwise than time passes was set.
constexpr std::chrono::milliseconds kSetByHand{500};
/// The alarm is set even where nothing is due, because it is how waking from sleep is noticed.
constexpr std::chrono::hours kLongestAlarm{1};
/// A watch that takes longer to stand is not waited for.
constexpr std::chrono::seconds kLongestStart{1};
/// So that what an alarm rings for is due when it rings.
constexpr std::chrono::milliseconds kAfterDue{1};

std::vector<std::string> pathsOf(const std::vector<WatchFolder>& folders) {
  std::vector<std::string> paths;
  paths.reserve(folders.size());
  for (const WatchFolder& folder : folders) {
    paths.emplace_back(withoutTrailingSlash(folder.path));
  }
  return paths;
}

/// Brings a moment forward where the other one comes sooner.
void takeEarlier(std::optional<Uptime>& moment, std::optional<Uptime> other) {
  if (other && (!moment || *other < *moment)) {
    moment = other;
  }
}

}  // namespace

/// Carries what the watch tells, on whatever thread, to the main thread.
class LiveVerdict::Inbox final : public FolderWatchListener {
 public:
  Inbox(LiveVerdict& verdict, Executor& main) : verdict_(verdict), alive_(verdict.alive_), main_(main) {}

  void changed(std::vector<FolderChange> changes) override {
    post([changes = std::move(changes)](LiveVerdict& verdict) { verdict.changed(changes); });
  }
  void lost(std::string reason) override {
    post([reason = std::move(reason)](LiveVerdict& verdict) { verdict.lost(reason); });
  }
  void stands(std::optional<std::string> reasonAgainst) override {
    post([reason = std::move(reasonAgainst)](LiveVerdict& verdict) { verdict.stands(reason); });
  }
  void proved() override {
    post([](LiveVerdict& verdict) { verdict.proved(); });
  }

 private:
  void post(std::function<void(LiveVerdict&)> task) {
    main_.post([&verdict = verdict_, alive = alive_, task = std::move(task)] {
      if (!alive.expired()) {
        task(verdict);
      }
    });
  }

  LiveVerdict& verdict_;
  std::weak_ptr<const int> alive_;
  Executor& main_;
};

/// A watch and the listener that it tells, which readings under way may hold beyond the verdict's own end.
struct LiveVerdict::Watching {
  Watching(LiveVerdict& verdict, Executor& main, const MakeFolderWatch& make)
      : inbox(verdict, main), watch(make ? make(inbox) : nullptr) {}

  Inbox inbox;
  /// Goes first.
  std::unique_ptr<FolderWatch> watch;
};

LiveVerdict::LiveVerdict(const ScanSource& source, LiveEnvironment environment, LivePace pace)
    : environment_(std::move(environment)),
      pace_(pace),
      index_(environment_.executors, source, environment_.monotonicClock),
      noticed_(confirmationNow(environment_.clock, environment_.monotonicClock)),
      confirmation_(noticed_) {}

LiveVerdict::~LiveVerdict() {
  environment_.alarm.clear();
}

std::optional<Confirmation> LiveVerdict::confirmation() const {
  if (!report_.value()) {
    return std::nullopt;
  }
  const bool hasSlept = standingOf(confirmation_, environment_.monotonicClock) == VerdictStanding::slept;
  const bool holdsNow = liveness_.value().state == LivenessState::live && !hasSlept;
  return holdsNow ? confirmationNow(environment_.clock, environment_.monotonicClock) : confirmation_;
}

void LiveVerdict::follow(std::vector<WatchFolder> folders) {
  const bool isNew = watch_ == nullptr || pathsOf(folders) != pathsOf(folders_);
  folders_ = std::move(folders);
  if (isNew) {
    startWatch();
  }
  rescan();
}

void LiveVerdict::rescan() {
  wantsScan_ = true;
  proceed();
}

void LiveVerdict::obtain(const std::vector<WatchFolder>& folders, CycleCause cause, TakeReport then) {
  noticeClocks();
  const bool isFollowed = folders == folders_;
  const bool isSpared = cause == CycleCause::regular && isFollowed && liveness_.value().state == LivenessState::live &&
                        scanDue(ScanCause::cycleWhileLive, lastScan_) > now();
  if (isSpared) {
    inReading_.emplace_back();
    index_.read({}, watch_, nullptr, [this, then = std::move(then)](const LiveReading& reading) {
      takeReading(reading);
      then(*report_.value(), *confirmation());
    });
    return;
  }
  nextTakers_.push_back(std::move(then));
  if (isFollowed && watch_ != nullptr) {
    rescan();
  } else {
    follow(folders);
  }
}

void LiveVerdict::cycleBegan() {
  turned_.cycleBegan(now());
}

void LiveVerdict::cycleEnded(bool isSafe) {
  turned_.cycleEnded(isSafe, now());
  setAlarm();
}

// What the watch tells

void LiveVerdict::startWatch() {
  if (watch_ == nullptr) {
    const auto watching = std::make_shared<Watching>(*this, environment_.executors.main, environment_.makeWatch);
    watch_ = std::shared_ptr<FolderWatch>(watching, watching->watch.get());
  }
  awaitsStand_ = watch_ != nullptr;
  watchStarted_ = now();
  isScannedSinceStart_ = false;
  isIndexFollowed_ = false;
  reasonAgainst_ = watch_ != nullptr ? "" : "This system does not tell of changes.";
  if (watch_ != nullptr) {
    watch_->start(pathsOf(folders_));
  }
}

void LiveVerdict::changed(const std::vector<FolderChange>& changes) {
  pending_.add(changes, now());
  if (isScanning_) {
    duringScan_.add(changes, now());
  }
  suspects_.told(changes, now());
  addLaterReadings(changes);
  proceed();
}

void LiveVerdict::lost(const std::string& reason) {
  loss_ = reason;
  suspects_.clear();
  proceed();
}

void LiveVerdict::stands(const std::optional<std::string>& reasonAgainst) {
  const bool cameLate = !reasonAgainst && (awaitsStand_ || !reasonAgainst_.empty()) && isScannedSinceStart_;
  awaitsStand_ = false;
  reasonAgainst_ = reasonAgainst.value_or("");
  if (cameLate) {
    loss_ = "The watch had to begin anew.";
  }
  if (reasonAgainst) {
    concludeUnproved();
  }
  proceed();
}

void LiveVerdict::proved() {
  confirmation_ = confirmationNow(environment_.clock, environment_.monotonicClock);
  concludeUnproved();
  proceed();
}

// What was told is read

void LiveVerdict::update() {
  readingBegan_ = now();
  PendingChanges changes = std::exchange(pending_, {});
  std::vector<FolderChange> list = changes.list();
  inReading_.push_back(std::move(changes));
  index_.read(
      std::move(list), watch_, [this](const Shared<SyncHealthReport>& report) { publish(report); },
      [this](const LiveReading& reading) { takeReading(reading); });
}

void LiveVerdict::judgeAnew() {
  inReading_.emplace_back();
  index_.read({}, watch_, nullptr, [this](const LiveReading& reading) { takeReading(reading); });
}

void LiveVerdict::readBlocked() {
  blockedRead_ = now();
  inReading_.emplace_back();
  index_.readBlocked(watch_, [this](const LiveReading& reading) { takeReading(reading); });
}

void LiveVerdict::takeReading(const LiveReading& reading) {
  const PendingChanges read = std::move(inReading_.front());
  inReading_.pop_front();
  keep(reading);
  if (unproved_ && reading.report->safeToClose) {
    unproved_ = reading.report;
  } else if (unproved_) {
    unproved_.reset();
    conclude(reading.report);
  } else if (reading.report->safeToClose && !isSafeShown()) {
    held_.add(read);
    wantsYes_ = true;
  } else {
    held_.clear();
    wantsYes_ = false;
    publish(reading.report);
  }
  proceed();
}

std::optional<Uptime> LiveVerdict::updateDue() const {
  if (!hasIndex_ || !inReading_.empty() || pending_.isEmpty()) {
    return std::nullopt;
  }
  const Uptime first = pending_.oldest().value_or(now());
  const bool isBurst = readingBegan_ && first < *readingBegan_ + kBurst;
  return isBurst ? first + kBurst : first;
}

void LiveVerdict::keep(const LiveReading& reading) {
  nextStall_ = reading.nextStall;
  if (watch_ != nullptr) {
    for (const std::string& folder : reading.gone) {
      watch_->forget(folder);
    }
  }
}

void LiveVerdict::addLaterReadings(const std::vector<FolderChange>& changes) {
  for (const std::chrono::seconds later : watch_->laterReadings()) {
    laterReadings_.push_back({now() + later, changes});
  }
}

void LiveVerdict::readLater() {
  const Uptime present = now();
  for (const LaterReading& reading : laterReadings_) {
    if (reading.due <= present) {
      pending_.add(reading.changes, present);
    }
  }
  std::erase_if(laterReadings_, [&](const LaterReading& reading) { return reading.due <= present; });
}

// Full scans

std::optional<Uptime> LiveVerdict::scanDueAt() const {
  if (isScanning_ || unproved_) {
    return std::nullopt;
  }
  std::optional<Uptime> due = scanWantedAt();
  if (due && awaitsStand_) {
    // What is walked before the watch stands is not watched.
    due = std::max(*due, watchStarted_ + kLongestStart);
  }
  return due;
}

std::optional<Uptime> LiveVerdict::scanWantedAt() const {
  std::optional<Uptime> due;
  if (wantsScan_ || !nextTakers_.empty()) {
    takeEarlier(due, Uptime(0));
  }
  if (!loss_.empty() || isDoubted_) {
    takeEarlier(due, scanDue(ScanCause::loss, lastScan_));
  }
  if (wantsYes_) {
    takeEarlier(due, scanDue(ScanCause::turnToYes, lastScan_));
  }
  const bool isLive = currentLiveness().state != LivenessState::notLive;
  // Where cycles run, they scan often enough for a verdict that is live.
  if (lastScan_.end && (pace_.isWaiting || (isWaitedFor_ && !isLive))) {
    takeEarlier(due, scanDue(isLive ? ScanCause::waitingLive : ScanCause::waitingNotLive, lastScan_));
    if (pace_.interval) {
      takeEarlier(due, *lastScan_.end + *pace_.interval);
    }
  }
  return due;
}

void LiveVerdict::setWaitedFor(bool isWaitedFor) {
  if (std::exchange(isWaitedFor_, isWaitedFor) != isWaitedFor) {
    proceed();
  }
}

void LiveVerdict::startScan() {
  if (!reasonAgainst_.empty() && watch_ != nullptr && isScannedSinceStart_) {
    // Whatever kept it from standing may be over.
    startWatch();
    return;
  }
  isScanning_ = true;
  isScannedSinceStart_ = true;
  wantsScan_ = false;
  wantsYes_ = false;
  lossMended_ = std::exchange(loss_, {});
  suspects_.clear();
  takers_ = std::exchange(nextTakers_, {});
  scanBegan_ = confirmationNow(environment_.clock, environment_.monotonicClock);
  // What is told already may be read by the index before the comparison or after it.
  duringScan_.clear();
  duringScan_.add(pending_);
  for (const PendingChanges& changes : inReading_) {
    duringScan_.add(changes);
  }
  duringScan_.add(held_);
  scanned_ = pathsOf(folders_);
  index_.scan(folders_, watch_, [this](Uptime duration) { finishScan(duration); });
}

void LiveVerdict::finishScan(Uptime duration) {
  scanDuration_ = duration;
  // All of it is in what the scan's own report will say.
  pending_.clear();
  const bool compares =
      isIndexFollowed_ && loss_.empty() && lossMended_.empty() && reasonAgainst_.empty() && scanned_ == indexed_;
  indexed_ = scanned_;
  inReading_.push_back(std::exchange(duringScan_, {}));
  index_.adopt(inReading_.back(), compares, watch_, [this](const LiveReading& reading) { takeScan(reading); });
}

void LiveVerdict::takeScan(const LiveReading& reading) {
  inReading_.pop_front();
  isScanning_ = false;
  hasIndex_ = true;
  isIndexFollowed_ = reasonAgainst_.empty() && !awaitsStand_;
  isDoubted_ = false;
  lossMended_.clear();
  hasSlept_ = hasSlept_ && !loss_.empty();
  wantsYes_ = false;
  held_.clear();
  lastScan_ = {now(), scanDuration_};
  keep(reading);
  suspects_.suspect(reading.differences, now());
  const bool turnsToYes = reading.report->safeToClose && !isSafeShown();
  if (turnsToYes && watch_ != nullptr && reasonAgainst_.empty() && !awaitsStand_) {
    unproved_ = reading.report;
    watch_->prove();
  } else {
    conclude(reading.report);
  }
  proceed();
}

void LiveVerdict::conclude(const Shared<SyncHealthReport>& report) {
  confirmation_ = scanBegan_;
  publish(report);
  for (const TakeReport& take : std::exchange(takers_, {})) {
    take(report, confirmation_);
  }
}

void LiveVerdict::concludeUnproved() {
  if (const auto report = std::exchange(unproved_, std::nullopt)) {
    conclude(*report);
  }
}

// What is shown

void LiveVerdict::publish(const Shared<SyncHealthReport>& report) {
  report_.set(report);
  turned_.show(report->safeToClose, now());
}

Liveness LiveVerdict::currentLiveness() const {
  const auto notLive = [this](std::string reason) {
    return Liveness{LivenessState::notLive, std::move(reason), disagreements_};
  };
  const auto catchingUp = [this](std::string reason) {
    return Liveness{LivenessState::catchingUp, std::move(reason), disagreements_};
  };
  if (!reasonAgainst_.empty()) {
    return notLive(reasonAgainst_);
  }
  if (!report_.value() || awaitsStand_) {
    return notLive("The watch is being set up.");
  }
  if (isDoubted_) {
    return notLive("A scan found a change that had not been told.");
  }
  if (!loss_.empty() || !lossMended_.empty()) {
    return catchingUp(loss_.empty() ? lossMended_ : loss_);
  }
  const std::optional<Uptime> oldest = oldestUnreported();
  if (oldest && now() - *oldest > kCatchUp) {
    return catchingUp("Changes are still being read.");
  }
  return {LivenessState::live, "", disagreements_};
}

std::optional<Uptime> LiveVerdict::oldestUnreported() const {
  std::optional<Uptime> oldest;
  takeEarlier(oldest, pending_.oldest());
  takeEarlier(oldest, held_.oldest());
  for (const PendingChanges& changes : inReading_) {
    takeEarlier(oldest, changes.oldest());
  }
  return oldest;
}

void LiveVerdict::showLiveness() {
  const Liveness next = currentLiveness();
  const Liveness& shown = liveness_.value();
  if (next == shown) {
    return;
  }
  if (shown.state == LivenessState::live && next.state == LivenessState::catchingUp && !hasSlept_) {
    confirmation_ = confirmationNow(environment_.clock, environment_.monotonicClock);
  }
  liveness_.set(next);
}

// Time

void LiveVerdict::noticeClocks() {
  const Confirmation present = confirmationNow(environment_.clock, environment_.monotonicClock);
  if (standingOf(noticed_, environment_.monotonicClock) == VerdictStanding::slept && watch_ != nullptr) {
    hasSlept_ = true;
    loss_ = "The Mac slept.";
    suspects_.clear();
  }
  const std::chrono::nanoseconds set = (present.at - noticed_.at) - (present.sinceBoot - noticed_.sinceBoot);
  wasSet_ = wasSet_ || std::chrono::abs(set) >= kSetByHand;
  noticed_ = present;
}

std::optional<Uptime> LiveVerdict::judgingDue() const {
  if (!hasIndex_ || !inReading_.empty()) {
    return std::nullopt;
  }
  if (wasSet_) {
    return Uptime(0);
  }
  return nextStall_ ? std::optional(now() + (*nextStall_ - environment_.clock.now()) + kAfterDue) : std::nullopt;
}

std::optional<Uptime> LiveVerdict::blockedDue() const {
  if (!hasIndex_ || !inReading_.empty() || isSafeShown() || watch_ == nullptr) {
    return std::nullopt;
  }
  return std::max(blockedRead_, lastScan_.end.value_or(Uptime(0))) + kBlockedRereading;
}

void LiveVerdict::proceed() {
  if (isProceeding_) {
    mustProceed_ = true;
    return;
  }
  isProceeding_ = true;
  do {
    mustProceed_ = false;
    doWhatIsDue();
  } while (mustProceed_);
  isProceeding_ = false;
  setAlarm();
}

void LiveVerdict::doWhatIsDue() {
  noticeClocks();
  readLater();
  const auto isDue = [this](std::optional<Uptime> moment) { return moment && *moment <= now(); };
  if (isDue(updateDue())) {
    update();
  } else if (isDue(judgingDue())) {
    wasSet_ = false;
    nextStall_.reset();
    judgeAnew();
  } else if (isDue(blockedDue())) {
    // What was told first, or the report would show what stopped blocking without what has begun to.
    if (!pending_.isEmpty()) {
      update();
    }
    readBlocked();
  }
  if (suspects_.judge(now()).value_or(false)) {
    ++disagreements_;
    isDoubted_ = true;
  }
  if (isDue(scanDueAt())) {
    startScan();
  }
  showLiveness();
  if (startCycle_ && isDue(turned_.due())) {
    startCycle_();
  }
}

void LiveVerdict::setAlarm() {
  std::optional<Uptime> due = now() + kLongestAlarm;
  for (const std::optional<Uptime> moment : {updateDue(), judgingDue(), blockedDue(), suspects_.due(), scanDueAt(),
                                             startCycle_ ? turned_.due() : std::nullopt}) {
    takeEarlier(due, moment);
  }
  for (const LaterReading& reading : laterReadings_) {
    takeEarlier(due, reading.due);
  }
  if (liveness_.value().state == LivenessState::live) {
    if (const std::optional<Uptime> oldest = oldestUnreported()) {
      takeEarlier(due, *oldest + kCatchUp + kAfterDue);
    }
  }
  const Uptime left = std::max(*due - now(), Uptime(0));
  environment_.alarm.set(left, [this] { proceed(); });
}

}  // namespace cirrovane
