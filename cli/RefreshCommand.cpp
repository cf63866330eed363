#include "base/DisplayText.h"
#include "base/Path.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressLine.h"
#include "coordinator/RefreshCycle.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// A whole refresh, all of it on this thread: nobody is notified, and no setting is written.
class InlineRefresh {
 public:
  explicit InlineRefresh(CommandContext& context)
      : cycle_(makeServices(context.machine, &progress_), {{executor_, executor_, executor_, executor_},
                                                           *context.machine.fileStorage,
                                                           *context.machine.userDefaults,
                                                           *context.machine.clock,
                                                           *context.machine.monotonicClock}) {
    const ProgressLine line(progress_, context.err);
    cycle_.refresh();
  }

  const RefreshCycle& cycle() const { return cycle_; }

  /// Why something of the refresh could not be kept; absent when all was.
  std::optional<Failure> loss() const {
    const auto& history = cycle_.historyStore().saveFailure();
    const auto& incidents = cycle_.incidentStore().saveFailure();
    if (history || incidents) {
      return history ? history : incidents;
    }
    return cycle_.fileCountFailure();
  }

 private:
  InlineExecutor executor_;
  ScanProgress progress_;
  RefreshCycle cycle_;
};

ExitStatus refresh(CommandContext& context) {
  const InlineRefresh refreshed(context);
  const SyncHealthReport& report = *refreshed.cycle().report().value();
  writeReport(report, context);
  if (const std::optional<Failure> loss = refreshed.loss()) {
    return reportFailure(context, "The scan was not recorded: " + loss->message);
  }
  return report.safeToClose ? ExitStatus::done : ExitStatus::notSafe;
}

ExitStatus exportPacket(const std::string& destination, CommandContext& context) {
  const InlineRefresh refreshed(context);
  if (const std::optional<Failure> loss = refreshed.loss()) {
    // The packet is what was asked for, and it can still be made.
    reportFailure(context, "The scan was not recorded: " + loss->message);
  }
  if (destination == "-") {
    writeProofPacket(refreshed.cycle().proofPacket(), [&](std::string_view piece) { return context.out.write(piece); });
    return ExitStatus::done;
  }
  const std::string path = absolutePath(destination);
  if (const std::optional<Failure> failure = refreshed.cycle().exportProofPacket(path)) {
    return reportFailure(context, "Export failed: " + failure->message);
  }
  if (!context.wantsJSON) {
    context.out.write(fmt::format("Proof packet exported to {}.\n", displayText(lastPathComponent(path))));
  }
  return ExitStatus::done;
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

void addExportCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto destination = std::make_shared<std::string>();
  CLI::App& command = addCommand(app, "export", "Refresh, then write everything known into a proof packet",
                                 "A file that exists is replaced, whole or not at all.\n\n"
                                 "Examples:\n"
                                 "  cirrovanectl export proof.json\n"
                                 "  cirrovanectl export - | jq '.diagnostics[] | select(.severity != \"ok\")'");
  addArgument(command,
              {.name = "FILE",
               .help = "The file to write; - for standard output",
               .isRequired = true,
               .complaint = complaintAboutFile},
              *destination);
  addFlag(command, "--json", chosen.wantsJSON, "Print nothing: the packet is the document");
  onChosen(command, [&chosen, destination] {
    chosen.run = [destination](CommandContext& context) { return exportPacket(*destination, context); };
  });
}

}  // namespace cirrovane
