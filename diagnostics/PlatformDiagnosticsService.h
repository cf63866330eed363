#pragma once

#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "diagnostics/CollectedFindings.h"
#include "diagnostics/DiagnosticFinding.h"
#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemCommands.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/SystemInformation.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Judges the machine and its cloud connection by what the system and its own tools say. Keeps nothing between calls.
/// Every operation waits for the probes of the cycle that it is given, within their limits, so it runs off the main
/// thread.
class PlatformDiagnosticsService {
 public:
  PlatformDiagnosticsService(const SystemInformation& systemInformation, const FileSystem& fileSystem,
                             const Clock& clock)
      : systemInformation_(systemInformation), fileSystem_(fileSystem), clock_(clock) {}

  /// The findings of every domain, in the order of presentation. Never fails: what cannot be found out is a finding, or
  /// the lack of one.
  CollectedFindings collect(ProbeRunner& probes, const SyncHealthReport& report,
                            const std::vector<WatchFolder>& watchFolders) const;

  /// The findings of one domain as collect() gives them, without asking for the others.
  CollectedFindings collect(DiagnosticDomain domain, ProbeRunner& probes, const SyncHealthReport& report,
                            const std::vector<WatchFolder>& watchFolders) const;

  /// What the program at an absolute path prints; absent unless it exits with status 0 and prints UTF-8.
  static ProbeText runCommand(ProbeRunner& probes, const std::string& executable, const std::vector<std::string>& args);

  /// Whether a process of exactly this name runs; false also when that cannot be found out, absent when the probe was
  /// not reached.
  static std::optional<bool> isProcessRunning(ProbeRunner& probes, const std::string& name);

  // The findings of each domain, in the order in which they are made.

  CollectedFindings iCloudFindings(ProbeRunner& probes, const SyncHealthReport& report,
                                   const std::vector<WatchFolder>& watchFolders) const;
  CollectedFindings finderFindings(const SyncHealthReport& report, const std::vector<WatchFolder>& watchFolders) const;
  CollectedFindings networkFindings(ProbeRunner& probes) const;
  CollectedFindings storageFindings(ProbeRunner& probes) const;
  CollectedFindings powerFindings(const SyncHealthReport& report) const;
  CollectedFindings performanceFindings(ProbeRunner& probes) const;
  CollectedFindings systemFindings(const SyncHealthReport& report) const;

 private:
  /// Whether the shell would find a command of this name; absent when the probe was not reached.
  static std::optional<bool> isCommandFound(ProbeRunner& probes, const std::string& name);

  const SystemInformation& systemInformation_;
  const FileSystem& fileSystem_;
  const Clock& clock_;
};

}  // namespace cirrovane
