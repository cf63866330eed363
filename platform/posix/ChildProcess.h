#pragma once

#include "platform/CommandRunner.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Texts of the form "NAME=value".
using Environment = std::vector<std::string>;

/// Runs the program at a path to its end, as CommandRunner::run does. With an environment it gets that one, without one
/// our own; the working directory is ours in either case. Time counts while the machine is awake.
std::optional<CommandResult> runChild(const std::string& executable, const std::vector<std::string>& arguments,
                                      CommandOutput output, const std::optional<Environment>& environment = {},
                                      TimeLimit limit = std::nullopt);

/// Whether the path leads to an ordinary file that may be executed.
bool isExecutableFile(const std::string& path);

}  // namespace cirrovane
