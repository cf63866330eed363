#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane::test {

/// How a child process ended and what it printed.
struct ChildResult {
  /// Absent when a signal ended it.
  std::optional<int> exitStatus;
  std::string out;
  std::string err;
};

/// What a child process is started with besides its arguments.
struct ChildOptions {
  /// Empty: the test's own.
  std::string workingDirectory;
  /// Variables to set over the test's own environment.
  std::map<std::string, std::string> environment;
};

/// Runs a program by its path to its end. Its standard input is empty, its output no terminal.
ChildResult runProgram(const std::string& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options = {});

}  // namespace cirrovane::test
