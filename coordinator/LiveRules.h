#pragma once

#include "coordinator/Liveness.h"

#include <chrono>
#include <cstddef>
#include <optional>

// When what of the live verdict happens, as numbers and pure functions. Times count from the machine's start, its sleep
// included.

namespace cirrovane {

using Uptime = std::chrono::nanoseconds;

/// Changes are collected for this long from the first of a burst on.
inline constexpr std::chrono::milliseconds kBurst{100};
/// A change that was told longer ago than this is to be in the report.
inline constexpr std::chrono::seconds kCatchUp{1};
/// While the verdict is NO, what blocks is read again this often, this many files at a time.
inline constexpr std::chrono::seconds kBlockedRereading{5};
inline constexpr std::size_t kMostBlockedReread = 2000;
/// What a full scan found besides the watch may have been told late by no more than this.
inline constexpr std::chrono::seconds kLateTelling{1};

/// What a full scan waits for besides its turn.
enum class ScanCause {
  /// The watch lost events, the machine slept, or the scan before disagreed with the watch.
  loss,
  /// What was told says YES, which only a full scan may.
  turnToYes,
  /// Somebody waits at a terminal, and the verdict is live, or is not.
  waitingLive,
  waitingNotLive,
  /// A cycle by the timer or because a window appeared, while the verdict is live. Any other cycle scans at once.
  cycleWhileLive,
};

/// The full scan before. Both absent before the first.
struct LastScan {
  std::optional<Uptime> end;
  Uptime duration{0};
};

/// The moment from which on a full scan for the cause may begin; zero where nothing has to be waited for.
Uptime scanDue(ScanCause cause, const LastScan& last);

/// A turned verdict starts a cycle once it has held this long, and this long after the cycle before began.
inline constexpr std::chrono::seconds kVerdictHold{15};
inline constexpr std::chrono::seconds kBetweenCycles{60};

/// When the verdict that turned then starts a cycle, by the beginning of the cycle before.
Uptime turnedCycleDue(Uptime turnedAt, std::optional<Uptime> lastCycleBegan);

}  // namespace cirrovane
