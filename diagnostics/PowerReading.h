#pragma once

#include "platform/SystemInformation.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace cirrovane {

/// The machine's battery; both values are absent where there is none.
struct BatteryStatus {
  /// Charge in percent.
  std::optional<std::int64_t> percent;
  std::optional<bool> charging;
};

/// The battery is the first source that tells how much it can hold.
BatteryStatus batteryStatus(const std::vector<PowerSource>& sources);

/// What the machine draws its power from.
struct PowerSupply {
  bool isOnMains = true;
  /// The charge that `batteryStatus` tells; absent where there is no battery.
  std::optional<int> batteryPercent;

  friend bool operator==(const PowerSupply&, const PowerSupply&) = default;
};

/// A machine without batteries is on mains power. One of whose batteries is drawn from is not, nor one that does not
/// say whether any is and charges none.
PowerSupply powerSupply(const std::vector<PowerSource>& sources);

/// "Nominal", "Fair", "Serious", "Critical", or "Unknown".
std::string_view thermalStateName(std::optional<ThermalState> state);

}  // namespace cirrovane
