#pragma once

#include "platform/CommandRunner.h"
#include "platform/posix/ChildProcess.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane {

/// Real child processes.
class PosixCommandRunner final : public CommandRunner {
 public:
  /// Where the program that a command names is. Callable on any thread, as the environment is.
  using ProgramPlace = std::function<std::string(const std::string& path)>;
  /// What children get; absent for our own.
  using ChildEnvironment = std::function<std::optional<Environment>()>;

  explicit PosixCommandRunner(
      ProgramPlace placeOf = [](const std::string& path) { return path; },
      ChildEnvironment environment = [] { return std::nullopt; })
      : placeOf_(std::move(placeOf)), environment_(std::move(environment)) {}

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override;
  bool isExecutable(const std::string& path) const override;

 private:
  ProgramPlace placeOf_;
  ChildEnvironment environment_;
};

}  // namespace cirrovane
