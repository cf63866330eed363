#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"

#include <cstddef>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

constexpr double kBytesInGigabyte = 1e9;
constexpr double kErrorBelowGigabytes = 3.0;
constexpr double kWarningBelowGigabytes = 10.0;

Judgement judgeDisk(const VolumeCapacities& volume) {
  if (!volume.availableForImportantUsage || !volume.total) {
    return {warning, "Could not read disk capacity metadata."};
  }
  const double free = static_cast<double>(*volume.availableForImportantUsage) / kBytesInGigabyte;
  const double total = static_cast<double>(*volume.total) / kBytesInGigabyte;
  const DiagnosticSeverity severity = free < kErrorBelowGigabytes     ? error
                                      : free < kWarningBelowGigabytes ? warning
                                                                      : ok;
  return {severity, fmt::format("{:.1f} GB free of {:.1f} GB.", free, total)};
}

std::string withoutEvery(std::string_view part, std::string_view text) {
  std::string kept;
  for (std::size_t found = text.find(part); found != std::string_view::npos; found = text.find(part)) {
    kept += text.substr(0, found);
    text.remove_prefix(found + part.size());
  }
  return kept += text;
}

}  // namespace

CollectedFindings PlatformDiagnosticsService::storageFindings(ProbeRunner& probes) const {
  FindingList findings(DiagnosticDomain::storage, clock_);

  findings.add("Disk capacity", judgeDisk(fileSystem_.volumeCapacities(fileSystem_.homeDirectory())));

  const ProbeText usage = runCommand(probes, "/usr/sbin/sysctl", {"vm.swapusage"});
  if (!usage.isReached) {
    findings.addNotReached("Swap usage");
  } else if (usage.text) {
    findings.add(info, "Swap usage", withoutEvery("vm.swapusage: ", *usage.text));
  }

  const std::optional<bool> isRunning = isProcessRunning(probes, "smartctl");
  const std::optional<bool> isFound = isRunning == true ? false : isCommandFound(probes, "smartctl");
  if (isRunning == true || isFound == true) {
    findings.add(info, "SMART tooling", "smartctl detected; deeper disk SMART checks can be added.");
  } else if (isRunning && isFound) {
    findings.add(warning, "SMART tooling",
                 "smartctl not detected. Install from Tools tab for deeper disk health checks.");
  } else {
    findings.addNotReached("SMART tooling");
  }
  return findings.take();
}

}  // namespace cirrovane
