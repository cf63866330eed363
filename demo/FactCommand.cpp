#include "base/MacRootFacts.h"
#include "demo/Arguments.h"
#include "demo/Command.h"
#include "demo/Failure.h"
#include "demo/MachineFacts.h"
#include "demo/Text.h"

#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

struct FactOptions {
  std::string folder;
  std::string key;
  std::string value;
};

void changeFact(const FactOptions& options) {
  const auto value = nlohmann::ordered_json::parse(options.value, nullptr, /*allow_exceptions=*/false);
  if (value.is_discarded()) {
    throw WrongUsage(printable(options.value) + " is not JSON. A text needs its own quotes: '\"serious\"'.");
  }
  if (const std::optional<std::string> complaint = complaintAbout(options.key, value)) {
    throw WrongUsage(*complaint);
  }
  setFact(absolutePath(options.folder), options.key, value);
}

std::string footer() {
  std::ostringstream text;
  text << "The facts, each with an example; null removes one, as if the Mac did not know:\n";
  for (const MacRootFact& fact : macRootFacts()) {
    text << "  " << fact.key << "\n      " << fact.example << '\n';
  }
  text << "\nExamples:\n"
          "  cirrovane-demo-mac fact ~/demo-mac lowPowerMode true\n"
          "  cirrovane-demo-mac fact ~/demo-mac thermalState '\"serious\"'\n"
          "  cirrovane-demo-mac fact ~/demo-mac powerSources null";
  return text.str();
}

}  // namespace

void addFactCommand(CLI::App& app, Action& chosen) {
  const auto options = std::make_shared<FactOptions>();
  CLI::App& command = addCommand(app, "fact", "Change what the Mac knows about itself, in its machine.json", footer(),
                                 [&chosen, options] { chosen = [options](std::ostream&) { changeFact(*options); }; });
  addPathArgument(command, "DIR", options->folder, "A demo Mac, or another folder with a machine.json");
  addArgument(command, "KEY", options->key, "The fact");
  addArgument(command, "JSON", options->value, "Its new value");
}

}  // namespace cirrovane::demo
