#pragma once

#include "platform/CommandRunner.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Commands that only answer. One that was given no answer cannot be started.
class FakeCommandRunner final : public CommandRunner {
 public:
  using CommandLine = std::vector<std::string>;

  /// Answers this command line, the executable first.
  void answer(const CommandLine& line, CommandResult result) { answers_[line] = std::move(result); }
  void answer(const CommandLine& line, std::string output) { answers_[line] = {0, std::move(output)}; }
  /// Lets this command line end by its limit alone.
  void hang(const CommandLine& line) { answers_[line] = {std::nullopt, "", true}; }
  void forget(const CommandLine& line) { answers_.erase(line); }
  void makeExecutable(const std::string& path) { executables_.insert(path); }

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override {
    CommandLine line = {executable};
    line.insert(line.end(), arguments.begin(), arguments.end());
    ran_.push_back(line);
    limits_.push_back(limit);
    const auto found = answers_.find(line);
    if (found == answers_.end()) {
      return std::nullopt;
    }
    return CommandResult{found->second.exitStatus,
                         output == CommandOutput::collected ? found->second.output : std::string(),
                         found->second.isOutOfTime};
  }
  bool isExecutable(const std::string& path) const override { return executables_.contains(path); }

  /// The command lines that were asked for, in order.
  const std::vector<CommandLine>& ran() const { return ran_; }
  /// What each of them was given.
  const std::vector<TimeLimit>& limits() const { return limits_; }

 private:
  std::map<CommandLine, CommandResult> answers_;
  std::set<std::string> executables_;
  mutable std::vector<CommandLine> ran_;
  mutable std::vector<TimeLimit> limits_;
};

}  // namespace cirrovane::test
