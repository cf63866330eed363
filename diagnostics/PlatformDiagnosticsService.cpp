#include "diagnostics/PlatformDiagnosticsService.h"

#include "diagnostics/SystemCommands.h"

#include <algorithm>
#include <iterator>

namespace cirrovane {

std::vector<DiagnosticFinding> PlatformDiagnosticsService::collect(const SyncHealthReport& report,
                                                                   const std::vector<WatchFolder>& watchFolders) const {
  std::vector<DiagnosticFinding> all;
  for (const auto& [domain, title] : kDiagnosticDomains) {
    std::ranges::move(collect(domain, report, watchFolders), std::back_inserter(all));
  }
  sortForPresentation(all);
  return all;
}

std::vector<DiagnosticFinding> PlatformDiagnosticsService::collect(DiagnosticDomain domain,
                                                                   const SyncHealthReport& report,
                                                                   const std::vector<WatchFolder>& watchFolders) const {
  std::vector<DiagnosticFinding> findings = [&] {
    switch (domain) {
      case DiagnosticDomain::iCloud:
        return iCloudFindings(report, watchFolders);
      case DiagnosticDomain::finder:
        return finderFindings(report, watchFolders);
      case DiagnosticDomain::network:
        return networkFindings();
      case DiagnosticDomain::storage:
        return storageFindings();
      case DiagnosticDomain::power:
        return powerFindings(report);
      case DiagnosticDomain::performance:
        return performanceFindings();
      case DiagnosticDomain::system:
        break;
    }
    return systemFindings(report);
  }();
  sortForPresentation(findings);
  return findings;
}

std::optional<std::string> PlatformDiagnosticsService::runCommand(const std::string& executable,
                                                                  const std::vector<std::string>& args) const {
  return commandOutput(commandRunner_, executable, args);
}

bool PlatformDiagnosticsService::isProcessRunning(const std::string& name) const {
  const auto result = commandRunner_.run("/usr/bin/pgrep", {"-x", name}, CommandOutput::discarded);
  return result && result->hasSucceeded();
}

bool PlatformDiagnosticsService::isCommandFound(const std::string& name) const {
  return runCommand("/usr/bin/which", {name}).has_value();
}

}  // namespace cirrovane
