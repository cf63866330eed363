// cirrovanectl. Here: the machine, the streams and the exit status.
//   XCommand.cpp      a command each: its arguments, what it does, its text
//   Command.h         what a command works with: stores, scan, findings, status
//   Arguments.h       the one way to the parser
//   ../coordinator    makes stores and services (Services), runs a whole refresh (RefreshCycle)

#include "base/DisplayText.h"
#include "cli/Command.h"
#include "cli/ExitStatus.h"
#include "cli/FolderArgument.h"
#include "cli/Output.h"
#include "platform/CommandRunner.h"
#include "platform/Machine.h"

#include <csignal>
#include <exception>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  safe to close; or done, for a command without a verdict\n"
    "  1  not safe to close\n"
    "  2  wrong usage\n"
    "  3  could not do it; the message says why\n\n"
    "Start with \"cirrovanectl check\", and see \"cirrovanectl check --help\".";

/// What the parser has to say goes through the same streams as everything else, and arguments that it repeats are as
/// little to be trusted as any other name.
ExitStatus explainUsage(const CLI::App& app, const CLI::ParseError& error, Output& out, Output& err) {
  const bool asksForHelp = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success);
  if (!asksForHelp) {
    err.write(fmt::format("cirrovanectl: {}\nRun with --help for more information.\n", displayText(error.what())));
    return ExitStatus::wrongUsage;
  }
  std::ostringstream help;
  app.exit(error, help, help);
  out.write(help.str());
  return statusAfterWriting(ExitStatus::done, out, err);
}

ExitStatus runOn(const std::string& root, const ChosenCommand& chosen, Output& out, Output& err) {
  Result<Machine> machine = makeMachine(absolutePath(root));
  if (!machine) {
    err.write(fmt::format("cirrovanectl: {}\n", displayText(machine.message())));
    return ExitStatus::couldNot;
  }
  CommandContext context{*machine, out, err, chosen.wantsJSON};
  const ExitStatus status = chosen.run(context);
  return statusAfterWriting(status, out, err);
}

ExitStatus runCommandLine(int argumentCount, char** arguments) {
  Output out(STDOUT_FILENO);
  Output err(STDERR_FILENO);

  CLI::App app("Is it safe to close this Mac without losing work that has not reached iCloud Drive?", "cirrovanectl");
  app.footer(kFooter);
  app.require_subcommand(1);
  app.fallthrough();
  std::string root = "/";
  if (takesMachineFolders()) {
    app.add_option("--mac-root", root, "Folder that stands for a Mac's disk (default: this machine)")->type_name("DIR");
  }
  ChosenCommand chosen;
  addCheckCommand(app, chosen);
  addExplainCommand(app, chosen);
  addRefreshCommand(app, chosen);
  addWatchCommand(app, chosen);
  addLeaveCommand(app, chosen);
  addPendingCommand(app, chosen);
  addMetricsCommand(app, chosen);
  addCoverageCommand(app, chosen);
  addWatchlistCommand(app, chosen);
  addHistoryCommand(app, chosen);
  addIncidentsCommand(app, chosen);
  addDiagnoseCommand(app, chosen);
  addStatusCommand(app, chosen);
  addExportCommand(app, chosen);
  addToolsCommand(app, chosen);
  addVersionCommand(app, chosen);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    return explainUsage(app, error, out, err);
  }
  return runOn(root, chosen, out, err);
}

}  // namespace

}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  cirrovane::ignoreClosedPipes();
  // Whoever started us may have had no interest in its children's ends; we have one in ours.
  std::signal(SIGCHLD, SIG_DFL);
  cirrovane::endLimitedCommandsOnSignals();
  try {
    return static_cast<int>(cirrovane::runCommandLine(argumentCount, arguments));
  } catch (const std::exception& error) {
    std::cerr << "cirrovanectl: " << error.what() << '\n';
    return static_cast<int>(cirrovane::ExitStatus::couldNot);
  }
}
