#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/PowerReading.h"

#include <fmt/format.h>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

constexpr std::int64_t kWarningBelowPercent = 15;

}  // namespace

CollectedFindings PlatformDiagnosticsService::powerFindings(const SyncHealthReport& report) const {
  FindingList findings(DiagnosticDomain::power, clock_);
  const BatteryStatus battery = batteryStatus(systemInformation_.powerSources());

  if (battery.percent) {
    findings.add(*battery.percent < kWarningBelowPercent ? warning : ok, "Battery level",
                 fmt::format("{}%", *battery.percent));
  } else {
    findings.add(info, "Battery level", "Unavailable on this device or power source.");
  }
  if (battery.charging) {
    findings.add("Charging", *battery.charging ? Judgement{ok, "Charging"} : Judgement{info, "Not charging"});
  }

  findings.add("Low Power Mode",
               systemInformation_.isLowPowerModeEnabled() ? Judgement{warning, "Enabled"} : Judgement{ok, "Disabled"});

  if (report.metrics.pendingUploads >= 1) {
    findings.add(warning, "Upload power risk",
                 "Pending uploads exist; avoid battery-critical states before completion.");
  }
  return findings.take();
}

}  // namespace cirrovane
