#include "diagnostics/StatusText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr const char* kUnknown = "Unknown";

std::string withoutTrailingZeros(std::string number) {
  number.erase(number.find_last_not_of('0') + 1);
  if (number.ends_with('.')) {
    number.pop_back();
  }
  return number;
}

/// A text for a truth value that may be absent.
std::string choose(std::optional<bool> value, const char* ifSo, const char* otherwise) {
  return !value ? kUnknown : *value ? ifSo : otherwise;
}

std::string loadPart(std::optional<double> load) {
  return load ? fmt::format("{:.2f}", *load) : "-";
}

}  // namespace

std::string byteCountText(std::uint64_t bytes) {
  // Up to here a number of megabytes does not round to 1000.
  constexpr std::uint64_t kMostMegabytes = 999'949'999;
  if (bytes == 0) {
    return "Zero KB";
  }
  const auto size = static_cast<double>(bytes);
  return bytes <= kMostMegabytes ? withoutTrailingZeros(fmt::format("{:.1f}", size / 1e6)) + " MB"
                                 : withoutTrailingZeros(fmt::format("{:.2f}", size / 1e9)) + " GB";
}

std::string byteCountText(std::optional<std::uint64_t> bytes) {
  return bytes ? byteCountText(*bytes) : kUnknown;
}

std::string byteCountText(std::optional<std::int64_t> bytes) {
  if (!bytes) {
    return kUnknown;
  }
  const auto magnitude = static_cast<std::uint64_t>(*bytes);
  return *bytes < 0 ? "-" + byteCountText(0 - magnitude) : byteCountText(magnitude);
}

std::string durationText(double seconds) {
  constexpr double kLongest = 1e15;
  constexpr std::int64_t kMinutesInHour = 60;
  constexpr std::int64_t kMinutesInDay = 24 * kMinutesInHour;
  // Written so that what is no number counts as nothing.
  auto minutes = seconds > 0 ? static_cast<std::int64_t>(std::min(seconds, kLongest)) / 60 : 0;
  if (minutes > kMinutesInDay && minutes % kMinutesInDay >= kMinutesInHour && minutes % kMinutesInHour != 0) {
    // Only two units are shown, so the minutes round the hours.
    minutes = (minutes + kMinutesInHour / 2) / kMinutesInHour * kMinutesInHour;
  }
  const std::array<std::pair<std::int64_t, char>, 3> units = {{
      {minutes / kMinutesInDay, 'd'},
      {minutes % kMinutesInDay / kMinutesInHour, 'h'},
      {minutes % kMinutesInHour, 'm'},
  }};
  std::string text;
  for (const auto& [count, unit] : units) {
    if (count > 0) {
      text += fmt::format("{}{}{}", text.empty() ? "" : " ", count, unit);
    }
  }
  return text.empty() ? "0m" : text;
}

std::string loadText(const SystemStatusSnapshot& status) {
  return fmt::format("{} / {} / {}", loadPart(status.load1m), loadPart(status.load5m), loadPart(status.load15m));
}

std::string cpuUsageText(const SystemStatusSnapshot& status) {
  return status.cpuUsagePercent ? fmt::format("{:.1f}%", *status.cpuUsagePercent) : kUnknown;
}

std::string temperatureText(const SystemStatusSnapshot& status) {
  return status.cpuTemperatureC ? fmt::format("{:.1f} C", *status.cpuTemperatureC)
                                : "Unknown (optional sensor required)";
}

std::optional<double> memoryUsageRatio(const SystemStatusSnapshot& status) {
  if (!status.memoryUsedBytes || status.memoryTotalBytes == 0) {
    return std::nullopt;
  }
  return static_cast<double>(*status.memoryUsedBytes) / static_cast<double>(status.memoryTotalBytes);
}

std::string batteryText(const SystemStatusSnapshot& status) {
  return status.batteryPercent ? fmt::format("{}%", *status.batteryPercent) : kUnknown;
}

std::string chargingText(const SystemStatusSnapshot& status) {
  return choose(status.batteryCharging, "Yes", "No");
}

std::string lowPowerModeText(const SystemStatusSnapshot& status) {
  return status.lowPowerMode ? "On" : "Off";
}

std::string reachabilityText(const SystemStatusSnapshot& status) {
  return choose(status.networkReachable, "Reachable", "Not Reachable");
}

}  // namespace cirrovane
