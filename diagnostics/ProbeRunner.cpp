#include "diagnostics/ProbeRunner.h"

#include <algorithm>

namespace cirrovane {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

ProbeResult ProbeRunner::run(const std::string& executable, const std::vector<std::string>& arguments,
                             CommandOutput output) {
  const milliseconds time = timeForNext();
  if (time <= milliseconds::zero() || hung_.contains(executable)) {
    ++failures_.notReached;
    return {.isReached = false, .command = std::nullopt};
  }
  std::optional<CommandResult> result = runner_.run(executable, arguments, output, time);
  if (!result) {
    ++failures_.notStarted;
  } else if (result->isOutOfTime) {
    ++failures_.outOfTime;
    hung_.insert(executable);
    result.reset();
  }
  return {.isReached = true, .command = std::move(result)};
}

milliseconds ProbeRunner::timeForNext() {
  const nanoseconds now = clock_.sinceBoot();
  if (!began_) {
    began_ = now;
  }
  return std::min(limits_.probe, std::chrono::duration_cast<milliseconds>(limits_.cycle - (now - *began_)));
}

}  // namespace cirrovane
