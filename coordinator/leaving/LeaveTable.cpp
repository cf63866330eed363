#include "coordinator/leaving/LeaveTable.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

constexpr std::array kLeaveTable = {
    LeaveEdge{LeaveState::idle, LeaveEvent::asked, LeaveState::waiting, {}},

    LeaveEdge{LeaveState::waiting, LeaveEvent::firstYes, LeaveState::confirming, {}},
    LeaveEdge{LeaveState::waiting, LeaveEvent::yes, LeaveState::vouching, {}},
    LeaveEdge{LeaveState::waiting, LeaveEvent::cancelled, LeaveState::idle, LeaveOutcome::cancelled},
    LeaveEdge{LeaveState::waiting, LeaveEvent::timeUp, LeaveState::idle, LeaveOutcome::timeUp},
    LeaveEdge{LeaveState::waiting, LeaveEvent::slept, LeaveState::idle, LeaveOutcome::slept},

    LeaveEdge{LeaveState::confirming, LeaveEvent::no, LeaveState::waiting, {}},
    LeaveEdge{LeaveState::confirming, LeaveEvent::yes, LeaveState::vouching, {}},
    LeaveEdge{LeaveState::confirming, LeaveEvent::cancelled, LeaveState::idle, LeaveOutcome::cancelled},
    LeaveEdge{LeaveState::confirming, LeaveEvent::timeUp, LeaveState::idle, LeaveOutcome::timeUp},
    LeaveEdge{LeaveState::confirming, LeaveEvent::slept, LeaveState::idle, LeaveOutcome::slept},

    LeaveEdge{LeaveState::vouching, LeaveEvent::no, LeaveState::waiting, {}},
    // Changes are not told any more, so that one scan alone vouches for nothing.
    LeaveEdge{LeaveState::vouching, LeaveEvent::firstYes, LeaveState::confirming, {}},
    LeaveEdge{LeaveState::vouching, LeaveEvent::complete, LeaveState::acting, {}},
    LeaveEdge{LeaveState::vouching, LeaveEvent::lastingGaps, LeaveState::idle, LeaveOutcome::lastingGaps},
    LeaveEdge{LeaveState::vouching, LeaveEvent::cancelled, LeaveState::idle, LeaveOutcome::cancelled},
    LeaveEdge{LeaveState::vouching, LeaveEvent::timeUp, LeaveState::idle, LeaveOutcome::timeUp},
    LeaveEdge{LeaveState::vouching, LeaveEvent::slept, LeaveState::idle, LeaveOutcome::slept},

    // What was asked of the machine cannot be taken back.
    LeaveEdge{LeaveState::acting, LeaveEvent::performed, LeaveState::idle, LeaveOutcome::done},
    LeaveEdge{LeaveState::acting, LeaveEvent::refused, LeaveState::idle, LeaveOutcome::refused},
    LeaveEdge{LeaveState::acting, LeaveEvent::slept, LeaveState::idle, LeaveOutcome::done},
};

}  // namespace

std::span<const LeaveEdge> leaveTable() {
  return kLeaveTable;
}

const LeaveEdge* leaveEdge(LeaveState from, LeaveEvent event) {
  const auto* const edge = std::ranges::find_if(
      kLeaveTable, [&](const LeaveEdge& each) { return each.from == from && each.event == event; });
  return edge != kLeaveTable.end() ? edge : nullptr;
}

}  // namespace cirrovane
