#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/InlineRefresh.h"

#include <optional>

namespace cirrovane {
namespace {

ExitStatus refresh(CommandContext& context) {
  const InlineRefresh refreshed(context);
  const SyncHealthReport& report = *refreshed.cycle().report().value();
  writeReport(report, context);
  if (const std::optional<Failure> loss = refreshed.loss()) {
    return reportFailure(context, "The scan was not recorded: " + loss->message);
  }
  return report.safeToClose ? ExitStatus::done : ExitStatus::notSafe;
}

}  // namespace

void addRefreshCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command = addCommand(
      app, "refresh", "Scan the watchlist, judge the machine, and record both",
      "One whole cycle of the application: a scan, the findings and a status sample, recorded in the history and the\n"
      "incidents. Shows the verdict.\n\n"
      "Examples:\n"
      "  cirrovanectl refresh\n"
      "  cirrovanectl refresh --json | jq .safeToClose");
  addJSONOption(command, chosen);
  onChosen(command, [&chosen] { chosen.run = refresh; });
}

}  // namespace cirrovane
