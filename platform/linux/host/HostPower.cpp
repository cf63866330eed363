#include "platform/linux/host/HostPower.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

namespace cirrovane {
namespace {

namespace fs = std::filesystem;

/// The one line of an attribute of a device; empty when it has none.
std::string attribute(const fs::path& device, std::string_view name) {
  std::ifstream file(device / name);
  std::string line;
  std::getline(file, line);
  return line;
}

std::optional<std::int64_t> numericAttribute(const fs::path& device, std::string_view name) {
  const std::string text = attribute(device, name);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && !text.empty() ? std::optional(value) : std::nullopt;
}

PowerSource describe(const fs::path& device) {
  PowerSource source;
  const std::string status = attribute(device, "status");
  if (!status.empty() && status != "Unknown") {
    source.isCharging = status == "Charging";
    source.isOnMains = status != "Discharging";
  }
  // A battery gives a percentage, or energy, or charge, by its driver's choice.
  if (const auto percent = numericAttribute(device, "capacity")) {
    source.currentCapacity = static_cast<double>(*percent);
    source.maximumCapacity = 100;
    return source;
  }
  for (const std::string unit : {"energy", "charge"}) {
    const auto now = numericAttribute(device, unit + "_now");
    const auto full = numericAttribute(device, unit + "_full");
    if (now && full) {
      source.currentCapacity = static_cast<double>(*now);
      source.maximumCapacity = *full;
      break;
    }
  }
  return source;
}

}  // namespace

std::vector<PowerSource> hostPowerSources(const std::string& folder) {
  std::vector<fs::path> devices;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    devices.push_back(entry->path());
  }
  std::ranges::sort(devices);
  std::vector<PowerSource> sources;
  for (const fs::path& device : devices) {
    if (attribute(device, "type") == "Battery" && attribute(device, "scope") != "Device") {
      sources.push_back(describe(device));
    }
  }
  return sources;
}

}  // namespace cirrovane
