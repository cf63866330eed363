#include "demo/Arguments.h"
#include "demo/Command.h"
#include "demo/DemoMac.h"
#include "demo/SampleFiles.h"
#include "demo/SampleWatchlist.h"
#include "demo/Text.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>

namespace cirrovane::demo {
namespace {

void tell(const DemoMac& mac, std::ostream& out) {
  const std::vector<SampleFile> files = sampleFiles();
  const auto inCloud =
      std::ranges::count_if(files, [](const SampleFile& file) { return file.state != SampleState::localOnly; });
  out << "Made a Mac in " << printable(mac.root().native()) << ": " << files.size() << " files, " << inCloud
      << " of them in iCloud Drive.\n\nIts user watches\n";
  for (const WatchedFolder& folder : sampleWatchlist(mac.home())) {
    const bool isMissing = folder.path == missingFolder(mac.home());
    const bool isOutside = !std::string_view(folder.path).starts_with(mac.drive().native());
    out << "  " << folder.name
        << (isMissing   ? " (does not exist)"
            : isOutside ? " (outside iCloud Drive)"
                        : "")
        << '\n';
  }
  const std::string root = shellWord(mac.root().native());
  const std::string pending = shellWord((mac.drive() / "Invoices/Expenses Q4.csv").native());
  out << "\nNot everything has reached iCloud. Try\n"
      << "  cirrovanectl --mac-root " << root << " check\n"
      << "  cirrovane-demo-mac set " << pending << " isUploaded=true\n"
      << "  cirrovane-demo-mac settle " << root << "     # now it is safe to close\n"
      << "  cirrovane-demo-mac unsettle " << root << "   # as at first\n"
      << "  cirrovane-demo-mac fact " << root << " thermalState '\"serious\"'\n"
      << "  cirrovane-demo-mac process " << root << " bird off\n"
      << "  cirrovane-demo-mac network " << root << " off\n";
}

}  // namespace

void addCreateCommand(CLI::App& app, Action& chosen) {
  const auto folder = std::make_shared<std::string>();
  CLI::App& command = addCommand(
      app, "create", "Make a Mac whose files have not all reached iCloud",
      "DIR is made when it does not exist. It may be empty, or a demo Mac, which is then made anew: everything in it\n"
      "is removed. Any other folder is left alone. It must lie on a file system with extended attributes.\n\n"
      "Besides files it holds a Mac's commands: DIR/usr/bin/pgrep and the like, and a brew that installs. What would\n"
      "put the Mac to sleep, shut it down or keep it awake writes a line each time into DIR/var/log/power.log.\n\n"
      "Example:\n"
      "  cirrovane-demo-mac create ~/demo-mac\n"
      "  cirrovanectl --mac-root ~/demo-mac check",
      [&chosen, folder] {
        chosen = [folder](std::ostream& out) { tell(DemoMac::create(absolutePath(*folder)), out); };
      });
  addPathArgument(command, "DIR", *folder, "Folder that is to stand for the Mac's disk");
}

}  // namespace cirrovane::demo
