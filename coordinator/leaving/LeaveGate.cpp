#include "coordinator/leaving/LeaveGate.h"

#include <utility>

namespace cirrovane {

/// Takes what the system announces to the main thread.
class LeaveGate::Announcements final : public PowerGateListener {
 public:
  explicit Announcements(LeaveGate& gate) : gate_(gate), main_(gate.environment_.main), alive_(gate.alive_) {}

  void leaving(PowerAct act, std::chrono::milliseconds within) override {
    post([act, within](LeaveGate& gate) { gate.announced(act, within); });
  }
  void stays(PowerAct act) override {
    post([act](LeaveGate& gate) { gate.stays(act); });
  }
  void stands(std::optional<std::string> reasonAgainst) override {
    post([reason = std::move(reasonAgainst)](LeaveGate& gate) {
      if (gate.announcer_ != nullptr) {
        gate.obstacleToAsking_.set(reason);
      }
    });
  }

 private:
  void post(std::function<void(LeaveGate&)> task) {
    main_.post([&gate = gate_, alive = alive_, task = std::move(task)] {
      if (!alive.expired()) {
        task(gate);
      }
    });
  }

  LeaveGate& gate_;
  Executor& main_;
  std::weak_ptr<const int> alive_;
};

LeaveGate::LeaveGate(const LeaveGateEnvironment& environment)
    : environment_(environment),
      announcements_(std::make_unique<Announcements>(*this)),
      gate_(environment.makeGate(*announcements_)),
      wait_({.main = environment.main,
             .looking = environment.looking,
             .acting = environment.acting,
             .monotonicClock = environment.monotonicClock,
             .lookAlarm = environment.alarms.look,
             .limitAlarm = environment.alarms.limit,
             .coverage = environment.coverage,
             .sight = [this] { return sightOf(environment_.live, environment_.monotonicClock); },
             .folders = [this] { return environment_.live.folders(); },
             .perform = [gate = gate_](PowerAct act) { return gate->perform(act); }}),
      awake_({.main = environment.main,
              .acting = environment.acting,
              .clock = environment.clock,
              .monotonicClock = environment.monotonicClock,
              .alarm = environment.alarms.power,
              .supply = environment.supply,
              .hold = [gate = gate_](const std::string& reason) { return gate->keepAwake(reason); }}),
      question_(environment.alarms.question, environment.monotonicClock, [this] {
        if (announcer_ != nullptr) {
          announcer_->letGo();
        }
      }) {
  subscriptions_.push_back(environment_.live.report().afterChange([this](const auto&) { lookSoon(); }));
  subscriptions_.push_back(environment_.live.liveness().afterChange([this](const auto&) { lookSoon(); }));
  subscriptions_.push_back(wait_.standing().afterChange([this](const LeaveStanding& standing) {
    environment_.live.setWaitedFor(standing.isWaiting());
    awake_.want(reasonToStayAwake());
  }));
}

LeaveGate::~LeaveGate() = default;

void LeaveGate::setPreferences(const LeavePreferences& preferences) {
  if (preferences == preferences_) {
    return;
  }
  preferences_ = preferences;
  awake_.setRules(preferences_.awake);
  awake_.want(reasonToStayAwake());
  ask(preferences_.asksBeforeShutdown);
}

void LeaveGate::leaveWhenSafe(PowerAct act) {
  wait_.begin({act, std::nullopt});
}

void LeaveGate::answerWait() {
  const bool isAsked = question_.state().value() == QuestionState::asked;
  if (isAsked && announcer_ != nullptr && announcer_->callOff()) {
    question_.take(QuestionEvent::calledOff);
    leaveWhenSafe(PowerAct::shutdown);
  } else {
    question_.take(QuestionEvent::wait);
  }
}

void LeaveGate::lookSoon() {
  // Once for all that changes at one stroke.
  if (!std::exchange(isLookPosted_, true)) {
    environment_.main.post([this, alive = std::weak_ptr(alive_)] {
      if (!alive.expired()) {
        isLookPosted_ = false;
        look();
      }
    });
  }
}

void LeaveGate::look() {
  wait_.look();
  awake_.want(reasonToStayAwake());
  if (isSafe()) {
    question_.take(QuestionEvent::safe);
  }
}

void LeaveGate::announced(PowerAct act, std::chrono::milliseconds within) {
  if (announcer_ == nullptr) {
    return;
  }
  if (act == PowerAct::sleep) {
    // Work that is not in the cloud is safe on a machine that wakes again, so nobody is kept from it.
    announcer_->letGo();
    return;
  }
  question_.announce(isSafe(), within);
}

void LeaveGate::stays(PowerAct act) {
  if (act == PowerAct::shutdown) {
    question_.take(QuestionEvent::calledOff);
  } else {
    wait_.slept();
  }
}

bool LeaveGate::isSafe() const {
  const VerdictSight sight = sightOf(environment_.live, environment_.monotonicClock);
  return sight.safeToClose.value_or(false) && !sight.isStale && sight.liveness != LivenessState::catchingUp;
}

std::optional<std::string> LeaveGate::reasonToStayAwake() const {
  if (wait_.standing().value().isWaiting()) {
    return std::string(kReasonToWaitAwake);
  }
  const std::optional<Shared<SyncHealthReport>>& report = environment_.live.report().value();
  if (preferences_.keepsAwakeWhilePending && report && (*report)->metrics.pendingUploads > 0) {
    return "Uploads to iCloud are pending";
  }
  return std::nullopt;
}

void LeaveGate::ask(bool asks) {
  if (asks == (announcer_ != nullptr)) {
    return;
  }
  if (asks) {
    announcer_ = environment_.makeGate(*announcements_);
    announcer_->start();
    return;
  }
  question_.take(QuestionEvent::leaveAnyway);
  announcer_ = nullptr;
  if (obstacleToAsking_.value()) {
    obstacleToAsking_.set(std::nullopt);
  }
}

}  // namespace cirrovane
