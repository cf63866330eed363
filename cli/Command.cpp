#include "cli/Command.h"

#include "base/DisplayText.h"
#include "cli/Arguments.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressLine.h"
#include "cli/ReportText.h"
#include "coordinator/UploadWords.h"

#include <cstdint>

#include <fmt/format.h>

namespace cirrovane {

SyncHealthReport CommandContext::scan(const std::vector<WatchFolder>& folders) const {
  ScanProgress progress;
  const ProgressLine line(progress, err);
  return makeScanEngine(machine, &progress)->scan(folders);
}

CoverageReport CommandContext::lookAtCoverage(const std::vector<WatchFolder>& folders) const {
  // Nobody can ask this look to stop.
  return makeCoverageKeeper(machine)->look(folders).value_or(CoverageLook()).report;
}

std::vector<WatchFolder> CommandContext::foldersMeantBy(const std::vector<std::string>& arguments) const {
  return arguments.empty() ? openWatchlist()->folders() : namedFolders(arguments);
}

CollectedFindings CommandContext::collectFindings(std::optional<DiagnosticDomain> domain,
                                                  const SyncHealthReport& report,
                                                  const std::vector<WatchFolder>& folders) const {
  const auto service = makeDiagnosticsService(machine);
  const auto probes = makeProbeRunner(machine);
  return domain ? service->collect(*domain, *probes, report, folders) : service->collect(*probes, report, folders);
}

SystemStatusSnapshot CommandContext::captureStatus() const {
  const auto probes = makeProbeRunner(machine);
  return makeSystemStatusService(machine)->capture(*probes);
}

void addJSONOption(CLI::App& command, ChosenCommand& chosen) {
  addFlag(command, "--json", chosen.wantsJSON, "Print one JSON document instead of text");
}

std::string complaintAboutFolder(const std::string& argument) {
  return argument.empty() ? "A folder's name cannot be empty." : "";
}

std::string complaintAboutCount(const std::string& text) {
  return wholeNumberOf(text) >= std::int64_t{0} ? "" : text + " is no whole number from 0 on";
}

std::string complaintAboutFile(const std::string& name) {
  if (name.empty()) {
    return "A file's name cannot be empty.";
  }
  return name.ends_with('/') ? name + " is the name of a folder." : "";
}

std::string leftText(const SyncHealthReport& report, const CommandContext& context) {
  const std::vector<PendingFile> pending = pendingFilesOf(report);
  if (pending.empty()) {
    return "";
  }
  const UploadRecord record = context.uploads()->recordAfter(report);
  const PendingUploads uploads = pendingTotals(record, pending, report.generatedAt);
  return fmt::format("{}, {}", amountText(uploads), timeLeftText(uploads, quietFor(record, uploads.generatedAt)));
}

void writeReport(const SyncHealthReport& report, CommandContext& context) {
  if (context.wantsJSON) {
    writeJSONDocument(context.out, report);
  } else {
    context.out.write(reportText(report, leftText(report, context), TextStyle(context.out.isColoured())));
  }
}

ExitStatus reportFailure(CommandContext& context, std::string_view message) {
  context.err.write(fmt::format("cirrovanectl: {}\n", displayText(message)));
  return ExitStatus::couldNot;
}

}  // namespace cirrovane
