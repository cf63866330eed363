#include "cli/Command.h"

#include "base/DisplayText.h"
#include "cli/Arguments.h"

#include <fmt/format.h>

namespace cirrovane {

void addJSONOption(CLI::App& command, ChosenCommand& chosen) {
  addFlag(command, "--json", chosen.wantsJSON, "Print one JSON document instead of text");
}

std::string isFolderArgument(const std::string& argument) {
  return argument.empty() ? "A folder's name cannot be empty." : "";
}

ExitStatus reportFailure(CommandContext& context, std::string_view message) {
  context.err.write(fmt::format("cirrovanectl: {}\n", displayText(message)));
  return ExitStatus::couldNot;
}

}  // namespace cirrovane
