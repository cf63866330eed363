#include "base/DisplayText.h"
#include "base/JSONRecord.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "coordinator/AppUpdateService.h"

#include <string>
#include <tuple>

namespace cirrovane {
namespace {

struct Version {
  std::string versionLabel;

  static constexpr auto jsonFields() { return std::tuple{JSONField{"versionLabel", &Version::versionLabel}}; }
};

ExitStatus version(CommandContext& context) {
  const std::string label = versionLabel(*context.machine.bundle);
  if (context.wantsJSON) {
    writeJSONDocument(context.out, Version{label});
  } else {
    context.out.write(displayText(label) + "\n");
  }
  return ExitStatus::done;
}

}  // namespace

void addVersionCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command = addCommand(app, "version", "Show which build this is");
  addJSONOption(command, chosen);
  onChosen(command, [&chosen] { chosen.run = version; });
}

}  // namespace cirrovane
