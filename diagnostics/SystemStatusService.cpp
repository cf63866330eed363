#include "diagnostics/SystemStatusService.h"

#include "diagnostics/PowerReading.h"
#include "diagnostics/StatusParsers.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace cirrovane {
namespace {

/// Where Homebrew puts its tools, on Apple silicon and on Intel.
constexpr std::array<const char*, 2> kTemperatureTools = {"/opt/homebrew/bin/osx-cpu-temp",
                                                          "/usr/local/bin/osx-cpu-temp"};

}  // namespace

SystemStatusSnapshot SystemStatusService::capture(ProbeRunner& probes) const {
  SystemStatusSnapshot snapshot;
  snapshot.capturedAt = clock_.now();
  snapshot.cpuUsagePercent = cpuUsagePercent(probes);
  if (const auto load = systemInformation_.loadAverages()) {
    snapshot.load1m = load->oneMinute;
    snapshot.load5m = load->fiveMinutes;
    snapshot.load15m = load->fifteenMinutes;
  }
  snapshot.cpuTemperatureC = cpuTemperatureIfAvailable(probes);
  snapshot.thermalState = thermalStateName(systemInformation_.thermalState());
  snapshot.memoryTotalBytes = systemInformation_.physicalMemory();
  snapshot.memoryUsedBytes = memoryUsed(probes);
  const VolumeCapacities volume = fileSystem_.volumeCapacities(fileSystem_.homeDirectory());
  snapshot.diskFreeBytes = volume.availableForImportantUsage;
  snapshot.diskTotalBytes = volume.total;
  const BatteryStatus battery = batteryStatus(systemInformation_.powerSources());
  snapshot.batteryPercent = battery.percent;
  snapshot.batteryCharging = battery.charging;
  snapshot.networkReachable = networkReachableToICloud(probes);
  snapshot.lowPowerMode = systemInformation_.isLowPowerModeEnabled();
  snapshot.uptimeSeconds = systemInformation_.systemUptime();
  return snapshot;
}

ProbeText SystemStatusService::runCommand(ProbeRunner& probes, const std::string& executable,
                                          const std::vector<std::string>& args) {
  return commandOutput(probes, executable, args);
}

std::optional<double> SystemStatusService::cpuUsagePercent(ProbeRunner& probes) {
  const auto sample = topSample(probes).text;
  return sample ? cpuUsageFromTop(*sample) : std::nullopt;
}

std::optional<double> SystemStatusService::cpuTemperatureIfAvailable(ProbeRunner& probes) {
  const auto* tool =
      std::ranges::find_if(kTemperatureTools, [&](const char* path) { return probes.isExecutable(path); });
  const auto output = tool != kTemperatureTools.end() ? runCommand(probes, *tool, {}).text : std::nullopt;
  return output ? temperatureFromSensor(*output) : std::nullopt;
}

std::optional<std::uint64_t> SystemStatusService::memoryUsed(ProbeRunner& probes) {
  const auto output = runCommand(probes, "/usr/bin/vm_stat", {}).text;
  return output ? memoryUsedFromVMStat(*output) : std::nullopt;
}

std::optional<bool> SystemStatusService::networkReachableToICloud(ProbeRunner& probes) {
  const auto report = cloudReachability(probes).text;
  if (!report) {
    return std::nullopt;
  }
  return saysReachable(*report) ? std::optional(true) : std::nullopt;
}

}  // namespace cirrovane
