#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/PowerReading.h"
#include "diagnostics/StatusParsers.h"
#include "diagnostics/SystemCommands.h"

#include <fmt/format.h>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

constexpr double kWarningAboveLoad = 6.0;

}  // namespace

CollectedFindings PlatformDiagnosticsService::performanceFindings(ProbeRunner& probes) const {
  FindingList findings(DiagnosticDomain::performance, clock_);

  if (const auto load = systemInformation_.loadAverages()) {
    findings.add(
        load->oneMinute > kWarningAboveLoad ? warning : ok, "CPU load average",
        fmt::format("1m {:.2f} · 5m {:.2f} · 15m {:.2f}", load->oneMinute, load->fiveMinutes, load->fifteenMinutes));
  }

  const ProbeText sample = topSample(probes);
  if (!sample.isReached) {
    findings.addNotReached("CPU usage sample");
  } else if (sample.text) {
    if (const auto line = firstLineContaining(*sample.text, "CPU usage:")) {
      findings.add(info, "CPU usage sample", std::string(*line));
    }
  }

  const std::optional<bool> hasTool = isCommandFound(probes, "osx-cpu-temp");
  if (!hasTool) {
    findings.addNotReached("Temperature probe");
  } else {
    findings.add("Temperature probe",
                 *hasTool ? Judgement{info, "osx-cpu-temp detected for exact temperature readings."}
                          : Judgement{warning,
                                      "Exact CPU temperature unavailable by default. Install osx-cpu-temp from "
                                      "Tools tab."});
  }

  const std::optional<ThermalState> thermal = systemInformation_.thermalState();
  const bool isHot = thermal == ThermalState::serious || thermal == ThermalState::critical;
  findings.add(isHot ? warning : ok, "Thermal state", std::string(thermalStateName(thermal)));
  return findings.take();
}

}  // namespace cirrovane
