#pragma once

#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemCommands.h"
#include "diagnostics/SystemStatusSnapshot.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/SystemInformation.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Measures the machine's condition. Keeps nothing between samples. A sample waits for the probes of the cycle that it
/// is given, within their limits, so it is taken off the main thread.
class SystemStatusService {
 public:
  SystemStatusService(const SystemInformation& systemInformation, const FileSystem& fileSystem, const Clock& clock)
      : systemInformation_(systemInformation), fileSystem_(fileSystem), clock_(clock) {}

  /// One sample. Never fails: what cannot be measured, or is not reached, is absent from it.
  SystemStatusSnapshot capture(ProbeRunner& probes) const;

  /// What the program at an absolute path prints; absent unless it exits with status 0 and prints UTF-8.
  static ProbeText runCommand(ProbeRunner& probes, const std::string& executable, const std::vector<std::string>& args);

 private:
  static std::optional<double> cpuUsagePercent(ProbeRunner& probes);
  static std::optional<double> cpuTemperatureIfAvailable(ProbeRunner& probes);
  static std::optional<std::uint64_t> memoryUsed(ProbeRunner& probes);
  static std::optional<bool> networkReachableToICloud(ProbeRunner& probes);

  const SystemInformation& systemInformation_;
  const FileSystem& fileSystem_;
  const Clock& clock_;
};

}  // namespace cirrovane
