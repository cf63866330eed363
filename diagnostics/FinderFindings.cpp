#include "diagnostics/FindingList.h"
#include "diagnostics/PlatformDiagnosticsService.h"

#include <algorithm>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using enum DiagnosticSeverity;

constexpr const char* kFinder = "com.apple.finder";

}  // namespace

CollectedFindings PlatformDiagnosticsService::finderFindings(const SyncHealthReport& report,
                                                             const std::vector<WatchFolder>& watchFolders) const {
  FindingList findings(DiagnosticDomain::finder, clock_);

  findings.add("Finder process",
               systemInformation_.isApplicationRunning(kFinder)
                   ? Judgement{ok, "Finder is running."}
                   : Judgement{warning, "Finder is not running; file-state indicators may be stale or unavailable."});

  const auto missing =
      std::ranges::count_if(watchFolders, [&](const WatchFolder& folder) { return !fileSystem_.exists(folder.path); });
  if (missing >= 1) {
    findings.add(warning, "Missing watchlist paths", fmt::format("{} watchlist paths are missing or moved.", missing));
  } else {
    findings.add(ok, "Watchlist paths", "All watchlist paths are currently reachable.");
  }

  if (!report.blockers.empty()) {
    const std::string& path = report.blockers.front().filePath;
    findings.add("Top blocker path",
                 fileSystem_.exists(path)
                     ? Judgement{info, "Top blocker path exists locally: " + path}
                     : Judgement{warning, "Top blocker path is no longer available locally: " + path});
  }

  findings.add(info, "Finder/Files diagnostic scope",
               "Current checks validate path reachability and blocker visibility. Internal Finder or file-provider "
               "logs are not parsed yet.");
  return findings.take();
}

}  // namespace cirrovane
