#include "platform/linux/macroot/MacRoot.h"

#include "base/BoundedRead.h"
#include "base/MacRootFacts.h"
#include "base/Path.h"

#include <cstdlib>
#include <optional>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

constexpr std::string_view kDefaultHome = "/Users/demo";

/// A value that is discarded when the text is no JSON; absent when the file cannot be read.
std::optional<json> readFacts(const std::string& path) {
  const BoundedRead file = readBounded(path, kBearableFileSize);
  if (file.error != 0) {
    return std::nullopt;
  }
  return json::parse(file.content, nullptr, /*allow_exceptions=*/false);
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string hostHomeDirectory() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
    return home;
  }
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

/// A folder that the user may have moved by a variable, as the desktop's base directories are.
std::string hostFolder(const char* variable, std::string_view belowHome) {
  if (const char* path = std::getenv(variable); path != nullptr && *path == '/') {
    return path;
  }
  return hostHomeDirectory() + std::string(belowHome);
}

std::string trimmed(std::string_view path) {
  return std::string(withoutTrailingSlash(path));
}

}  // namespace

Result<MacRoot> MacRoot::open(std::string path) {
  MacRoot root(trimmed(path));
  if (!isFolder(root.path_)) {
    return Failure{fmt::format("There is no folder {} to use as a Mac's disk.", root.path_)};
  }
  if (!root.describesHost()) {
    const std::optional<json> facts = readFacts(root.factsPath());
    if (!facts) {
      return Failure{fmt::format("{} cannot be read.", root.factsPath())};
    }
    if (const auto complaint = complaintAboutFacts(*facts)) {
      return Failure{fmt::format("{} does not describe a machine: {}.", root.factsPath(), *complaint)};
    }
  }
  return root;
}

bool MacRoot::describesHost() const {
  // A link that leads nowhere is a broken description, not none.
  struct stat status {};
  return lstat(factsPath().c_str(), &status) != 0;
}

json MacRoot::facts() const {
  const std::optional<json> facts = readFacts(factsPath());
  return facts && !complaintAboutFacts(*facts) ? *facts : json::object();
}

std::optional<std::map<std::string, std::string>> MacRoot::environment() const {
  const json facts = this->facts();
  const auto described = facts.find("environment");
  if (described == facts.end()) {
    return std::nullopt;
  }
  std::map<std::string, std::string> variables;
  for (const auto& [name, value] : described->items()) {
    if (value.is_string()) {
      variables.emplace(name, value.get<std::string>());
    }
  }
  return variables;
}

std::optional<std::string> MacRoot::notificationAuthorization() const {
  const json facts = this->facts();
  const auto described = facts.find("notificationAuthorization");
  return described != facts.end() ? std::optional(described->get<std::string>()) : std::nullopt;
}

std::string MacRoot::homeDirectory() const {
  if (isHost()) {
    return trimmed(hostHomeDirectory());
  }
  const std::string home = facts().value("home", std::string(kDefaultHome));
  return trimmed((path_ == "/" ? "" : path_) + home);
}

std::string MacRoot::applicationSupportDirectory() const {
  return isHost() ? trimmed(hostFolder("XDG_DATA_HOME", "/.local/share"))
                  : homeDirectory() + "/Library/Application Support";
}

std::string MacRoot::userDefaultsPath() const {
  const std::string folder =
      isHost() ? trimmed(hostFolder("XDG_CONFIG_HOME", "/.config")) : homeDirectory() + "/Library/Preferences";
  return folder + "/com.quillmere.Cirrovane.json";
}

std::string MacRoot::factsPath() const {
  return (path_ == "/" ? "" : path_) + "/" + std::string(kMacRootFactsFile);
}

}  // namespace cirrovane
