#pragma once

#include "base/Result.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// What ends the work at a machine.
enum class PowerAct : std::uint8_t {
  sleep,
  /// On a Mac a logout or restart is announced as one too, since it ends every program alike.
  shutdown,
};

/// Hears what the system tells of the machine's power, on any thread, one call at a time. May not call the gate back.
class PowerGateListener {
 public:
  virtual ~PowerGateListener() = default;
  /// The machine is about to do it, and waits for `PowerGate::letGo`, though no longer than `within`.
  virtual void leaving(PowerAct act, std::chrono::milliseconds within) = 0;
  /// The machine has woken, or what was announced does not happen.
  virtual void stays(PowerAct act) = 0;
  /// From now on the machine waits before it leaves (absent), or it does not, with the reason in words for people.
  virtual void stands(std::optional<std::string> reasonAgainst) = 0;
};

/// Keeps the machine from falling asleep because nobody uses it, for as long as this lives and the program runs. The
/// lid and the user's own wish are obeyed all the same.
class PowerHold {
 public:
  PowerHold() = default;
  PowerHold(const PowerHold&) = delete;
  PowerHold& operator=(const PowerHold&) = delete;
  virtual ~PowerHold() = default;
};

/// What a program may do about the machine's sleep and its end. However the program ends, the system holds nothing for
/// it any more. Callable on any thread; a member may take as long as the system's answer, which is some seconds at
/// most.
class PowerGate {
 public:
  /// Lets go of everything. No call of the listener comes or goes on after it. Holds may outlive it.
  virtual ~PowerGate() = default;

  /// Asks to be told before the machine leaves. Answers by `stands`, at once or later, and again whenever that changes.
  virtual void start() = 0;
  /// Has the machine go on with what it announced. Does nothing where nothing waits.
  virtual void letGo() = 0;
  /// Calls off what was announced; false where a program may not, and the machine goes on waiting.
  virtual bool callOff() { return false; }
  /// Fails with the system's reason, in words for people. The system shows `reason` to whoever asks what holds it.
  virtual Result<std::unique_ptr<PowerHold>> keepAwake(const std::string& reason) = 0;
  /// Has the machine sleep or shut down, and returns when the system has agreed; a failure says why it does not, in
  /// words for people.
  virtual std::optional<Failure> perform(PowerAct act) = 0;
};

}  // namespace cirrovane
