#include "platform/linux/macroot/RootPowerGate.h"

#include "base/DisplayText.h"
#include "base/Path.h"
#include "platform/Clock.h"
#include "platform/CommandRunner.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/posix/ChildProcess.h"
#include "platform/posix/LimitedChild.h"

#include <chrono>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

struct MacCommand {
  std::string path;
  std::vector<std::string> arguments;
};

constexpr milliseconds kTimeToAgree = std::chrono::seconds(10);
/// Within it a command that refuses has usually ended.
constexpr milliseconds kTimeToRefuse{100};

MacCommand commandFor(PowerAct act) {
  return act == PowerAct::sleep ? MacCommand{"/usr/bin/pmset", {"sleepnow"}}
                                : MacCommand{"/sbin/shutdown", {"-h", "now"}};
}

/// Why the command is not to be run; absent when it is the root's own.
std::optional<Failure> objectionTo(const MacRoot& root, const std::string& path) {
  if (root.path() == "/") {
    return Failure{"A Mac root at \"/\" may not act on the machine itself."};
  }
  const std::string realPath = root.realPath(path);
  if (!isExecutableFile(realPath)) {
    return Failure{fmt::format("This Mac has no {}.", path)};
  }
  // A link may lead out of the root, to the machine's own command.
  std::error_code error;
  const fs::path program = fs::canonical(realPath, error);
  const fs::path folder = error ? fs::path() : fs::canonical(root.path(), error);
  if (error || !isAtOrBelow(program.native(), folder.native())) {
    return Failure{fmt::format("This Mac's {} leads to the machine itself.", path)};
  }
  return std::nullopt;
}

Failure refusal(const std::string& path, const std::string& output) {
  const std::string said = displayOutput(output);
  return {said.empty() ? fmt::format("{} refuses it.", path) : fmt::format("{} refuses it: {}", path, said)};
}

/// The process that keeps the Mac awake.
class RootHold final : public PowerHold {
 public:
  explicit RootHold(std::unique_ptr<LimitedChild> child) : child_(std::move(child)) {}

 private:
  std::unique_ptr<LimitedChild> child_;
};

/// Whether the child fails at once.
bool refuses(LimitedChild& child) {
  const SystemMonotonicClock clock;
  const auto began = clock.awakeSinceBoot();
  const Pauses pauses(began);
  for (auto now = began; now - began < kTimeToRefuse; now = clock.awakeSinceBoot()) {
    if (child.hasEnded()) {
      return true;
    }
    pauseFor(pauses.next(now));
  }
  return false;
}

}  // namespace

void RootPowerGate::start() {
  listener_.stands("A folder that stands for a Mac does not tell before it sleeps or shuts down.");
}

Result<std::unique_ptr<PowerHold>> RootPowerGate::keepAwake(const std::string& /*reason*/) {
  const std::string path = "/usr/bin/caffeinate";
  if (auto objection = objectionTo(root_, path)) {
    return std::move(*objection);
  }
  // It waits for our end by itself: that is all that ends it when we are killed.
  auto child = startCommandOf(root_, path, {"-i", "-w", std::to_string(getpid())});
  if (!child) {
    return Failure{fmt::format("{} cannot be started.", path)};
  }
  if (refuses(*child)) {
    return refusal(path, "");
  }
  return std::unique_ptr<PowerHold>(std::make_unique<RootHold>(std::move(child)));
}

std::optional<Failure> RootPowerGate::perform(PowerAct act) {
  const MacCommand command = commandFor(act);
  if (auto objection = objectionTo(root_, command.path)) {
    return objection;
  }
  const auto result =
      commandRunnerOf(root_)->run(command.path, command.arguments, CommandOutput::collected, kTimeToAgree);
  if (!result) {
    return Failure{fmt::format("{} cannot be started.", command.path)};
  }
  if (result->isOutOfTime) {
    return Failure{fmt::format("{} does not answer.", command.path)};
  }
  return result->hasSucceeded() ? std::nullopt : std::optional(refusal(command.path, result->output));
}

}  // namespace cirrovane
