#include "diagnostics/SystemStatusService.h"

#include "diagnostics/PowerReading.h"
#include "diagnostics/StatusParsers.h"
#include "diagnostics/SystemCommands.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace cirrovane {
namespace {

/// Where Homebrew puts its tools, on Apple silicon and on Intel.
constexpr std::array<const char*, 2> kTemperatureTools = {"/opt/homebrew/bin/osx-cpu-temp",
                                                          "/usr/local/bin/osx-cpu-temp"};

}  // namespace

SystemStatusSnapshot SystemStatusService::capture() const {
  SystemStatusSnapshot snapshot;
  snapshot.capturedAt = clock_.now();
  snapshot.cpuUsagePercent = cpuUsagePercent();
  if (const auto load = systemInformation_.loadAverages()) {
    snapshot.load1m = load->oneMinute;
    snapshot.load5m = load->fiveMinutes;
    snapshot.load15m = load->fifteenMinutes;
  }
  snapshot.cpuTemperatureC = cpuTemperatureIfAvailable();
  snapshot.thermalState = thermalStateName(systemInformation_.thermalState());
  snapshot.memoryTotalBytes = systemInformation_.physicalMemory();
  snapshot.memoryUsedBytes = memoryUsed();
  const VolumeCapacities volume = fileSystem_.volumeCapacities(fileSystem_.homeDirectory());
  snapshot.diskFreeBytes = volume.availableForImportantUsage;
  snapshot.diskTotalBytes = volume.total;
  const BatteryStatus battery = batteryStatus(systemInformation_.powerSources());
  snapshot.batteryPercent = battery.percent;
  snapshot.batteryCharging = battery.charging;
  snapshot.networkReachable = networkReachableToICloud();
  snapshot.lowPowerMode = systemInformation_.isLowPowerModeEnabled();
  snapshot.uptimeSeconds = systemInformation_.systemUptime();
  return snapshot;
}

std::optional<std::string> SystemStatusService::runCommand(const std::string& executable,
                                                           const std::vector<std::string>& args) const {
  return commandOutput(commandRunner_, executable, args);
}

std::optional<double> SystemStatusService::cpuUsagePercent() const {
  const auto sample = topSample(commandRunner_);
  return sample ? cpuUsageFromTop(*sample) : std::nullopt;
}

std::optional<double> SystemStatusService::cpuTemperatureIfAvailable() const {
  const auto* tool =
      std::ranges::find_if(kTemperatureTools, [&](const char* path) { return commandRunner_.isExecutable(path); });
  const auto output = tool != kTemperatureTools.end() ? runCommand(*tool, {}) : std::nullopt;
  return output ? temperatureFromSensor(*output) : std::nullopt;
}

std::optional<std::uint64_t> SystemStatusService::memoryUsed() const {
  const auto output = runCommand("/usr/bin/vm_stat", {});
  return output ? memoryUsedFromVMStat(*output) : std::nullopt;
}

std::optional<bool> SystemStatusService::networkReachableToICloud() const {
  const auto report = cloudReachability(commandRunner_);
  if (!report) {
    return std::nullopt;
  }
  return saysReachable(*report) ? std::optional(true) : std::nullopt;
}

}  // namespace cirrovane
