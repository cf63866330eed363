#include "platform/linux/macroot/RootDisk.h"

#include "platform/linux/macroot/MachineFacts.h"
#include "platform/posix/PosixCommandRunner.h"

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

std::optional<Environment> childEnvironment(const MacRoot& root) {
  const auto described = root.environment();
  if (!described) {
    return std::nullopt;
  }
  Environment variables;
  for (const auto& [name, value] : *described) {
    variables.emplace_back(name).append("=").append(value);
  }
  return variables;
}

}  // namespace

UserFolders foldersOf(const MacRoot& root) {
  return {[root] { return root.homeDirectory(); },
          [root] { return root.homeDirectory() + "/Library/Application Support"; },
          [root] { return root.homeDirectory() + "/Library/Preferences"; }};
}

VolumeCapacities volumeOf(const MacRoot& root) {
  const nlohmann::json volume = root.facts().value("volume", nlohmann::json::object());
  return {integerFact(volume, "availableForImportantUsage"), integerFact(volume, "total")};
}

std::unique_ptr<const CommandRunner> commandRunnerOf(const MacRoot& root) {
  return std::make_unique<PosixCommandRunner>([root](const std::string& path) { return root.realPath(path); },
                                              [root] { return childEnvironment(root); });
}

std::unique_ptr<LimitedChild> startCommandOf(const MacRoot& root, const std::string& path,
                                             const std::vector<std::string>& arguments) {
  return startChild(root.realPath(path), arguments, childEnvironment(root));
}

}  // namespace cirrovane
