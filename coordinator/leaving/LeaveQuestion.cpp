#include "coordinator/leaving/LeaveQuestion.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

constexpr std::array kQuestionTable = {
    QuestionEdge{QuestionState::calm, QuestionEvent::announcedUnsafe, QuestionState::asked, false},
    QuestionEdge{QuestionState::calm, QuestionEvent::announcedSafe, QuestionState::calm, true},

    QuestionEdge{QuestionState::asked, QuestionEvent::wait, QuestionState::staying, false},
    QuestionEdge{QuestionState::asked, QuestionEvent::leaveAnyway, QuestionState::calm, true},
    QuestionEdge{QuestionState::asked, QuestionEvent::silence, QuestionState::calm, true},
    QuestionEdge{QuestionState::asked, QuestionEvent::safe, QuestionState::calm, true},
    QuestionEdge{QuestionState::asked, QuestionEvent::calledOff, QuestionState::calm, false},

    QuestionEdge{QuestionState::staying, QuestionEvent::leaveAnyway, QuestionState::calm, true},
    QuestionEdge{QuestionState::staying, QuestionEvent::safe, QuestionState::calm, true},
    QuestionEdge{QuestionState::staying, QuestionEvent::calledOff, QuestionState::calm, false},
};

}  // namespace

std::span<const QuestionEdge> questionTable() {
  return kQuestionTable;
}

void LeaveQuestion::announce(bool isSafe, std::chrono::milliseconds within) {
  if (state_.value() == QuestionState::calm) {
    patience_ = std::min<std::chrono::milliseconds>(within, kPatience);
  }
  take(isSafe ? QuestionEvent::announcedSafe : QuestionEvent::announcedUnsafe);
}

void LeaveQuestion::awaitDeadline() {
  const std::chrono::nanoseconds left = deadline_ - monotonicClock_.sinceBoot();
  if (left.count() <= 0) {
    take(QuestionEvent::silence);
    return;
  }
  alarm_.set(left, [this] { awaitDeadline(); });
}

void LeaveQuestion::take(QuestionEvent event) {
  const auto* const edge = std::ranges::find_if(
      kQuestionTable, [&](const QuestionEdge& each) { return each.from == state_.value() && each.event == event; });
  if (edge == kQuestionTable.end()) {
    return;
  }
  if (edge->to == QuestionState::asked) {
    deadline_ = monotonicClock_.sinceBoot() + patience_;
    awaitDeadline();
  } else {
    alarm_.clear();
  }
  if (edge->letsGo) {
    letGo_();
  }
  if (edge->to != edge->from) {
    state_.set(edge->to);
  }
}

}  // namespace cirrovane
