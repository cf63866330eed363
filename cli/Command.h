#pragma once

#include "cli/ExitStatus.h"
#include "cli/Output.h"
#include "core/JSONWriter.h"
#include "platform/Machine.h"

#include <functional>

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

/// Adds the option --json to a subcommand.
void addJSONOption(CLI::App& command, ChosenCommand& chosen);

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
