#pragma once

#include "base/JSONWriter.h"
#include "cli/ExitStatus.h"
#include "cli/Output.h"
#include "platform/Machine.h"
#include "stores/WatchlistStore.h"

#include <functional>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace cirrovane {

/// What a command has to work with.
struct CommandContext {
  Machine& machine;
  /// The answer: text for people, or one JSON document.
  Output& out;
  /// Everything else.
  Output& err;
  bool wantsJSON = false;
};

/// What the command line asked for.
struct ChosenCommand {
  std::function<ExitStatus(CommandContext&)> run;
  bool wantsJSON = false;
};

/// A command's part in the command line: adds its subcommand, which sets `chosen` when the user asks for it.
void addCheckCommand(CLI::App& app, ChosenCommand& chosen);
void addWatchlistCommand(CLI::App& app, ChosenCommand& chosen);
void addHistoryCommand(CLI::App& app, ChosenCommand& chosen);
void addIncidentsCommand(CLI::App& app, ChosenCommand& chosen);
void addDiagnoseCommand(CLI::App& app, ChosenCommand& chosen);
void addStatusCommand(CLI::App& app, ChosenCommand& chosen);
void addRefreshCommand(CLI::App& app, ChosenCommand& chosen);
void addExplainCommand(CLI::App& app, ChosenCommand& chosen);
void addExportCommand(CLI::App& app, ChosenCommand& chosen);
void addToolsCommand(CLI::App& app, ChosenCommand& chosen);
void addVersionCommand(CLI::App& app, ChosenCommand& chosen);

/// Adds the option --json to a subcommand.
void addJSONOption(CLI::App& command, ChosenCommand& chosen);

/// What is wrong with an argument that should name a folder; empty when nothing is.
std::string isFolderArgument(const std::string& argument);

/// The user's watchlist. Opening it may give an empty one its first folder.
WatchlistStore openWatchlist(const Machine& machine);

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
