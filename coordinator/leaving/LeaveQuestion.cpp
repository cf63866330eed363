#include "coordinator/leaving/LeaveQuestion.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

using State = QuestionState;
using Event = QuestionEvent;

constexpr std::array kTable = {
    QuestionEdge{State::calm, Event::announcedUnsafe, State::asked, false},
    QuestionEdge{State::calm, Event::announcedSafe, State::calm, true},

    QuestionEdge{State::asked, Event::wait, State::staying, false},
    QuestionEdge{State::asked, Event::leaveAnyway, State::calm, true},
    QuestionEdge{State::asked, Event::silence, State::calm, true},
    QuestionEdge{State::asked, Event::safe, State::calm, true},
    QuestionEdge{State::asked, Event::calledOff, State::calm, false},

    QuestionEdge{State::staying, Event::leaveAnyway, State::calm, true},
    QuestionEdge{State::staying, Event::safe, State::calm, true},
    QuestionEdge{State::staying, Event::calledOff, State::calm, false},
};

}  // namespace

std::span<const QuestionEdge> questionTable() {
  return kTable;
}

void LeaveQuestion::take(QuestionEvent event) {
  const auto* const edge = std::ranges::find_if(
      kTable, [&](const QuestionEdge& each) { return each.from == state_.value() && each.event == event; });
  if (edge == kTable.end()) {
    return;
  }
  if (edge->to == State::asked) {
    alarm_.set(kPatience, [this] { take(Event::silence); });
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
