#pragma once

#include "core/HealthState.h"
#include "core/SyncHealthReport.h"
#include "platform/Clock.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace cirrovane {

/// The moment up to which a verdict is known to hold, by the clock on the wall and by those that nobody can set.
struct Confirmation {
  Time at;
  /// Sleep counted.
  std::chrono::nanoseconds sinceBoot{0};
  /// Sleep left out.
  std::chrono::nanoseconds awake{0};
};

/// The present as a confirmation. Callable on any thread.
Confirmation confirmationNow(const Clock& clock, const MonotonicClock& monotonicClock);

/// What the latest report is worth now.
enum class VerdictStanding : std::uint8_t {
  /// No scan has ended yet.
  unknown,
  confirmed,
  /// The scan began too long ago.
  expired,
  /// The machine slept after the scan began, and nobody knows what changed meanwhile.
  slept,
};

/// A shorter sleep is none: the two clocks are read one after the other, and so differ a little without any.
inline constexpr std::chrono::milliseconds kShortestSleep{500};

/// A YES that was confirmed longer ago is stale.
inline constexpr std::chrono::seconds kStaleAfter{180};

/// The standing of a verdict that was confirmed then; `unknown` without a confirmation.
VerdictStanding standingOf(const std::optional<Confirmation>& confirmation, const MonotonicClock& monotonicClock);

/// How long the verdict still is `confirmed` if the machine does not sleep; zero when it no longer is.
std::chrono::nanoseconds timeUntilStale(const Confirmation& confirmation, const MonotonicClock& monotonicClock);

/// The verdict as window, panel and tray icon show it.
struct ShownVerdict {
  VerdictStanding standing = VerdictStanding::unknown;
  bool safeToClose = false;
  HealthState status = HealthState::warning;
  /// Absent before the first scan.
  std::optional<Time> confirmedAt;

  /// Whether a scan has ended at all.
  bool isKnown() const { return standing != VerdictStanding::unknown; }
  /// A YES that nobody can vouch for any more. A NO stays one.
  bool isStale() const { return safeToClose && isKnown() && standing != VerdictStanding::confirmed; }
  /// The state whose sign stands beside the verdict: safe only beside a YES that holds. Absent before the first scan.
  std::optional<HealthState> sign() const;

  friend bool operator==(const ShownVerdict&, const ShownVerdict&) = default;
};

ShownVerdict shownVerdict(const SyncHealthReport& report, const std::optional<Confirmation>& confirmation,
                          const MonotonicClock& monotonicClock);

}  // namespace cirrovane
