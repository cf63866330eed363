#include "platform/Machine.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>

namespace {

class Silent final : public cirrovane::PowerGateListener {
 public:
  void leaving(cirrovane::PowerAct /*act*/, std::chrono::milliseconds /*within*/) override {}
  void stays(cirrovane::PowerAct /*act*/) override {}
  void stands(std::optional<std::string> /*reasonAgainst*/) override {}
};

}  // namespace

/// Holds what a gate of the machine at a path can hold, says so, and goes on until it is killed.
int main(int count, char** arguments) {
  if (count != 2) {
    return 2;
  }
  auto machine = cirrovane::makeMachine(arguments[1]);
  if (!machine) {
    return 3;
  }
  Silent listener;
  const std::unique_ptr<cirrovane::PowerGate> gate = machine->makePowerGate(listener);
  gate->start();
  const auto hold = gate->keepAwake("Uploading 3 files");
  std::puts(hold ? "held" : hold.message().c_str());
  std::fflush(stdout);
  while (true) {
    pause();
  }
}
