#pragma once

#include "diagnostics/SystemStatusSnapshot.h"
#include "platform/Clock.h"
#include "platform/CommandRunner.h"
#include "platform/FileSystem.h"
#include "platform/SystemInformation.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Measures the machine's condition. Keeps nothing between samples. A sample waits for the commands that it runs,
/// however long they take, so it is taken off the main thread.
class SystemStatusService {
 public:
  SystemStatusService(const CommandRunner& commandRunner, const SystemInformation& systemInformation,
                      const FileSystem& fileSystem, const Clock& clock)
      : commandRunner_(commandRunner), systemInformation_(systemInformation), fileSystem_(fileSystem), clock_(clock) {}

  /// One sample. Never fails: what cannot be measured is absent from it.
  SystemStatusSnapshot capture() const;

  /// What the program at an absolute path prints; absent unless it exits with status 0 and prints UTF-8.
  std::optional<std::string> runCommand(const std::string& executable, const std::vector<std::string>& args) const;

 private:
  std::optional<double> cpuUsagePercent() const;
  std::optional<double> cpuTemperatureIfAvailable() const;
  std::optional<std::uint64_t> memoryUsed() const;
  std::optional<bool> networkReachableToICloud() const;

  const CommandRunner& commandRunner_;
  const SystemInformation& systemInformation_;
  const FileSystem& fileSystem_;
  const Clock& clock_;
};

}  // namespace cirrovane
