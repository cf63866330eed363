#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/SystemCommands.h"

#include <fmt/format.h>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

bool contains(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

CollectedFindings PlatformDiagnosticsService::networkFindings(ProbeRunner& probes) const {
  FindingList findings(DiagnosticDomain::network, clock_);

  const ProbeText route = runCommand(probes, "/usr/sbin/route", {"-n", "get", "default"});
  if (!route.isReached) {
    findings.addNotReached("Default route");
  } else if (route.text) {
    findings.add(
        ok, "Default route",
        contains(*route.text, "gateway") ? "Default route present." : "Route output did not include gateway metadata.");
  } else {
    findings.add(warning, "Default route", "Could not query default route.");
  }

  const ProbeText report = cloudReachability(probes);
  if (!report.isReached) {
    findings.addNotReached("iCloud host reachability");
  } else if (report.text) {
    findings.add(
        "iCloud host reachability",
        saysReachable(*report.text)
            ? Judgement{ok, fmt::format("{} appears reachable.", kCloudProbeHost)}
            : Judgement{warning, fmt::format("{} appears not reachable from current network state.", kCloudProbeHost)});
  }

  const ProbeText addresses = runCommand(probes, "/usr/bin/dscacheutil", {"-q", "host", "-a", "name", kCloudProbeHost});
  if (!addresses.isReached) {
    findings.addNotReached("DNS resolution");
  } else if (addresses.text) {
    findings.add("DNS resolution",
                 contains(*addresses.text, "ip_address")
                     ? Judgement{ok, fmt::format("DNS resolution for {} returned addresses.", kCloudProbeHost)}
                     : Judgement{warning, "DNS resolution returned no addresses."});
  }

  findings.add(info, "Network scope",
               "Current checks cover reachability-class signals; deep throughput diagnostics remain optional and "
               "desktop-first.");
  return findings.take();
}

}  // namespace cirrovane
