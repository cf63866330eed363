#include "core/FolderNaming.h"
#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"

#include <algorithm>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

}  // namespace

CollectedFindings PlatformDiagnosticsService::iCloudFindings(ProbeRunner& probes, const SyncHealthReport& report,
                                                             const std::vector<WatchFolder>& watchFolders) const {
  FindingList findings(DiagnosticDomain::iCloud, clock_);
  const ScanMetrics& metrics = report.metrics;

  if (systemInformation_.hasUbiquityIdentityToken()) {
    findings.add(ok, "iCloud session detected", "Ubiquity identity token is available for this user session.");
  } else {
    findings.add(
        warning, "iCloud account session unavailable",
        "This device does not currently expose an iCloud ubiquity identity token. iCloud checks may be incomplete.");
  }

  const std::string container = fileSystem_.homeDirectory() + std::string(kICloudDriveSubpath);
  if (fileSystem_.exists(container)) {
    findings.add(ok, "iCloud storage path accessible", container);
  } else {
    findings.add(warning, "iCloud storage path unavailable",
                 "The expected iCloud container path is not currently reachable.");
  }

  const auto addProcess = [&](const char* name, const char* title, const char* ifNotObserved) {
    const std::optional<bool> isRunning = isProcessRunning(probes, name);
    if (!isRunning) {
      findings.addNotReached(title);
    } else {
      findings.add(title, *isRunning ? Judgement{ok, "Running"} : Judgement{warning, ifNotObserved});
    }
  };
  addProcess("bird", "bird daemon", "Not observed. iCloud upload activity may stall.");
  addProcess("cloudd", "cloudd daemon", "Not observed. Cloud service health may be degraded.");
  addProcess("fileproviderd", "fileproviderd", "Not observed. Some cloud file states may lag.");

  findings.add("Pending uploads",
               metrics.pendingUploads >= 1
                   ? Judgement{warning, fmt::format("{} files are still pending upload.", metrics.pendingUploads)}
                   : Judgement{ok, "No pending uploads detected in watchlist scan."});
  if (metrics.unresolvedConflicts >= 1) {
    findings.add(error, "Unresolved conflicts",
                 fmt::format("{} conflict states detected.", metrics.unresolvedConflicts));
  }
  if (metrics.errors >= 1) {
    findings.add(error, "Upload/download errors",
                 fmt::format("{} iCloud metadata errors were observed during scan.", metrics.errors));
  }
  if (const std::int64_t gaps = coverageGapCount(report); gaps >= 1) {
    findings.add(warning, "Watchlist coverage gaps",
                 fmt::format("{} watchlist entries are outside iCloud or unavailable.", gaps));
  }
  if (metrics.notDownloaded >= 1) {
    findings.add(
        info, "Cloud-only files",
        fmt::format("{} files are cloud-only on this device. This affects local availability, not upload trust.",
                    metrics.notDownloaded));
  }
  if (watchFolders.empty()) {
    findings.add(warning, "No watchlist configured", "Add critical folders to make trust scoring meaningful.");
  }
  return findings.take();
}

}  // namespace cirrovane
