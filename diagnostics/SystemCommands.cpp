#include "diagnostics/SystemCommands.h"

#include "platform/UTF8.h"

#include <utility>

namespace cirrovane {

std::optional<std::string> commandOutput(const CommandRunner& runner, const std::string& executable,
                                         const std::vector<std::string>& arguments) {
  std::optional<CommandResult> result = runner.run(executable, arguments, CommandOutput::collected);
  if (!result || !result->hasSucceeded() || !isValidUTF8(result->output)) {
    return std::nullopt;
  }
  return std::move(result->output);
}

std::optional<std::string> topSample(const CommandRunner& runner) {
  return commandOutput(runner, "/usr/bin/top", {"-l", "1", "-n", "0"});
}

std::optional<std::string> cloudReachability(const CommandRunner& runner) {
  return commandOutput(runner, "/usr/sbin/scutil", {"-r", kCloudProbeHost});
}

bool saysReachable(const std::string& report) {
  return report.find("Reachable") != std::string::npos;
}

}  // namespace cirrovane
