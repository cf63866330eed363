#include "demo/Arguments.h"
#include "demo/Command.h"
#include "demo/DemoMac.h"
#include "demo/Network.h"

#include <memory>
#include <ostream>
#include <string>

namespace cirrovane::demo {
namespace {

struct NetworkOptions {
  std::string folder;
  bool isOn = false;
};

void switchNetwork(const NetworkOptions& options, std::ostream& out) {
  setNetwork(DemoMac::open(absolutePath(options.folder)).root(), options.isOn);
  out << "The network is " << (options.isOn ? "on" : "off") << ".\n";
}

}  // namespace

void addNetworkCommand(CLI::App& app, Action& chosen) {
  const auto options = std::make_shared<NetworkOptions>();
  CLI::App& command = addCommand(
      app, "network", "Connect the Mac to the network, or take it off",
      "Without a network there is no default route, no host is reachable, no name is resolved, and brew installs\n"
      "nothing. DIR/network.txt holds the one word.\n\n"
      "Examples:\n"
      "  cirrovane-demo-mac network ~/demo-mac off\n"
      "  cirrovane-demo-mac network ~/demo-mac on",
      [&chosen, options] { chosen = [options](std::ostream& out) { switchNetwork(*options, out); }; });
  addPathArgument(command, "DIR", options->folder, "A demo Mac");
  addSwitchArgument(command, options->isOn, "What the network is to be");
}

}  // namespace cirrovane::demo
