#pragma once

#include "platform/CommandRunner.h"
#include "platform/posix/LimitedChild.h"

#include <memory>
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

/// Starts the program at a path for as long as the result lives, with nothing to read and nobody who listens; nullptr
/// when it cannot be started. The rest is as with runChild.
std::unique_ptr<LimitedChild> startChild(const std::string& executable, const std::vector<std::string>& arguments,
                                         const std::optional<Environment>& environment = {});

/// Whether the path leads to an ordinary file that may be executed.
bool isExecutableFile(const std::string& path);

}  // namespace cirrovane
