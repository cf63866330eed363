#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"

#include <chrono>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

constexpr std::chrono::seconds kOldestFreshScan{300};

}  // namespace

CollectedFindings PlatformDiagnosticsService::systemFindings(const SyncHealthReport& report) const {
  FindingList findings(DiagnosticDomain::system, clock_);

  findings.add("Scan freshness",
               clock_.now() - report.generatedAt > kOldestFreshScan
                   ? Judgement{warning,
                               "Latest scan is older than 5 minutes. Run a fresh scan before high-stakes "
                               "decisions."}
                   : Judgement{ok, "Latest scan is recent (within 5 minutes)."});

  findings.add("Sleep/shutdown risk",
               report.metrics.pendingUploads >= 1
                   ? Judgement{warning, "Pending uploads exist. Avoid sleep/shutdown until trust returns safe."}
                   : Judgement{ok, "No pending uploads detected in current scan."});

  findings.add(info, "Diagnostic scope",
               "Checks are based on observable local signals and selected probes; this is not a complete kernel-level "
               "trace of every subsystem.");
  return findings.take();
}

}  // namespace cirrovane
