#include "coordinator/leaving/LeaveTable.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

using State = LeaveState;
using Event = LeaveEvent;
using Outcome = LeaveOutcome;

constexpr std::array kTable = {
    LeaveEdge{State::idle, Event::asked, State::waiting, {}},

    LeaveEdge{State::waiting, Event::firstYes, State::confirming, {}},
    LeaveEdge{State::waiting, Event::yes, State::vouching, {}},
    LeaveEdge{State::waiting, Event::cancelled, State::idle, Outcome::cancelled},
    LeaveEdge{State::waiting, Event::timeUp, State::idle, Outcome::timeUp},
    LeaveEdge{State::waiting, Event::slept, State::idle, Outcome::slept},

    LeaveEdge{State::confirming, Event::no, State::waiting, {}},
    LeaveEdge{State::confirming, Event::yes, State::vouching, {}},
    LeaveEdge{State::confirming, Event::cancelled, State::idle, Outcome::cancelled},
    LeaveEdge{State::confirming, Event::timeUp, State::idle, Outcome::timeUp},
    LeaveEdge{State::confirming, Event::slept, State::idle, Outcome::slept},

    LeaveEdge{State::vouching, Event::no, State::waiting, {}},
    // Changes are not told any more, so that one scan alone vouches for nothing.
    LeaveEdge{State::vouching, Event::firstYes, State::confirming, {}},
    LeaveEdge{State::vouching, Event::complete, State::acting, {}},
    LeaveEdge{State::vouching, Event::lastingGaps, State::idle, Outcome::lastingGaps},
    LeaveEdge{State::vouching, Event::cancelled, State::idle, Outcome::cancelled},
    LeaveEdge{State::vouching, Event::timeUp, State::idle, Outcome::timeUp},
    LeaveEdge{State::vouching, Event::slept, State::idle, Outcome::slept},

    // What was asked of the machine cannot be taken back.
    LeaveEdge{State::acting, Event::performed, State::idle, Outcome::done},
    LeaveEdge{State::acting, Event::refused, State::idle, Outcome::refused},
    LeaveEdge{State::acting, Event::slept, State::idle, Outcome::done},
};

}  // namespace

std::span<const LeaveEdge> leaveTable() {
  return kTable;
}

const LeaveEdge* leaveEdge(LeaveState from, LeaveEvent event) {
  const auto* const edge =
      std::ranges::find_if(kTable, [&](const LeaveEdge& each) { return each.from == from && each.event == event; });
  return edge != kTable.end() ? edge : nullptr;
}

}  // namespace cirrovane
