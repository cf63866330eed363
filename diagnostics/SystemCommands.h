#pragma once

#include "platform/CommandRunner.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The cloud provider's public web host, by which the network is judged.
inline constexpr const char* kCloudProbeHost = "www.icloud.com";

/// What a command printed on both of its streams. Absent unless it exits with status 0 and prints UTF-8; text that is
/// empty is output too.
std::optional<std::string> commandOutput(const CommandRunner& runner, const std::string& executable,
                                         const std::vector<std::string>& arguments);

/// One sample of top, without its list of processes.
std::optional<std::string> topSample(const CommandRunner& runner);

/// What the system says of the way to the cloud host.
std::optional<std::string> cloudReachability(const CommandRunner& runner);

/// Whether a report of cloudReachability() counts as reachable: it speaks of reaching at all. A report that the host is
/// not reachable does too, so that only a report of neither kind makes a user doubt the network.
bool saysReachable(const std::string& report);

}  // namespace cirrovane
