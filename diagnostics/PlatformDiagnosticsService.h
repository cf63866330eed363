#pragma once

#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "diagnostics/DiagnosticFinding.h"
#include "platform/Clock.h"
#include "platform/CommandRunner.h"
#include "platform/FileSystem.h"
#include "platform/SystemInformation.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Judges the machine and its cloud connection by what the system and its own tools say. Keeps nothing between calls.
/// Every operation waits for the commands that it runs, however long they take, so it runs off the main thread.
class PlatformDiagnosticsService {
 public:
  PlatformDiagnosticsService(const CommandRunner& commandRunner, const SystemInformation& systemInformation,
                             const FileSystem& fileSystem, const Clock& clock)
      : commandRunner_(commandRunner), systemInformation_(systemInformation), fileSystem_(fileSystem), clock_(clock) {}

  /// The findings of every domain, in the order of presentation. Never fails: what cannot be found out is a finding, or
  /// the lack of one.
  std::vector<DiagnosticFinding> collect(const SyncHealthReport& report,
                                         const std::vector<WatchFolder>& watchFolders) const;

  /// The findings of one domain as collect() gives them, without asking for the others.
  std::vector<DiagnosticFinding> collect(DiagnosticDomain domain, const SyncHealthReport& report,
                                         const std::vector<WatchFolder>& watchFolders) const;

  /// What the program at an absolute path prints; absent unless it exits with status 0 and prints UTF-8.
  std::optional<std::string> runCommand(const std::string& executable, const std::vector<std::string>& args) const;

  /// Whether a process of exactly this name runs; false also when that cannot be found out.
  bool isProcessRunning(const std::string& name) const;

  // The findings of each domain, in the order in which they are made.

  std::vector<DiagnosticFinding> iCloudFindings(const SyncHealthReport& report,
                                                const std::vector<WatchFolder>& watchFolders) const;
  std::vector<DiagnosticFinding> finderFindings(const SyncHealthReport& report,
                                                const std::vector<WatchFolder>& watchFolders) const;
  std::vector<DiagnosticFinding> networkFindings() const;
  std::vector<DiagnosticFinding> storageFindings() const;
  std::vector<DiagnosticFinding> powerFindings(const SyncHealthReport& report) const;
  std::vector<DiagnosticFinding> performanceFindings() const;
  std::vector<DiagnosticFinding> systemFindings(const SyncHealthReport& report) const;

 private:
  /// Whether the shell would find a command of this name.
  bool isCommandFound(const std::string& name) const;

  const CommandRunner& commandRunner_;
  const SystemInformation& systemInformation_;
  const FileSystem& fileSystem_;
  const Clock& clock_;
};

}  // namespace cirrovane
