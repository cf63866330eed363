// cirrovane-demo-mac: makes a folder that stands for a Mac, and changes it. Here: the commands' list, the exit status.
//   XCommand.cpp      a command each
//   DemoMac           the Mac's folder: where its files, facts and commands lie
//   SampleFiles       the files of a new Mac; CloudState and CloudAttribute hold the state of a file
//   Uploading         pending files, which leave one after another
//   MachineFacts      what the Mac says of itself; MacCommands are the tools that it runs

#include "demo/Command.h"
#include "demo/ExitStatus.h"
#include "demo/Failure.h"
#include "demo/Text.h"

#include <cerrno>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>

#include <CLI/CLI.hpp>

namespace cirrovane::demo {
namespace {

constexpr const char* kFooter =
    "A demo Mac is a folder. \"cirrovanectl --mac-root DIR\" takes it for a Mac's disk.\n\n"
    "Start with\n"
    "  cirrovane-demo-mac create ~/demo-mac\n"
    "  cirrovanectl --mac-root ~/demo-mac check\n"
    "  cirrovane-demo-mac settle ~/demo-mac\n"
    "  cirrovanectl --mac-root ~/demo-mac check\n\n"
    "Exit status:\n"
    "  0  done\n"
    "  2  wrong usage\n"
    "  3  could not do it; the message says why";

ExitStatus complain(ExitStatus status, std::string_view message) {
  std::cerr << "cirrovane-demo-mac: " << message << '\n';
  return status;
}

ExitStatus carryOut(const Action& action) {
  try {
    action(std::cout);
  } catch (const WrongUsage& error) {
    return complain(ExitStatus::wrongUsage, error.what());
  } catch (const CouldNot& error) {
    return complain(ExitStatus::couldNot, error.what());
  } catch (const std::filesystem::filesystem_error& error) {
    return complain(ExitStatus::couldNot,
                    printable(error.path1().native()) + " cannot be used: " + error.code().message() + ".");
  }
  errno = 0;
  // A reader that has gone away wants no more; any other loss is one.
  if (!std::cout.flush() && errno != EPIPE) {
    return complain(ExitStatus::couldNot, "It was done, but the answer could not be written in full.");
  }
  return ExitStatus::done;
}

ExitStatus runCommandLine(int argumentCount, char** arguments) {
  CLI::App app("Makes and changes a Mac to try Cirrovane on, without a Mac.", "cirrovane-demo-mac");
  app.footer(kFooter);
  app.require_subcommand(1);
  Action chosen;
  addCreateCommand(app, chosen);
  addSettleCommand(app, chosen);
  addUnsettleCommand(app, chosen);
  addSetCommand(app, chosen);
  addUploadCommand(app, chosen);
  addFactCommand(app, chosen);
  addProcessCommand(app, chosen);
  addNetworkCommand(app, chosen);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitStatus::done : ExitStatus::wrongUsage;
  }
  return carryOut(chosen);
}

}  // namespace
}  // namespace cirrovane::demo

int main(int argumentCount, char** arguments) {
  using cirrovane::demo::ExitStatus;
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return static_cast<int>(cirrovane::demo::runCommandLine(argumentCount, arguments));
  } catch (const std::exception& error) {
    std::cerr << "cirrovane-demo-mac: " << error.what() << '\n';
    return static_cast<int>(ExitStatus::couldNot);
  }
}
