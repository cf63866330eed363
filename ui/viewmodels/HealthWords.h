#pragma once

#include "core/HealthState.h"

#include <string_view>

namespace cirrovane {

/// How a health state is shown wherever it appears.
struct HealthWords {
  /// The colour and the state in words: "Green Safe".
  std::string_view label;
  std::string_view symbol;
};

HealthWords healthWords(HealthState state);

}  // namespace cirrovane
