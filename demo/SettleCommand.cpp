#include "demo/Arguments.h"
#include "demo/Command.h"
#include "demo/DemoMac.h"
#include "demo/Text.h"

#include <memory>
#include <ostream>
#include <string>

namespace cirrovane::demo {
namespace {

void settle(const std::string& folder, std::ostream& out) {
  DemoMac mac = DemoMac::open(absolutePath(folder));
  const Settled settled = mac.settle();
  for (const std::string& path : settled.madeFolders) {
    out << "Made the missing folder " << printable(path) << ".\n";
  }
  for (const std::string& path : settled.unwatchedFolders) {
    out << "Took " << printable(path) << " off the watchlist.\n";
  }
  out << "Every file is uploaded and local; " << settled.changedItems << " had to change. See\n"
      << "  cirrovanectl --mac-root " << shellWord(mac.root().native()) << " check\n";
}

void unsettle(const std::string& folder, std::ostream& out) {
  DemoMac mac = DemoMac::open(absolutePath(folder));
  mac.unsettle();
  out << "Files and watchlist are as they were at first. See\n"
      << "  cirrovanectl --mac-root " << shellWord(mac.root().native()) << " check\n";
}

}  // namespace

void addSettleCommand(CLI::App& app, Action& chosen) {
  const auto folder = std::make_shared<std::string>();
  CLI::App& command = addCommand(
      app, "settle", "Make it safe to close: all files uploaded and local",
      "Also makes the watched folder that is missing, and takes folders outside iCloud Drive off the watchlist. Files\n"
      "that you added are settled too. \"unsettle\" takes it back.",
      [&chosen, folder] { chosen = [folder](std::ostream& out) { settle(*folder, out); }; });
  addPathArgument(command, "DIR", *folder, "A demo Mac");
}

void addUnsettleCommand(CLI::App& app, Action& chosen) {
  const auto folder = std::make_shared<std::string>();
  CLI::App& command = addCommand(
      app, "unsettle", "Bring back the troubles that \"create\" made",
      "States, ages and the watchlist become those of a new demo Mac; ages count from now. Files that you added, and\n"
      "what you wrote into others, stay, and so does what \"fact\", \"process\" and \"network\" set.",
      [&chosen, folder] { chosen = [folder](std::ostream& out) { unsettle(*folder, out); }; });
  addPathArgument(command, "DIR", *folder, "A demo Mac");
}

}  // namespace cirrovane::demo
