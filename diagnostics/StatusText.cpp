#include "diagnostics/StatusText.h"

#include <algorithm>
#include <limits>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr const char* kUnknown = "Unknown";

/// A text for a truth value that may be absent.
std::string choose(std::optional<bool> value, const char* ifSo, const char* otherwise) {
  return !value ? kUnknown : *value ? ifSo : otherwise;
}

std::string loadPart(std::optional<double> load) {
  return load ? fmt::format("{:.2f}", *load) : "-";
}

}  // namespace

std::string byteCountText(const AmountText& text, std::optional<std::int64_t> bytes) {
  return bytes ? text.byteCount(*bytes) : kUnknown;
}

std::string byteCountText(const AmountText& text, std::optional<std::uint64_t> bytes) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
  return bytes ? text.byteCount(static_cast<std::int64_t>(std::min(*bytes, kMost))) : kUnknown;
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
