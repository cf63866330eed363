#pragma once

#include "diagnostics/SystemStatusSnapshot.h"
#include "platform/AmountText.h"

#include <cstdint>
#include <optional>
#include <string>

namespace cirrovane {

// The values of a status sample as texts for people, on every surface the same. Numbers that no system writes have
// a decimal point whatever the user's locale.

/// A size that may be absent: "17.18 GB", or "Unknown".
std::string byteCountText(const AmountText& text, std::optional<std::int64_t> bytes);
/// What is more than a file can hold is told as that much.
std::string byteCountText(const AmountText& text, std::optional<std::uint64_t> bytes);

/// "1.52 / 1.31 / 1.20", with "-" in the place of an absent one.
std::string loadText(const SystemStatusSnapshot& status);
/// "7.3%", or "Unknown".
std::string cpuUsageText(const SystemStatusSnapshot& status);
/// "61.8 C", or that there is no sensor to read.
std::string temperatureText(const SystemStatusSnapshot& status);
/// Memory in use as a share of all, 0 to 1; absent when either is unknown.
std::optional<double> memoryUsageRatio(const SystemStatusSnapshot& status);
/// "87%", or "Unknown".
std::string batteryText(const SystemStatusSnapshot& status);
/// "Yes", "No" or "Unknown".
std::string chargingText(const SystemStatusSnapshot& status);
/// "On" or "Off".
std::string lowPowerModeText(const SystemStatusSnapshot& status);
/// "Reachable", "Not Reachable" or "Unknown".
std::string reachabilityText(const SystemStatusSnapshot& status);

}  // namespace cirrovane
