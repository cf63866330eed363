#include "demo/Arguments.h"
#include "demo/CloudAttribute.h"
#include "demo/CloudState.h"
#include "demo/Command.h"
#include "demo/Failure.h"
#include "demo/Text.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::demo {
namespace {

struct SetOptions {
  std::string file;
  std::vector<std::string> assignments;
};

/// Changes the state as told, or not at all.
void assign(CloudState& state, const std::vector<std::string>& assignments) {
  for (const std::string_view assignment : assignments) {
    const std::size_t separator = assignment.find('=');
    if (separator == std::string_view::npos) {
      throw WrongUsage("\"" + printable(assignment) + "\" is not of the form key=value.");
    }
    const std::string_view key = assignment.substr(0, separator);
    const std::string_view value = assignment.substr(separator + 1);
    if (const std::optional<std::string> complaint = complaintAbout(key, value)) {
      throw WrongUsage(*complaint);
    }
    state.set(key, value);
  }
}

void setState(const SetOptions& options) {
  // What is wrong with the arguments comes before what is wrong with the file.
  CloudState untouched;
  assign(untouched, options.assignments);

  const std::filesystem::path path = absolutePath(options.file);
  if (!std::filesystem::exists(std::filesystem::symlink_status(path))) {
    throw CouldNot("There is no file " + printable(path.native()) + ".");
  }
  CloudState state = readCloudState(path).value_or(CloudState());
  assign(state, options.assignments);
  writeCloudState(path, state);
}

std::string footer() {
  std::ostringstream text;
  text << "An empty value removes the key; without any key the file is no iCloud item. The keys and their values:\n";
  for (const CloudKey& key : cloudKeys()) {
    std::string form = std::string(key.name) + "=";
    for (const std::string_view value : key.values) {
      form += std::string(form.ends_with('=') ? "" : "|") + std::string(value);
    }
    form += key.values.empty() ? "TEXT" : "";
    text << "  " << form << "\n      " << key.meaning << '\n';
  }
  text << "\nExamples:\n"
          "  cirrovane-demo-mac set Report.pdf isUploaded=false isUploading=true\n"
          "  cirrovane-demo-mac set Report.pdf uploadingError='The request timed out.'\n"
          "  cirrovane-demo-mac set Report.pdf uploadingError=";
  return text.str();
}

}  // namespace

void addSetCommand(CLI::App& app, Action& chosen) {
  const auto options = std::make_shared<SetOptions>();
  CLI::App& command = addCommand(app, "set", "Change the iCloud state of a file", footer(),
                                 [&chosen, options] { chosen = [options](std::ostream&) { setState(*options); }; });
  addPathArgument(command, "FILE", options->file, "A file or a folder");
  addArguments(command, "KEY=VALUE", options->assignments, "What to change");
}

}  // namespace cirrovane::demo
