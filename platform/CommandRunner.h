#pragma once

#include <chrono>
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

/// How long a command may take; absent for as long as it likes.
using TimeLimit = std::optional<std::chrono::milliseconds>;

/// How a command ended.
struct CommandResult {
  /// Absent when a signal ended it, or its time was up.
  std::optional<int> exitStatus;
  /// What it printed on standard output and standard error, in the order in which it printed; any bytes. Empty when
  /// the output was discarded, or its time was up.
  std::string output;
  /// Whether it was ended because its time was up.
  bool isOutOfTime = false;

  bool hasSucceeded() const { return exitStatus == 0; }
};

/// Runs the machine's own programs. Callable on any thread.
class CommandRunner {
 public:
  virtual ~CommandRunner() = default;

  /// Runs the program at an absolute path, without a shell, and waits for its end. It has an empty standard input and
  /// no descriptor of ours. Absent when it cannot be started, or prints more than any tool that is worth listening to.
  ///
  /// Within a limit it leads a process group of its own, which is killed when the time is up; whoever left that group
  /// is not waited for, neither then nor when the program itself has ended.
  virtual std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                           CommandOutput output, TimeLimit limit) const = 0;

  /// Whether there is an executable file at the path.
  virtual bool isExecutable(const std::string& path) const = 0;
};

/// Kills the groups of all commands that run within a limit, and lets no other begin: for a program that is about to
/// end, since nobody would end them after it. Takes at most some milliseconds. Callable on any thread, and by a signal
/// handler.
void endLimitedCommands();

/// Makes every signal by which a user ends a program do the same before it ends this one as usual. A signal that is
/// ignored stays so. To be called before there are threads.
void endLimitedCommandsOnSignals();

}  // namespace cirrovane
