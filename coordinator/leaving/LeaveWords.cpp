#include "coordinator/leaving/LeaveWords.h"

#include <cstdint>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

bool isShutdown(const LeaveStanding& standing) {
  return standing.wish.act == PowerAct::shutdown;
}

std::string items(std::int64_t count) {
  return fmt::format("{} {}", count, count == 1 ? "item" : "items");
}

}  // namespace

std::string waitSentence(const LeaveStanding& standing) {
  const std::string_view act = isShutdown(standing) ? "Shuts down" : "Sleeps";
  switch (standing.state) {
    case LeaveState::idle:
      return "";
    case LeaveState::waiting:
      return fmt::format("{} as soon as it is safe.", act);
    case LeaveState::confirming:
      return fmt::format("{} as soon as a second scan says that it is safe.", act);
    case LeaveState::vouching:
      return standing.gaps > 0 ? fmt::format("{} as soon as {} that the scan leaves out can be vouched for.", act,
                                             items(standing.gaps))
                               : fmt::format("{} once what the scan leaves out was looked at.", act);
    case LeaveState::acting:
      break;
  }
  return isShutdown(standing) ? "Shutting down." : "Going to sleep.";
}

std::string outcomeSentence(const LeaveStanding& standing) {
  if (!standing.outcome) {
    return "";
  }
  const std::string_view act = isShutdown(standing) ? "shut down" : "sleep";
  switch (*standing.outcome) {
    case LeaveOutcome::refused:
      return fmt::format("It is safe, but this Mac does not {}: {}", act, standing.refusal);
    case LeaveOutcome::slept:
      return "This Mac slept before it was safe, so nothing waits any more.";
    case LeaveOutcome::timeUp:
      return "The time is up, and it is not safe yet.";
    case LeaveOutcome::lastingGaps:
      return fmt::format("This Mac does not {}: waiting changes nothing for {} that the scan leaves out.", act,
                         items(standing.gaps));
    case LeaveOutcome::done:
    case LeaveOutcome::cancelled:
      break;
  }
  return "";
}

std::string questionSentence(QuestionState state) {
  switch (state) {
    case QuestionState::calm:
      break;
    case QuestionState::asked:
      return "Work on this Mac has not reached iCloud Drive. Without an answer it goes on in 35 seconds.";
    case QuestionState::staying:
      return "Goes on by itself as soon as it is safe. The system may not wait that long.";
  }
  return "";
}

}  // namespace cirrovane
