#include "demo/Arguments.h"
#include "demo/Command.h"
#include "demo/DemoMac.h"
#include "demo/RunningProcesses.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>

namespace cirrovane::demo {
namespace {

struct ProcessOptions {
  std::string folder;
  std::string name;
  bool isOn = false;
};

void switchProcess(const ProcessOptions& options, std::ostream& out) {
  const std::filesystem::path root = DemoMac::open(absolutePath(options.folder)).root();
  const bool hasChanged = options.isOn ? startProcess(root, options.name) : stopProcess(root, options.name);
  out << options.name << (hasChanged ? " is now " : " is already ") << (options.isOn ? "running" : "off") << ".\n";
}

std::string complaintAboutName(const std::string& name) {
  const bool isGood = !name.empty() && std::ranges::none_of(name, [](char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte <= ' ' || byte == 0x7f || byte == '/';
  });
  return isGood ? "" : "The name of a process has no blank, line break or slash.";
}

}  // namespace

void addProcessCommand(CLI::App& app, Action& chosen) {
  const auto options = std::make_shared<ProcessOptions>();
  CLI::App& command = addCommand(
      app, "process", "Start or stop a process, as pgrep sees it",
      "On a new demo Mac bird, cloudd, fileproviderd and Finder run. DIR/processes.txt lists them, one a line.\n\n"
      "Examples:\n"
      "  cirrovane-demo-mac process ~/demo-mac bird off\n"
      "  cirrovane-demo-mac process ~/demo-mac smartctl on",
      [&chosen, options] { chosen = [options](std::ostream& out) { switchProcess(*options, out); }; });
  addPathArgument(command, "DIR", options->folder, "A demo Mac");
  addArgument(command, "NAME", options->name, "The process", complaintAboutName);
  addSwitchArgument(command, options->isOn, "Whether it is to run");
}

}  // namespace cirrovane::demo
