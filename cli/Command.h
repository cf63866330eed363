#pragma once

#include "base/JSONWriter.h"
#include "cli/ExitStatus.h"
#include "cli/Output.h"
#include "coordinator/Services.h"
#include "platform/Machine.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace cirrovane {

/// What a command has to work with. Nothing is opened before the command asks for it, and each time anew.
struct CommandContext {
  Machine& machine;
  /// The answer: text for people, or one JSON document.
  Output& out;
  /// Everything else.
  Output& err;
  bool wantsJSON = false;

  /// Reads the file. An empty watchlist may get its first folder.
  std::unique_ptr<WatchlistStore> openWatchlist() const { return cirrovane::openWatchlist(machine); }
  /// Reads the file.
  std::unique_ptr<const ScanHistoryStore> openHistory() const { return cirrovane::openHistory(machine); }
  /// Reads the file.
  std::unique_ptr<IncidentStore> openIncidents() const { return cirrovane::openIncidents(machine); }
  /// What is remembered of uploads.
  std::shared_ptr<const UploadsStore> uploads() const { return makeUploadsStore(machine); }

  /// The report over the folders, with the scan's progress on the error stream where that is a terminal.
  SyncHealthReport scan(const std::vector<WatchFolder>& folders) const;
  /// What the verdict over the folders leaves out.
  CoverageReport lookAtCoverage(const std::vector<WatchFolder>& folders) const;
  /// Those that arguments name; without any, those of the watchlist.
  std::vector<WatchFolder> foldersMeantBy(const std::vector<std::string>& arguments) const;
  /// What is wrong beside the files, in the domain or in all of them.
  CollectedFindings collectFindings(std::optional<DiagnosticDomain> domain, const SyncHealthReport& report,
                                    const std::vector<WatchFolder>& folders) const;
  /// How the machine is now.
  SystemStatusSnapshot captureStatus() const;
  /// Of the optional tools.
  ToolInstaller toolInstaller() const { return makeToolInstaller(machine); }
};

/// What the command line asked for.
struct ChosenCommand {
  std::function<ExitStatus(CommandContext&)> run;
  bool wantsJSON = false;
};

/// A command's part in the command line: adds its subcommand, which sets `chosen` when the user asks for it.
void addCheckCommand(CLI::App& app, ChosenCommand& chosen);
void addWatchCommand(CLI::App& app, ChosenCommand& chosen);
void addCoverageCommand(CLI::App& app, ChosenCommand& chosen);
void addWatchlistCommand(CLI::App& app, ChosenCommand& chosen);
void addHistoryCommand(CLI::App& app, ChosenCommand& chosen);
void addIncidentsCommand(CLI::App& app, ChosenCommand& chosen);
void addDiagnoseCommand(CLI::App& app, ChosenCommand& chosen);
void addStatusCommand(CLI::App& app, ChosenCommand& chosen);
void addRefreshCommand(CLI::App& app, ChosenCommand& chosen);
void addExplainCommand(CLI::App& app, ChosenCommand& chosen);
void addExportCommand(CLI::App& app, ChosenCommand& chosen);
void addLeaveCommand(CLI::App& app, ChosenCommand& chosen);
void addPendingCommand(CLI::App& app, ChosenCommand& chosen);
void addMetricsCommand(CLI::App& app, ChosenCommand& chosen);
void addToolsCommand(CLI::App& app, ChosenCommand& chosen);
void addVersionCommand(CLI::App& app, ChosenCommand& chosen);

/// Adds the option --json to a subcommand.
void addJSONOption(CLI::App& command, ChosenCommand& chosen);

/// What is wrong with an argument that should name a folder; empty when nothing is.
std::string complaintAboutFolder(const std::string& argument);

/// What is wrong with the name of a file to write; empty when nothing is.
std::string complaintAboutFile(const std::string& name);

/// What is wrong with a text that should be a number of things to show; empty when nothing is.
std::string complaintAboutCount(const std::string& text);

/// What is left to upload by a report, in words; empty for nothing. Records nothing.
std::string leftText(const SyncHealthReport& report, const CommandContext& context);

/// Writes a report as the answer: as text for people, or as one JSON document.
void writeReport(const SyncHealthReport& report, CommandContext& context);

/// Says why a command could not do what it was asked for; names in the message are made harmless.
ExitStatus reportFailure(CommandContext& context, std::string_view message);

/// Writes one JSON document and a line end.
template <class Value>
void writeJSONDocument(Output& out, const Value& value) {
  JSONWriter writer([&](std::string_view piece) { return out.write(piece); });
  writer.write(value);
  if (writer.finish()) {
    out.write("\n");
  }
}

}  // namespace cirrovane
