#include "diagnostics/ToolInstaller.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

/// On Apple silicon and on Intel.
constexpr std::array<const char*, 2> kBrewPaths = {"/opt/homebrew/bin/brew", "/usr/local/bin/brew"};
constexpr std::string_view kUsualFolders = "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";

}  // namespace

std::optional<std::string> ToolInstaller::brewPath() const {
  const auto* found =
      std::ranges::find_if(kBrewPaths, [&](const char* path) { return commandRunner_.isExecutable(path); });
  return found != kBrewPaths.end() ? std::optional<std::string>(*found) : std::nullopt;
}

bool ToolInstaller::checkInstalled(std::string_view command) const {
  if (command.find('/') != std::string_view::npos) {
    return commandRunner_.isExecutable(std::string(command));
  }
  std::string searchPath = systemInformation_.environmentVariable("PATH").value_or("");
  searchPath.append(searchPath.empty() ? "" : ":").append(kUsualFolders);
  std::string_view rest = searchPath;
  while (!rest.empty()) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
    if (!folder.empty() && commandRunner_.isExecutable(std::string(folder).append("/").append(command))) {
      return true;
    }
  }
  return false;
}

bool ToolInstaller::runBrewInstall(const std::string& brewPath, std::string_view formula) const {
  const auto result =
      commandRunner_.run(brewPath, {"install", std::string(formula)}, CommandOutput::discarded, std::nullopt);
  return result && result->hasSucceeded();
}

}  // namespace cirrovane
