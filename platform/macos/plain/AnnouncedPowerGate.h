#pragma once

#include "platform/PowerGate.h"
#include "platform/macos/plain/EventStream.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// What the system says of the machine's sleep, with its own numbers.
namespace power_message {
/// Asks whether the machine may fall asleep since nobody uses it.
inline constexpr std::uint32_t canSleep = 0xE0000270;
inline constexpr std::uint32_t willSleep = 0xE0000280;
inline constexpr std::uint32_t willNotSleep = 0xE0000290;
inline constexpr std::uint32_t hasPoweredOn = 0xE0000300;
}  // namespace power_message

/// What the system tells for as long as this lives; nothing is told any more when its end has returned.
class PowerNotices {
 public:
  PowerNotices() = default;
  PowerNotices(const PowerNotices&) = delete;
  PowerNotices& operator=(const PowerNotices&) = delete;
  virtual ~PowerNotices() = default;
};

/// What a gate needs of the system.
struct PowerSystem {
  /// Lets the system go on with what it waits for, once. Callable on any thread.
  using Proceed = std::function<void()>;
  using SleepTold = std::function<void(std::uint32_t message, Proceed proceed)>;
  /// Whether the system has to wait until `proceed` before it ends the program. Returns at once.
  using QuitAsked = std::function<bool(Proceed proceed)>;

  /// Has what the system says of sleep told, on any thread; nullptr when the system refuses.
  std::function<std::unique_ptr<PowerNotices>(SleepTold tell)> hearSleep;
  /// Has a quit asked for that the system itself wants, on any thread. Empty where the program is no application.
  std::function<std::unique_ptr<PowerNotices>(QuitAsked ask)> hearQuits;
  std::function<Result<std::unique_ptr<PowerHold>>(const std::string& reason)> keepAwake;
  /// The number of the system's error; 0 when it has agreed.
  std::function<std::int32_t(PowerAct act)> perform;
};

/// A gate of a system that announces sleep and quits by messages, each of which waits for an answer. It tells its
/// listener on the queue, never refuses, and answers by itself before the system's patience ends.
class AnnouncedPowerGate final : public PowerGate {
 public:
  /// How long a sleep and a quit wait for `letGo`. The system takes 30 s for the one, and calls a program hung that
  /// takes much longer than 40 s for the other.
  static constexpr std::chrono::seconds kSleepWaits{28};
  static constexpr std::chrono::seconds kQuitWaits{38};

  AnnouncedPowerGate(PowerGateListener& listener, PowerSystem system, std::shared_ptr<SerialQueue> queue);
  /// Waits for the listener's call that is under way.
  ~AnnouncedPowerGate() override;

  AnnouncedPowerGate(const AnnouncedPowerGate&) = delete;
  AnnouncedPowerGate& operator=(const AnnouncedPowerGate&) = delete;

  void start() override;
  void letGo() override;
  Result<std::unique_ptr<PowerHold>> keepAwake(const std::string& reason) override;
  std::optional<Failure> perform(PowerAct act) override;

 private:
  class State;

  const PowerSystem system_;
  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<State> state_;
};

}  // namespace cirrovane
