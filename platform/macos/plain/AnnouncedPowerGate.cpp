#include "platform/macos/plain/AnnouncedPowerGate.h"

#include <utility>
#include <vector>

namespace cirrovane {
namespace {

using std::chrono::seconds;

// What the system answers where the user forbids a program to send events to others, or would have to be asked.
constexpr std::int32_t kEventNotPermitted = -1743;
constexpr std::int32_t kEventWouldRequireConsent = -1744;

Failure failureOfEvent(PowerAct act, std::int32_t error) {
  const std::string what = act == PowerAct::sleep ? "put this Mac to sleep" : "shut this Mac down";
  if (error == kEventNotPermitted || error == kEventWouldRequireConsent) {
    return {"The system does not let Cirrovane " + what + ": see System Settings, Privacy & Security, Automation."};
  }
  return {"The system refuses to " + what + " (error " + std::to_string(error) + ")."};
}

}  // namespace

/// The queue's own. What the system calls holds it weakly.
class AnnouncedPowerGate::State final : public std::enable_shared_from_this<State> {
 public:
  State(PowerGateListener& listener, std::weak_ptr<SerialQueue> queue)
      : listener_(&listener), queue_(std::move(queue)) {}

  void start(const PowerSystem& system) {
    if (isStarted_) {
      return;
    }
    isStarted_ = true;
    sleep_ = system.hearSleep(
        [weak = weak_from_this(), queue = queue_](std::uint32_t message, PowerSystem::Proceed proceed) {
          // One that may fall asleep is never kept from it, and is answered though the queue is busy.
          if (message == power_message::canSleep) {
            proceed();
            return;
          }
          post(queue, weak, std::move(proceed),
               [message](State& state, PowerSystem::Proceed go) { state.take(message, std::move(go)); });
        });
    if (system.hearQuits) {
      quits_ = system.hearQuits([weak = weak_from_this(), queue = queue_](PowerSystem::Proceed proceed) {
        return post(queue, weak, std::move(proceed), [](State& state, PowerSystem::Proceed go) {
          state.leave(PowerAct::shutdown, kQuitWaits, std::move(go));
        });
      });
    }
    listener_->stands(sleep_ ? std::nullopt
                             : std::optional<std::string>("The system does not tell Cirrovane before it sleeps."));
  }

  void letGo() {
    for (const Wait& wait : std::exchange(waits_, {})) {
      wait.proceed();
    }
  }

  void end() {
    listener_ = nullptr;
    sleep_.reset();
    quits_.reset();
    letGo();
  }

 private:
  struct Wait {
    int number;
    PowerSystem::Proceed proceed;
  };

  /// Has the state take it on the queue, or lets the system go on where there is none any more. Whether it is taken.
  static bool post(const std::weak_ptr<SerialQueue>& queue, const std::weak_ptr<State>& weak,
                   PowerSystem::Proceed proceed, std::function<void(State&, PowerSystem::Proceed)> take) {
    const std::shared_ptr<SerialQueue> held = queue.lock();
    if (!held || weak.expired()) {
      proceed();
      return false;
    }
    held->post([weak, proceed = std::move(proceed), take = std::move(take)] {
      const std::shared_ptr<State> state = weak.lock();
      if (state && state->listener_ != nullptr) {
        take(*state, proceed);
      } else {
        proceed();
      }
    });
    return true;
  }

  void take(std::uint32_t message, PowerSystem::Proceed proceed) {
    if (message == power_message::willSleep) {
      leave(PowerAct::sleep, kSleepWaits, std::move(proceed));
    } else if (message == power_message::hasPoweredOn || message == power_message::willNotSleep) {
      listener_->stays(PowerAct::sleep);
    }
  }

  void leave(PowerAct act, seconds within, PowerSystem::Proceed proceed) {
    const std::shared_ptr<SerialQueue> queue = queue_.lock();
    if (!queue) {
      proceed();
      return;
    }
    const int number = ++lastNumber_;
    waits_.push_back({number, std::move(proceed)});
    queue->postAfter(within, [weak = weak_from_this(), number] {
      if (const std::shared_ptr<State> state = weak.lock()) {
        state->giveUp(number);
      }
    });
    listener_->leaving(act, within);
  }

  void giveUp(int number) {
    for (std::size_t index = 0; index < waits_.size(); ++index) {
      if (waits_[index].number == number) {
        const Wait wait = std::move(waits_[index]);
        waits_.erase(waits_.begin() + static_cast<std::ptrdiff_t>(index));
        wait.proceed();
        return;
      }
    }
  }

  PowerGateListener* listener_;
  const std::weak_ptr<SerialQueue> queue_;
  bool isStarted_ = false;
  std::unique_ptr<PowerNotices> sleep_;
  std::unique_ptr<PowerNotices> quits_;
  std::vector<Wait> waits_;
  int lastNumber_ = 0;
};

AnnouncedPowerGate::AnnouncedPowerGate(PowerGateListener& listener, PowerSystem system,
                                       std::shared_ptr<SerialQueue> queue)
    : system_(std::move(system)), queue_(std::move(queue)), state_(std::make_shared<State>(listener, queue_)) {}

AnnouncedPowerGate::~AnnouncedPowerGate() {
  queue_->runAndWait([state = state_] { state->end(); });
}

void AnnouncedPowerGate::start() {
  queue_->post([state = state_, system = system_] { state->start(system); });
}

void AnnouncedPowerGate::letGo() {
  queue_->post([state = state_] { state->letGo(); });
}

Result<std::unique_ptr<PowerHold>> AnnouncedPowerGate::keepAwake(const std::string& reason) {
  return system_.keepAwake(reason);
}

std::optional<Failure> AnnouncedPowerGate::perform(PowerAct act) {
  const std::int32_t error = system_.perform(act);
  return error == 0 ? std::nullopt : std::optional(failureOfEvent(act, error));
}

}  // namespace cirrovane
