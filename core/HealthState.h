#pragma once

#include "base/JSONRecord.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cirrovane {

/// The traffic light of a report, a folder or a history entry.
enum class HealthState : std::uint8_t { safe, warning, danger };

/// Every state with its name in files, in declaration order.
inline constexpr std::array<RawValue<HealthState>, 3> kHealthStates = {{
    {HealthState::safe, "safe"},
    {HealthState::warning, "warning"},
    {HealthState::danger, "danger"},
}};

constexpr std::string_view rawValue(HealthState state) {
  return kHealthStates.at(static_cast<std::size_t>(state)).text;
}
/// The state that a raw value names; false, and the target untouched, for any other text.
constexpr bool fromRawValue(std::string_view text, HealthState& target) {
  return caseOfRawValue(kHealthStates, text, target);
}

}  // namespace cirrovane
