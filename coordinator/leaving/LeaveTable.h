#pragma once

#include <cstdint>
#include <optional>
#include <span>

// A wait to leave, as a table: where it stands, what happens, and where that takes it. Pure; `docs/leaving.md` draws
// it.

namespace cirrovane {

/// Where a wait to leave stands.
enum class LeaveState : std::uint8_t {
  idle,
  /// For a YES.
  waiting,
  /// A scan said YES while changes are not told, and another one has to.
  confirming,
  /// The verdict is a YES that holds, and the coverage is looked at until it is complete.
  vouching,
  /// The machine was asked to leave.
  acting,
};

/// What happens to a wait to leave.
enum class LeaveEvent : std::uint8_t {
  asked,
  /// The verdict is NO, is stale, or is not up to date.
  no,
  /// The first YES of two.
  firstYes,
  yes,
  /// Looked at after the YES, the coverage leaves nothing out.
  complete,
  /// Two looks found the same gaps, and time alone closes none of them.
  lastingGaps,
  performed,
  refused,
  cancelled,
  timeUp,
  /// The machine slept, and woke again.
  slept,
};

/// How a wait to leave ended.
enum class LeaveOutcome : std::uint8_t { done, refused, cancelled, timeUp, slept, lastingGaps };

struct LeaveEdge {
  LeaveState from;
  LeaveEvent event;
  LeaveState to;
  /// Where the wait ends; absent where it goes on.
  std::optional<LeaveOutcome> outcome;

  friend bool operator==(const LeaveEdge&, const LeaveEdge&) = default;
};

/// Every edge, by the states in their order.
std::span<const LeaveEdge> leaveTable();

/// The edge that the event takes; nullptr where it changes nothing.
const LeaveEdge* leaveEdge(LeaveState from, LeaveEvent event);

}  // namespace cirrovane
