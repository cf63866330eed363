#include "diagnostics/OptionalTool.h"

#include <array>

namespace cirrovane {
namespace {

constexpr std::array<OptionalTool, 11> kOptionalTools = {{
    {"osx-cpu-temp", "osx-cpu-temp", "brew install osx-cpu-temp", "Reads exact CPU temperature from SMC sensors.",
     "Accurate temperature in Status and Performance diagnostics."},
    {"smartmontools", "smartctl", "brew install smartmontools", "Reads SMART storage health details.",
     "Deeper disk risk diagnostics in Storage tab."},
    {"iperf3", "iperf3", "brew install iperf3", "Advanced network throughput diagnostics.",
     "Expanded Network stress testing support."},
    {"ifstat", "ifstat", "brew install ifstat", "Live per-interface traffic meter.",
     "Faster detection of stalled uploads versus active network traffic."},
    {"mtr", "mtr", "brew install mtr", "Route quality and packet-loss tracing.",
     "Deeper path diagnostics when iCloud hosts are intermittently reachable."},
    {"speedtest-cli", "speedtest-cli", "brew install speedtest-cli", "Quick internet speed baseline checks.",
     "Context for slow upload windows versus local file/system blockers."},
    {"htop", "htop", "brew install htop", "Interactive CPU and memory process monitor.",
     "Faster root-cause checks when performance pressure affects sync behavior."},
    {"btop", "btop", "brew install btop", "Visual system monitor for CPU, memory, and process spikes.",
     "Richer live diagnostics during heavy sync or indexing sessions."},
    {"fswatch", "fswatch", "brew install fswatch", "Filesystem event stream watcher.",
     "Evidence of ongoing file churn in watched folders during sync incidents."},
    {"jq", "jq", "brew install jq", "JSON parsing utility.",
     "Faster filtering and triage of exported proof packets in terminal workflows."},
    {"lnav", "lnav", "brew install lnav", "Terminal log navigator and analyzer.",
     "Efficient analysis of diagnostic logs while investigating recurring incidents."},
}};

}  // namespace

std::span<const OptionalTool> optionalTools() {
  return kOptionalTools;
}

}  // namespace cirrovane
