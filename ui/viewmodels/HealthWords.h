#pragma once

#include "coordinator/Liveness.h"
#include "coordinator/VerdictStanding.h"
#include "core/HealthState.h"
#include "platform/TimeText.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <optional>
#include <string_view>

namespace cirrovane {

/// The words and the symbol of a health state.
struct HealthWords {
  /// The colour and the state in words: "Green Safe".
  std::string_view label;
  std::string_view symbol;
  /// The state alone: "Safe".
  std::string_view state;
};

/// Without a state the sign says neither good nor bad.
HealthWords healthWords(std::optional<HealthState> state);

/// The tone of the verdict itself: neutral while it is unknown, and for a YES that is stale.
Tone verdictTone(const ShownVerdict& verdict);

/// "as of 6:21:07 PM", with the day unless that is today, for a YES that is stale; empty otherwise.
QString asOfText(const ShownVerdict& verdict, const TimeText& timeText, Time now);

/// Why a YES is stale, as a sentence; empty when it is not.
QString staleReason(const ShownVerdict& verdict);

/// "Live", "Catching up" or "Not live", with the reason in a second sentence where there is one; empty before the first
/// scan.
QString livenessText(const ShownVerdict& verdict, const Liveness& liveness);

/// When and why a YES is stale, in one line.
QString staleNote(const ShownVerdict& verdict, const TimeText& timeText, Time now);

}  // namespace cirrovane
