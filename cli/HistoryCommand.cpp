#include "base/DisplayText.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/LocalTime.h"
#include "cli/TextStyle.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

void printSnapshot(const ScanSnapshot& snapshot, const TextStyle& style, Output& out) {
  const std::string_view verdict = snapshot.safeToClose ? "safe    " : "not safe";
  out.write(fmt::format("{}  {}  trust {:>3}  local {:>3}  {} pending, {} blockers\n",
                        localTimeText(snapshot.timestamp),
                        style.inVerdictColour(snapshot.safeToClose, snapshot.status, verdict), snapshot.score,
                        snapshot.localAvailabilityScore ? fmt::to_string(*snapshot.localAvailabilityScore) : "-",
                        snapshot.pendingUploads, snapshot.blockerCount));
  if (snapshot.topBlockerReason) {
    out.write(fmt::format("{:18}{}\n", "",
                          style.dim(fmt::format("{}: {}", displayTitle(*snapshot.topBlockerReason),
                                                displayText(snapshot.topBlockerFilePath.value_or("-"))))));
  }
}

ExitStatus history(std::optional<std::int64_t> limit, CommandContext& context) {
  std::vector<ScanSnapshot> snapshots = context.openHistory()->snapshots();
  if (limit && *limit < std::ssize(snapshots)) {
    snapshots.resize(static_cast<std::size_t>(*limit));
  }
  if (context.wantsJSON) {
    writeJSONDocument(context.out, snapshots);
    return ExitStatus::done;
  }
  if (snapshots.empty()) {
    context.out.write("No scan has been recorded yet.\n");
  }
  const TextStyle style(context.out.isColoured());
  for (const ScanSnapshot& snapshot : snapshots) {
    printSnapshot(snapshot, style, context.out);
  }
  return ExitStatus::done;
}

}  // namespace

void addHistoryCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto limit = std::make_shared<std::optional<std::int64_t>>();
  CLI::App& command = addCommand(app, "history", "Show the recorded scans, the newest first");
  addArgument(command,
              {.name = "--limit",
               .help = "Show at most N scans (default: all)",
               .valueName = "N",
               .complaint = complaintAboutCount},
              *limit);
  addJSONOption(command, chosen);
  onChosen(command,
           [&chosen, limit] { chosen.run = [limit](CommandContext& context) { return history(*limit, context); }; });
}

}  // namespace cirrovane
