#pragma once

#include "diagnostics/ProbeRunner.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The cloud provider's public web host, by which the network is judged.
inline constexpr const char* kCloudProbeHost = "www.icloud.com";

/// What a probe printed.
struct ProbeText {
  /// False when the probe was not even started, for want of time.
  bool isReached = true;
  /// Absent when there is no output: the command failed, was not over in time, or was not started.
  std::optional<std::string> text;
};

/// What a command printed on both of its streams. Absent unless it exits with status 0 and prints UTF-8; text that is
/// empty is output too.
ProbeText commandOutput(ProbeRunner& probes, const std::string& executable, const std::vector<std::string>& arguments);

/// One sample of top, without its list of processes.
ProbeText topSample(ProbeRunner& probes);

/// What the system says of the way to the cloud host.
ProbeText cloudReachability(ProbeRunner& probes);

/// Whether a report of cloudReachability() counts as reachable: it speaks of reaching at all. A report that the host is
/// not reachable does too, so that only a report of neither kind makes a user doubt the network.
bool saysReachable(const std::string& report);

}  // namespace cirrovane
