#pragma once

#include "platform/PowerGate.h"
#include "platform/linux/macroot/MacRoot.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace cirrovane {

/// The power of the Mac that a Mac root stands for: the root's own commands alone, never those of the machine that the
/// program runs on. Such a Mac announces nothing.
class RootPowerGate final : public PowerGate {
 public:
  RootPowerGate(PowerGateListener& listener, MacRoot root) : listener_(listener), root_(std::move(root)) {}

  void start() override;
  void letGo() override {}
  Result<std::unique_ptr<PowerHold>> keepAwake(const std::string& reason) override;
  std::optional<Failure> perform(PowerAct act) override;

 private:
  PowerGateListener& listener_;
  MacRoot root_;
};

}  // namespace cirrovane
