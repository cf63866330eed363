#include "base/JSONRecord.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/TextStyle.h"
#include "diagnostics/OptionalTool.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// A tool and whether this machine has it.
struct ToolState {
  std::string name;
  std::string command;
  std::string installCommand;
  std::string purpose;
  std::string unlocks;
  bool installed = false;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"name", &ToolState::name},
                      JSONField{"command", &ToolState::command},
                      JSONField{"installCommand", &ToolState::installCommand},
                      JSONField{"purpose", &ToolState::purpose},
                      JSONField{"unlocks", &ToolState::unlocks},
                      JSONField{"installed", &ToolState::installed}};
  }
};

std::vector<ToolState> toolStates(const ToolInstaller& installer) {
  std::vector<ToolState> states;
  states.reserve(optionalTools().size());
  for (const OptionalTool& tool : optionalTools()) {
    states.push_back({std::string(tool.name), std::string(tool.command), std::string(tool.installCommand),
                      std::string(tool.purpose), std::string(tool.unlocks), installer.checkInstalled(tool.command)});
  }
  return states;
}

void printTools(CommandContext& context) {
  const std::vector<ToolState> states = toolStates(context.toolInstaller());
  if (context.wantsJSON) {
    writeJSONDocument(context.out, states);
    return;
  }
  const TextStyle style(context.out.isColoured());
  for (const ToolState& tool : states) {
    const std::string mark = fmt::format("{:<13}", tool.installed ? "installed" : "not installed");
    context.out.write(fmt::format("{}  {}  {}\n",
                                  tool.installed ? style.inStateColour(HealthState::safe, mark) : style.dim(mark),
                                  style.bold(fmt::format("{:<14}", tool.name)), tool.purpose));
    if (!tool.installed) {
      context.out.write(fmt::format("{:31}{}\n", "", style.dim(tool.installCommand)));
    }
  }
}

ExitStatus listTools(CommandContext& context) {
  printTools(context);
  return ExitStatus::done;
}

ExitStatus install(const std::string& name, CommandContext& context) {
  const auto tools = optionalTools();
  const auto tool = std::ranges::find_if(
      tools, [&](const OptionalTool& candidate) { return candidate.name == name || candidate.command == name; });
  if (tool == tools.end()) {
    return reportFailure(context,
                         fmt::format("There is no tool {}. \"cirrovanectl tools\" lists those there are.", name));
  }
  const ToolInstaller installer = context.toolInstaller();
  const std::optional<std::string> brew = installer.brewPath();
  if (!brew) {
    return reportFailure(context, "Homebrew not found. Install Homebrew first to use one-click installs.");
  }
  if (!installer.runBrewInstall(*brew, tool->name)) {
    return reportFailure(context, fmt::format("Install failed: {}", tool->installCommand));
  }
  if (context.wantsJSON) {
    printTools(context);
  } else {
    context.out.write("Install complete\n");
  }
  return ExitStatus::done;
}

}  // namespace

void addToolsCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command = addCommand(app, "tools", "Show optional tools that deepen the diagnostics; install them",
                                 "Examples:\n"
                                 "  cirrovanectl tools\n"
                                 "  cirrovanectl tools install smartmontools");
  takeVerbs(command);
  addJSONOption(command, chosen);

  const auto name = std::make_shared<std::string>();
  CLI::App& installVerb = addCommand(command, "install", "Install a tool through Homebrew");
  addArgument(installVerb, {.name = "NAME", .help = "The tool's name or its command", .isRequired = true}, *name);
  addJSONOption(installVerb, chosen);

  onChosen(command, [&chosen, &installVerb, name] {
    if (isChosen(installVerb)) {
      chosen.run = [name](CommandContext& context) { return install(*name, context); };
    } else {
      chosen.run = listTools;
    }
  });
}

}  // namespace cirrovane
