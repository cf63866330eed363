#pragma once

#include "coordinator/VerdictStanding.h"
#include "core/HealthState.h"
#include "platform/TimeText.h"

#include <QString>
#include <optional>
#include <string_view>

namespace cirrovane {

/// How a health state is shown wherever it appears.
struct HealthWords {
  /// The colour and the state in words: "Green Safe".
  std::string_view label;
  std::string_view symbol;
};

/// Without a state nothing is known yet, and the sign says neither good nor bad.
HealthWords healthWords(std::optional<HealthState> state);

/// The state's name in the records, by which its colour is known; empty without a state.
QString stateName(std::optional<HealthState> state);

/// The state whose colour the verdict itself has: absent while it is unknown, and for a YES that is stale.
std::optional<HealthState> verdictState(const ShownVerdict& verdict);

/// "as of 6:21:07 PM" for a YES that is stale; empty otherwise.
QString asOfText(const ShownVerdict& verdict, const TimeText& timeText);

/// Why a YES is stale, as a sentence; empty when it is not.
QString staleReason(const ShownVerdict& verdict);

/// Both in one line.
QString staleNote(const ShownVerdict& verdict, const TimeText& timeText);

}  // namespace cirrovane
