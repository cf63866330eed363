#pragma once

#include "platform/PowerGate.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// The power of a machine that a test plays. Several gates may be at one machine.
struct FakePower {
  /// Why each is refused; absent where it is not.
  std::optional<std::string> refusesToAct;
  std::optional<std::string> refusesToHold;
  std::optional<std::string> refusesToTell;
  bool letsCallOff = false;

  std::vector<PowerAct> acts;
  /// The reasons of the holds there are.
  std::vector<std::string> holds;
  int holdCount = 0;
  int calledOff = 0;
  int letGo = 0;
  /// Of the gates that asked to be told, the latest; nullptr without one.
  PowerGateListener* listener = nullptr;
};

class FakePowerGate final : public PowerGate {
 public:
  FakePowerGate(FakePower& power, PowerGateListener& listener) : power_(power), listener_(listener) {}
  ~FakePowerGate() override {
    if (power_.listener == &listener_ && isStarted_) {
      power_.listener = nullptr;
    }
  }

  void start() override {
    isStarted_ = true;
    power_.listener = &listener_;
    listener_.stands(power_.refusesToTell);
  }
  void letGo() override { ++power_.letGo; }
  bool callOff() override {
    power_.calledOff += power_.letsCallOff ? 1 : 0;
    return power_.letsCallOff;
  }
  Result<std::unique_ptr<PowerHold>> keepAwake(const std::string& reason) override {
    if (power_.refusesToHold) {
      return Failure{*power_.refusesToHold};
    }
    return std::unique_ptr<PowerHold>(std::make_unique<Hold>(power_, reason));
  }
  std::optional<Failure> perform(PowerAct act) override {
    if (power_.refusesToAct) {
      return Failure{*power_.refusesToAct};
    }
    power_.acts.push_back(act);
    return std::nullopt;
  }

 private:
  class Hold final : public PowerHold {
   public:
    Hold(FakePower& power, std::string reason) : power_(power), reason_(std::move(reason)) {
      power_.holds.push_back(reason_);
      ++power_.holdCount;
    }
    ~Hold() override { std::erase(power_.holds, reason_); }

   private:
    FakePower& power_;
    std::string reason_;
  };

  FakePower& power_;
  PowerGateListener& listener_;
  bool isStarted_ = false;
};

}  // namespace cirrovane::test
