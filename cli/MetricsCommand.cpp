#include "base/Path.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderArgument.h"
#include "coordinator/AppUpdateService.h"
#include "coordinator/FleetMetrics.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string metricsOf(CommandContext& context) {
  const std::vector<WatchFolder> folders = context.openWatchlist()->folders();
  const SyncHealthReport report = context.scan(folders);
  const CoverageReport coverage = context.lookAtCoverage(folders);
  const PendingUploads uploads =
      pendingTotals(context.uploads()->recordAfter(report), pendingFilesOf(report), report.generatedAt);
  const std::unique_ptr<const ScanHistoryStore> history = context.openHistory();
  const std::unique_ptr<const IncidentStore> incidents = context.openIncidents();
  return fleetMetrics({.report = report,
                       .coverage = &coverage,
                       .uploads = uploads,
                       .history = history->snapshots(),
                       .incidents = incidents->records(),
                       .version = versionLabel(*context.machine.bundle)});
}

ExitStatus metrics(const std::string& textfile, CommandContext& context) {
  const std::string text = metricsOf(context);
  if (textfile.empty()) {
    context.out.write(text);
    return ExitStatus::done;
  }
  // Whoever collects it runs as another user.
  const std::optional<Failure> failure = context.machine.fileStorage->writeAtomically(
      absolutePath(textfile), FileAccess::asUsual, [&](const ByteSink& write) { return write(text); });
  return failure ? reportFailure(context, "The metrics could not be written: " + failure->message) : ExitStatus::done;
}

}  // namespace

void addMetricsCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto textfile = std::make_shared<std::string>();
  CLI::App& command =
      addCommand(app, "metrics", "Print the state of this machine for Prometheus",
                 "Scans the watchlist, looks at what the verdict leaves out, and records nothing. No name and\n"
                 "no path of a file is in it.\n\n"
                 "Examples:\n"
                 "  cirrovanectl metrics\n"
                 "  cirrovanectl metrics --textfile /var/lib/node_exporter/cirrovane.prom");
  addArgument(command,
              {.name = "--textfile",
               .help = "Write them, whole or not at all, to a file for node_exporter's textfile collector",
               .valueName = "FILE",
               .complaint = complaintAboutFile},
              *textfile);
  onChosen(command, [&chosen, textfile] {
    chosen.run = [textfile](CommandContext& context) { return metrics(*textfile, context); };
  });
}

}  // namespace cirrovane
