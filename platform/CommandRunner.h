#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What becomes of the text that a command prints.
enum class CommandOutput {
  /// It is handed back.
  collected,
  /// Nobody reads it, and the command is not held up by that.
  discarded,
};

/// How a command ended.
struct CommandResult {
  /// Absent when a signal ended it.
  std::optional<int> exitStatus;
  /// What it printed on standard output and standard error, in the order in which it printed; any bytes. Empty when
  /// the output was discarded.
  std::string output;

  bool hasSucceeded() const { return exitStatus == 0; }
};

/// Runs the machine's own programs. Callable on any thread.
class CommandRunner {
 public:
  virtual ~CommandRunner() = default;

  /// Runs the program at an absolute path, without a shell, and waits for its end, however long that takes. It has an
  /// empty standard input and no descriptor of ours. Absent when it cannot be started, or prints more than any tool
  /// that is worth listening to.
  virtual std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                           CommandOutput output) const = 0;

  /// Whether there is an executable file at the path.
  virtual bool isExecutable(const std::string& path) const = 0;
};

}  // namespace cirrovane
