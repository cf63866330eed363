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

std::vector<DiagnosticFinding> PlatformDiagnosticsService::networkFindings() const {
  FindingList findings(DiagnosticDomain::network, clock_);

  if (const auto route = runCommand("/usr/sbin/route", {"-n", "get", "default"})) {
    findings.add(
        ok, "Default route",
        contains(*route, "gateway") ? "Default route present." : "Route output did not include gateway metadata.");
  } else {
    findings.add(warning, "Default route", "Could not query default route.");
  }

  if (const auto report = cloudReachability(commandRunner_)) {
    findings.add(
        "iCloud host reachability",
        saysReachable(*report)
            ? Judgement{ok, fmt::format("{} appears reachable.", kCloudProbeHost)}
            : Judgement{warning, fmt::format("{} appears not reachable from current network state.", kCloudProbeHost)});
  }

  if (const auto addresses = runCommand("/usr/bin/dscacheutil", {"-q", "host", "-a", "name", kCloudProbeHost})) {
    findings.add("DNS resolution",
                 contains(*addresses, "ip_address")
                     ? Judgement{ok, fmt::format("DNS resolution for {} returned addresses.", kCloudProbeHost)}
                     : Judgement{warning, "DNS resolution returned no addresses."});
  }

  findings.add(info, "Network scope",
               "Current checks cover reachability-class signals; deep throughput diagnostics remain optional and "
               "desktop-first.");
  return findings.take();
}

}  // namespace cirrovane
