#include "diagnostics/SystemCommands.h"

#include "base/UTF8.h"

#include <utility>

namespace cirrovane {

ProbeText commandOutput(ProbeRunner& probes, const std::string& executable, const std::vector<std::string>& arguments) {
  ProbeResult result = probes.run(executable, arguments, CommandOutput::collected);
  if (!result.command || !result.command->hasSucceeded() || !isValidUTF8(result.command->output)) {
    return {result.isReached, std::nullopt};
  }
  return {result.isReached, std::move(result.command->output)};
}

ProbeText topSample(ProbeRunner& probes) {
  return commandOutput(probes, "/usr/bin/top", {"-l", "1", "-n", "0"});
}

ProbeText cloudReachability(ProbeRunner& probes) {
  return commandOutput(probes, "/usr/sbin/scutil", {"-r", kCloudProbeHost});
}

bool saysReachable(const std::string& report) {
  return report.find("Reachable") != std::string::npos;
}

}  // namespace cirrovane
