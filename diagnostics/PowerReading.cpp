#include "diagnostics/PowerReading.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cirrovane {
namespace {

/// The nearest integer; for a number beyond all integers the last one on that side.
std::int64_t rounded(double value) {
  constexpr double kBeyond = 0x1p62;
  return std::llround(std::clamp(value, -kBeyond, kBeyond));
}

}  // namespace

BatteryStatus batteryStatus(const std::vector<PowerSource>& sources) {
  for (const PowerSource& source : sources) {
    const std::int64_t maximum = source.maximumCapacity.value_or(0);
    if (maximum >= 1) {
      const double share = source.currentCapacity.value_or(0) / static_cast<double>(maximum);
      return {rounded(share * 100), source.isCharging};
    }
  }
  return {};
}

PowerSupply powerSupply(const std::vector<PowerSource>& sources) {
  const auto says = [&](std::optional<bool> PowerSource::*member, bool value) {
    return std::ranges::find(sources, value, member) != sources.end();
  };
  PowerSupply supply;
  if (const auto percent = batteryStatus(sources).percent) {
    constexpr std::int64_t kBeyond = std::numeric_limits<int>::max();
    supply.batteryPercent = static_cast<int>(std::clamp(*percent, -kBeyond, kBeyond));
  }
  if (says(&PowerSource::isOnMains, false)) {
    supply.isOnMains = false;
  } else if (!says(&PowerSource::isOnMains, true)) {
    supply.isOnMains = !supply.batteryPercent || says(&PowerSource::isCharging, true);
  }
  return supply;
}

std::string_view thermalStateName(std::optional<ThermalState> state) {
  if (!state) {
    return "Unknown";
  }
  switch (*state) {
    case ThermalState::nominal:
      return "Nominal";
    case ThermalState::fair:
      return "Fair";
    case ThermalState::serious:
      return "Serious";
    case ThermalState::critical:
      break;
  }
  return "Critical";
}

}  // namespace cirrovane
