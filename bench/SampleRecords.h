#pragma once

#include "core/SyncHealthReport.h"
#include "diagnostics/DiagnosticFinding.h"
#include "platform/posix/FileCalls.h"

#include <cstddef>
#include <stdexcept>
#include <string>

#include <fmt/format.h>

namespace cirrovane {

/// Leaves to the system when the bytes reach the disk.
class CallsWithoutSync final : public FileCalls {
 public:
  int sync(int /*file*/) const override { return 0; }
};

inline void expect(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

/// A path of a usual length, another for each number.
inline std::string longPath(std::size_t number) {
  return fmt::format(
      "/Users/demo/Library/Mobile Documents/com~apple~CloudDocs/Clients/Harbour & Sons/2026/Contracts and invoices/"
      "Quarter {}/Statement of work, final version {:06}.pages",
      number % 4 + 1, number);
}

/// A report with one blocker.
inline SyncHealthReport sampleReport(std::size_t number, Time time) {
  SyncHealthReport report;
  report.status = HealthState::danger;
  report.score = 42;
  report.localAvailabilityScore = 97;
  report.generatedAt = time;
  SyncBlocker& blocker = report.blockers.emplace_back();
  blocker.filePath = longPath(number);
  blocker.folderName = "Contracts and invoices";
  return report;
}

/// A finding that becomes an incident, another one for each number.
inline DiagnosticFinding sampleFinding(std::size_t number, Time time) {
  DiagnosticFinding finding;
  finding.domain = kDiagnosticDomains.at(number % kDiagnosticDomains.size()).value;
  finding.severity = number % 3 == 0 ? DiagnosticSeverity::error : DiagnosticSeverity::warning;
  finding.title = fmt::format("Something is wrong with part {} of this machine", number);
  finding.detail =
      fmt::format("{} of 494.4 GB are free on the volume that holds the home folder; keep 10 % of it free.", number);
  finding.observedAt = time;
  return finding;
}

}  // namespace cirrovane
