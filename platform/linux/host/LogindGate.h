#pragma once

#include "base/FileDescriptor.h"
#include "platform/PowerGate.h"
#include "platform/linux/host/SystemBus.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace cirrovane {

/// Leaves by the system's login service, logind. Its locks are descriptors, which end with this program at the latest.
/// A thread of its own has a connection to the bus, made when something is first wanted, and makes all calls of the
/// listener.
class LogindGate final : public PowerGate {
 public:
  struct Times {
    /// What the service may take for an answer.
    std::chrono::milliseconds answer = std::chrono::seconds(5);
    /// After which one that was silent, or could not be reached any more, is asked again for what is wanted still.
    std::chrono::milliseconds retry = std::chrono::seconds(30);
  };

  explicit LogindGate(PowerGateListener& listener);
  LogindGate(PowerGateListener& listener, Times times);
  /// Waits for the listener's call that is under way.
  ~LogindGate() override;

  LogindGate(const LogindGate&) = delete;
  LogindGate& operator=(const LogindGate&) = delete;

  void start() override;
  void letGo() override;
  Result<std::unique_ptr<PowerHold>> keepAwake(const std::string& reason) override;
  std::optional<Failure> perform(PowerAct act) override;

 private:
  using Task = std::function<void()>;
  using LockHandler = std::function<void(std::optional<BusFailure>, FileDescriptor)>;
  /// The lock of a hold, which gate and hold share.
  struct HeldLock;
  class Hold;

  void post(Task task);
  /// The task's outcome, or that the service is silent where none comes.
  template <class Outcome>
  Outcome ask(const std::function<void(std::function<void(Outcome)>)>& task);

  // The thread's own.
  void run();
  /// False when this is to end.
  bool runTasks();
  void wait() const;
  std::optional<std::chrono::milliseconds> timeout() const;
  /// Connects unless it is connected; the failure otherwise.
  std::optional<Failure> connect();
  void loseBus();
  void changeOwner(bool isThere);
  void announce(PowerAct act, bool begins);
  /// Takes the lock that has the machine wait for us; one that is there already gives way to it.
  void takeDelay();
  void markHoldsStale();
  /// Has the service know again of the holds that it may have forgotten.
  void takeHoldsAnew();
  void inhibit(const char* what, const std::string& why, const char* mode, LockHandler handler);
  void stand(std::optional<std::string> reasonAgainst);
  void askAgainLater();
  void askAgain();

  PowerGateListener& listener_;
  const Times times_;
  const FileDescriptor wakeUp_;

  std::mutex mutex_;
  std::deque<Task> tasks_;
  bool isStopping_ = false;
  FileDescriptor delay_;
  /// What the machine is about to do.
  std::set<PowerAct> announced_;
  bool isLetGo_ = false;

  std::unique_ptr<SystemBus> bus_;
  std::vector<std::weak_ptr<HeldLock>> holds_;
  bool isStarted_ = false;
  bool isTakingDelay_ = false;
  std::chrono::milliseconds within_;
  /// What was told last; absent when nothing was.
  std::optional<std::optional<std::string>> toldStanding_;
  std::optional<std::chrono::steady_clock::time_point> retryAt_;

  std::thread thread_;
};

}  // namespace cirrovane
