#include "platform/linux/host/LogindGate.h"

#include "base/DisplayText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <future>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace cirrovane {
namespace {

using std::chrono::milliseconds;

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kManagerInterface = "org.freedesktop.login1.Manager";
constexpr BusObject kManager = {kService, kPath, kManagerInterface};
constexpr BusObject kProperties = {kService, kPath, "org.freedesktop.DBus.Properties"};

constexpr const char* kWho = "Cirrovane";
constexpr const char* kWhyDelay = "Looks whether work is still on its way to iCloud Drive";
/// What the service itself waits for where nobody has set anything else.
constexpr milliseconds kUsualWithin = std::chrono::seconds(5);
/// What the thread may take besides the service's time.
constexpr milliseconds kMargin = std::chrono::seconds(1);

const char* signalOf(PowerAct act) {
  return act == PowerAct::sleep ? "PrepareForSleep" : "PrepareForShutdown";
}

const char* methodOf(PowerAct act) {
  return act == PowerAct::sleep ? "Suspend" : "PowerOff";
}

Failure silence() {
  return {"The system's login service does not answer."};
}

}  // namespace

struct LogindGate::HeldLock {
  HeldLock(std::string why, FileDescriptor taken) : reason(std::move(why)), lock(std::move(taken)) {}

  const std::string reason;
  /// The thread's own: whether the service may not know of it any more.
  bool isStale = false;
  std::mutex mutex;
  FileDescriptor lock;
  bool isOver = false;
};

class LogindGate::Hold final : public PowerHold {
 public:
  explicit Hold(std::shared_ptr<HeldLock> held) : held_(std::move(held)) {}
  ~Hold() override {
    const std::lock_guard lock(held_->mutex);
    held_->isOver = true;
    held_->lock = FileDescriptor();
  }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  const std::shared_ptr<HeldLock> held_;
};

LogindGate::LogindGate(PowerGateListener& listener) : LogindGate(listener, Times()) {}

LogindGate::LogindGate(PowerGateListener& listener, Times times)
    : listener_(listener),
      times_(times),
      wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      within_(kUsualWithin),
      thread_([this] { run(); }) {}

LogindGate::~LogindGate() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  eventfd_write(wakeUp_.get(), 1);
  thread_.join();
}

void LogindGate::start() {
  post([this] {
    isStarted_ = true;
    if (bus_) {
      takeDelay();
    } else if (const auto failure = connect()) {
      stand(failure->message);
    }
  });
}

void LogindGate::letGo() {
  const std::lock_guard lock(mutex_);
  if (!announced_.empty()) {
    isLetGo_ = true;
    delay_ = FileDescriptor();
  }
}

Result<std::unique_ptr<PowerHold>> LogindGate::keepAwake(const std::string& reason) {
  using Outcome = Result<std::shared_ptr<HeldLock>>;
  Outcome held = ask<Outcome>([this, why = displayText(reason)](const auto& answer) {
    if (auto failure = connect()) {
      answer(std::move(*failure));
      return;
    }
    inhibit("idle", why, "block", [this, why, answer](std::optional<BusFailure> failure, FileDescriptor lock) {
      if (failure) {
        answer(Failure{std::move(failure->words)});
        return;
      }
      auto taken = std::make_shared<HeldLock>(why, std::move(lock));
      std::erase_if(holds_, [](const auto& hold) { return hold.expired(); });
      holds_.push_back(taken);
      answer(std::move(taken));
    });
  });
  if (!held) {
    return Failure{held.message()};
  }
  return std::unique_ptr<PowerHold>(std::make_unique<Hold>(std::move(*held)));
}

std::optional<Failure> LogindGate::perform(PowerAct act) {
  return ask<std::optional<Failure>>([this, act](const auto& answer) {
    if (auto failure = connect()) {
      answer(std::move(failure));
      return;
    }
    // Nobody may be there to type a password, and one that is typed later would act on an answer that has grown old.
    constexpr bool kMayAsk = false;
    bus_->call(kManager, methodOf(act), kMayAsk, times_.answer, [answer](const BusMessage& message) {
      auto failure = message.failure();
      answer(failure ? std::optional(Failure{std::move(failure->words)}) : std::nullopt);
    });
  });
}

void LogindGate::post(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  eventfd_write(wakeUp_.get(), 1);
}

template <class Outcome>
Outcome LogindGate::ask(const std::function<void(std::function<void(Outcome)>)>& task) {
  const auto promise = std::make_shared<std::promise<Outcome>>();
  std::future<Outcome> outcome = promise->get_future();
  post([promise, task] { task([promise](Outcome value) { promise->set_value(std::move(value)); }); });
  if (outcome.wait_for(times_.answer + kMargin) != std::future_status::ready) {
    return silence();
  }
  try {
    return outcome.get();
  } catch (const std::future_error&) {
    // The bus went, and the call with it.
    return silence();
  }
}

void LogindGate::run() {
  while (runTasks()) {
    if (retryAt_ && std::chrono::steady_clock::now() >= *retryAt_) {
      askAgain();
    }
    if (bus_ && !bus_->process()) {
      loseBus();
    }
    wait();
  }
  bus_.reset();
}

bool LogindGate::runTasks() {
  while (true) {
    Task task;
    {
      const std::lock_guard lock(mutex_);
      if (isStopping_ || tasks_.empty()) {
        return !isStopping_;
      }
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
  }
}

void LogindGate::wait() const {
  std::array<pollfd, 2> awaited{{{wakeUp_.get(), POLLIN, 0}, {-1, 0, 0}}};
  if (bus_) {
    awaited[1] = {bus_->descriptor(), bus_->events(), 0};
  }
  const auto most = timeout();
  poll(awaited.data(), awaited.size(), most ? static_cast<int>(most->count()) : -1);
  eventfd_t count = 0;
  eventfd_read(wakeUp_.get(), &count);
}

std::optional<milliseconds> LogindGate::timeout() const {
  std::optional<milliseconds> most = bus_ ? bus_->timeout() : std::nullopt;
  if (retryAt_) {
    const auto left = std::chrono::ceil<milliseconds>(*retryAt_ - std::chrono::steady_clock::now());
    most = std::min(most.value_or(left), left);
  }
  constexpr milliseconds kLongest = std::chrono::hours(24);
  return most ? std::optional(std::clamp(*most, milliseconds(0), kLongest)) : std::nullopt;
}

std::optional<Failure> LogindGate::connect() {
  if (bus_) {
    return std::nullopt;
  }
  auto opened = SystemBus::open();
  if (!opened) {
    return Failure{opened.message()};
  }
  bus_ = std::move(*opened);
  for (const PowerAct act : {PowerAct::sleep, PowerAct::shutdown}) {
    bus_->hear(kManager, signalOf(act), [this, act](BusMessage message) {
      if (const auto begins = message.boolean()) {
        announce(act, *begins);
      }
    });
  }
  bus_->hearOwner(kService, [this](bool isThere) { changeOwner(isThere); });
  takeDelay();
  takeHoldsAnew();
  return std::nullopt;
}

void LogindGate::loseBus() {
  bus_.reset();
  isTakingDelay_ = false;
  markHoldsStale();
  stand("The system's message bus has gone.");
  askAgainLater();
}

void LogindGate::changeOwner(bool isThere) {
  // The descriptors stay open meanwhile: a service that remembers its locks goes on with them.
  markHoldsStale();
  if (isThere) {
    takeDelay();
    takeHoldsAnew();
  } else {
    stand("The system's login service has gone.");
  }
}

void LogindGate::announce(PowerAct act, bool begins) {
  if (!isStarted_) {
    return;
  }
  bool isWaitedFor = false;
  {
    const std::lock_guard lock(mutex_);
    if (begins) {
      announced_.insert(act);
    } else {
      announced_.erase(act);
      isLetGo_ = isLetGo_ && !announced_.empty();
    }
    isWaitedFor = delay_.isOpen();
  }
  if (begins) {
    listener_.leaving(act, isWaitedFor ? within_ : milliseconds(0));
    return;
  }
  listener_.stays(act);
  if (!isWaitedFor) {
    takeDelay();
  }
}

void LogindGate::takeDelay() {
  if (!isStarted_ || isTakingDelay_ || !bus_) {
    return;
  }
  isTakingDelay_ = true;
  bus_->call(kProperties, "Get", {kManagerInterface, "InhibitDelayMaxUSec"}, times_.answer, [this](BusMessage message) {
    const auto most = message.failure() ? std::nullopt : message.propertyNumber();
    constexpr std::uint64_t kMicrosecondsADay = 86'400'000'000;
    within_ =
        most ? std::chrono::duration_cast<milliseconds>(std::chrono::microseconds(std::min(*most, kMicrosecondsADay)))
             : kUsualWithin;
  });
  inhibit("sleep:shutdown", kWhyDelay, "delay", [this](std::optional<BusFailure> failure, FileDescriptor lock) {
    isTakingDelay_ = false;
    if (failure) {
      stand(failure->words);
      if (failure->isSilence) {
        askAgainLater();
      }
      return;
    }
    std::set<PowerAct> overtaken;
    {
      const std::lock_guard guard(mutex_);
      delay_ = std::move(lock);
      // The service gives no such lock while the machine leaves.
      overtaken.swap(announced_);
      isLetGo_ = false;
    }
    for (const PowerAct act : overtaken) {
      listener_.stays(act);
    }
    stand(std::nullopt);
  });
}

void LogindGate::markHoldsStale() {
  for (const auto& hold : holds_) {
    if (const auto held = hold.lock()) {
      held->isStale = true;
    }
  }
}

void LogindGate::takeHoldsAnew() {
  for (const auto& hold : holds_) {
    const auto held = hold.lock();
    if (!held || !held->isStale) {
      continue;
    }
    held->isStale = false;
    inhibit("idle", held->reason, "block", [this, hold](std::optional<BusFailure> failure, FileDescriptor lock) {
      const auto kept = hold.lock();
      if (!kept) {
        return;
      }
      if (failure) {
        kept->isStale = true;
        if (failure->isSilence) {
          askAgainLater();
        }
        return;
      }
      const std::lock_guard guard(kept->mutex);
      if (!kept->isOver) {
        kept->lock = std::move(lock);
      }
    });
  }
}

void LogindGate::inhibit(const char* what, const std::string& why, const char* mode, LockHandler handler) {
  bus_->call(kManager, "Inhibit", {what, kWho, why, mode}, times_.answer,
             [handler = std::move(handler)](BusMessage message) {
               if (auto failure = message.failure()) {
                 handler(std::move(failure), FileDescriptor());
               } else if (auto lock = message.descriptor()) {
                 handler(std::nullopt, std::move(*lock));
               } else {
                 handler(BusFailure{"The system's login service gives no lock."}, FileDescriptor());
               }
             });
}

void LogindGate::stand(std::optional<std::string> reasonAgainst) {
  if (isStarted_ && !(toldStanding_ && *toldStanding_ == reasonAgainst)) {
    toldStanding_ = reasonAgainst;
    listener_.stands(std::move(reasonAgainst));
  }
}

void LogindGate::askAgainLater() {
  retryAt_ = std::chrono::steady_clock::now() + times_.retry;
}

void LogindGate::askAgain() {
  retryAt_.reset();
  if (!bus_) {
    if (connect()) {
      askAgainLater();
    }
    return;
  }
  if (toldStanding_ && *toldStanding_) {
    takeDelay();
  }
  takeHoldsAnew();
}

}  // namespace cirrovane
