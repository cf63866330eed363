#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace cirrovane {

/// One sample of the machine's condition. An absent value is one that could not be measured.
struct SystemStatusSnapshot {
  /// When the sample was begun.
  Time capturedAt;
  /// User and system time together, in percent.
  std::optional<double> cpuUsagePercent;
  std::optional<double> load1m;
  std::optional<double> load5m;
  std::optional<double> load15m;
  /// Degrees Celsius; only where the optional sensor tool is installed.
  std::optional<double> cpuTemperatureC;
  /// "Nominal", "Fair", "Serious", "Critical" or "Unknown".
  std::string thermalState = "Unknown";
  /// An estimate: active, wired and compressed pages.
  std::optional<std::uint64_t> memoryUsedBytes;
  std::uint64_t memoryTotalBytes = 0;
  /// Of the volume that holds the home folder.
  std::optional<std::int64_t> diskFreeBytes;
  std::optional<std::int64_t> diskTotalBytes;
  std::optional<std::int64_t> batteryPercent;
  std::optional<bool> batteryCharging;
  bool lowPowerMode = false;
  /// Whether the cloud host can be reached.
  std::optional<bool> networkReachable;
  /// Seconds since the system started.
  double uptimeSeconds = 0;

  /// What is shown before the first sample.
  static SystemStatusSnapshot empty() { return {}; }

  static constexpr auto jsonFields() {
    using Snapshot = SystemStatusSnapshot;
    return std::tuple{JSONField{"capturedAt", &Snapshot::capturedAt},
                      JSONField{"cpuUsagePercent", &Snapshot::cpuUsagePercent},
                      JSONField{"load1m", &Snapshot::load1m},
                      JSONField{"load5m", &Snapshot::load5m},
                      JSONField{"load15m", &Snapshot::load15m},
                      JSONField{"cpuTemperatureC", &Snapshot::cpuTemperatureC},
                      JSONField{"thermalState", &Snapshot::thermalState},
                      JSONField{"memoryUsedBytes", &Snapshot::memoryUsedBytes},
                      JSONField{"memoryTotalBytes", &Snapshot::memoryTotalBytes},
                      JSONField{"diskFreeBytes", &Snapshot::diskFreeBytes},
                      JSONField{"diskTotalBytes", &Snapshot::diskTotalBytes},
                      JSONField{"batteryPercent", &Snapshot::batteryPercent},
                      JSONField{"batteryCharging", &Snapshot::batteryCharging},
                      JSONField{"lowPowerMode", &Snapshot::lowPowerMode},
                      JSONField{"networkReachable", &Snapshot::networkReachable},
                      JSONField{"uptimeSeconds", &Snapshot::uptimeSeconds}};
  }
  friend bool operator==(const SystemStatusSnapshot&, const SystemStatusSnapshot&) = default;
};

}  // namespace cirrovane
