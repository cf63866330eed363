#include "diagnostics/PlatformDiagnosticsService.h"

#include <algorithm>
#include <iterator>

namespace cirrovane {

CollectedFindings PlatformDiagnosticsService::collect(ProbeRunner& probes, const SyncHealthReport& report,
                                                      const std::vector<WatchFolder>& watchFolders) const {
  CollectedFindings all;
  for (const auto& [domain, title] : kDiagnosticDomains) {
    CollectedFindings part = collect(domain, probes, report, watchFolders);
    std::ranges::move(part.findings, std::back_inserter(all.findings));
    std::ranges::move(part.notReached, std::back_inserter(all.notReached));
  }
  sortForPresentation(all.findings);
  return all;
}

CollectedFindings PlatformDiagnosticsService::collect(DiagnosticDomain domain, ProbeRunner& probes,
                                                      const SyncHealthReport& report,
                                                      const std::vector<WatchFolder>& watchFolders) const {
  CollectedFindings collected = [&] {
    switch (domain) {
      case DiagnosticDomain::iCloud:
        return iCloudFindings(probes, report, watchFolders);
      case DiagnosticDomain::finder:
        return finderFindings(report, watchFolders);
      case DiagnosticDomain::network:
        return networkFindings(probes);
      case DiagnosticDomain::storage:
        return storageFindings(probes);
      case DiagnosticDomain::power:
        return powerFindings(report);
      case DiagnosticDomain::performance:
        return performanceFindings(probes);
      case DiagnosticDomain::system:
        break;
    }
    return systemFindings(report);
  }();
  sortForPresentation(collected.findings);
  return collected;
}

ProbeText PlatformDiagnosticsService::runCommand(ProbeRunner& probes, const std::string& executable,
                                                 const std::vector<std::string>& args) {
  return commandOutput(probes, executable, args);
}

std::optional<bool> PlatformDiagnosticsService::isProcessRunning(ProbeRunner& probes, const std::string& name) {
  const ProbeResult result = probes.run("/usr/bin/pgrep", {"-x", name}, CommandOutput::discarded);
  return result.isReached ? std::optional(result.command && result.command->hasSucceeded()) : std::nullopt;
}

std::optional<bool> PlatformDiagnosticsService::isCommandFound(ProbeRunner& probes, const std::string& name) {
  const ProbeText found = runCommand(probes, "/usr/bin/which", {name});
  return found.isReached ? std::optional(found.text.has_value()) : std::nullopt;
}

}  // namespace cirrovane
