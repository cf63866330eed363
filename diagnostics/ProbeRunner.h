#pragma once

#include "platform/Clock.h"
#include "platform/CommandRunner.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace cirrovane {

/// How long the probes of a cycle may take.
struct ProbeLimits {
  /// Each of them.
  std::chrono::milliseconds probe = std::chrono::seconds(10);
  /// All together, from the beginning of the first.
  std::chrono::milliseconds cycle = std::chrono::seconds(30);
};

/// What became of a probe.
struct ProbeResult {
  /// False when it was not even started, for want of time.
  bool isReached = true;
  /// Absent also when it could not be started or was not over in time.
  std::optional<CommandResult> command;
};

/// How many probes told nothing, by what became of them.
struct ProbeFailures {
  /// The system could not start them.
  std::int64_t notStarted = 0;
  std::int64_t outOfTime = 0;
  /// There was no time left to start them.
  std::int64_t notReached = 0;

  friend bool operator==(const ProbeFailures&, const ProbeFailures&) = default;
};

/// Runs the commands of one cycle, of diagnostics and status together, so that none that hangs holds a cycle up: an
/// executable that was not over in time is not started again, and none is when the cycle's time is used up. For one
/// thread after the other.
class ProbeRunner {
 public:
  ProbeRunner(const CommandRunner& runner, const MonotonicClock& clock, const ProbeLimits& limits = {})
      : runner_(runner), clock_(clock), limits_(limits) {}

  /// Runs the program at an absolute path within what time there is.
  ProbeResult run(const std::string& executable, const std::vector<std::string>& arguments, CommandOutput output);

  /// So far.
  const ProbeFailures& failures() const { return failures_; }

  /// Whether there is an executable file at the path.
  bool isExecutable(const std::string& path) const { return runner_.isExecutable(path); }

 private:
  /// What the next probe may take; none left when that is not positive.
  std::chrono::milliseconds timeForNext();

  const CommandRunner& runner_;
  const MonotonicClock& clock_;
  ProbeLimits limits_;
  /// When the first probe began.
  std::optional<std::chrono::nanoseconds> began_;
  std::set<std::string> hung_;
  ProbeFailures failures_;
};

}  // namespace cirrovane
