#include "platform/linux/MacRoot.h"

#include "base/Path.h"
#include "platform/posix/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
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

bool isPath(const json& value) {
  return value.is_string() && value.get_ref<const std::string&>().starts_with('/');
}

bool isListOfTexts(const json& value) {
  return value.is_array() && std::ranges::all_of(value, [](const json& entry) { return entry.is_string(); });
}

bool isListOfNumbers(const json& value) {
  return value.is_array() && std::ranges::all_of(value, [](const json& entry) { return entry.is_number(); });
}

bool isListOfObjects(const json& value) {
  return value.is_array() && std::ranges::all_of(value, [](const json& entry) { return entry.is_object(); });
}

bool isObject(const json& value) {
  return value.is_object();
}
bool isBoolean(const json& value) {
  return value.is_boolean();
}
bool isText(const json& value) {
  return value.is_string();
}
bool isNumber(const json& value) {
  return value.is_number();
}

struct FactRule {
  const char* key;
  bool (*accepts)(const json&);
  std::string_view wanted;
};

constexpr std::array<FactRule, 13> kFactRules = {{
    {"home", isPath, "an absolute path"},
    {"bundle", isObject, "an object"},
    {"environment", isObject, "an object"},
    {"ubiquityIdentityToken", isBoolean, "true or false"},
    {"runningApplications", isListOfTexts, "a list of texts"},
    {"volume", isObject, "an object"},
    {"powerSources", isListOfObjects, "a list of objects"},
    {"lowPowerMode", isBoolean, "true or false"},
    {"thermalState", isText, "a text"},
    {"loadAverages", isListOfNumbers, "a list of numbers"},
    {"physicalMemory", isNumber, "a number"},
    {"uptimeSeconds", isNumber, "a number"},
    {"notificationAuthorization", isText, "a text"},
}};

/// What is wrong with the facts; absent when nothing is.
std::optional<std::string> complaintAbout(const json& facts) {
  if (facts.is_discarded()) {
    return "it is not JSON";
  }
  if (!facts.is_object()) {
    return "it is not a JSON object";
  }
  for (const FactRule& rule : kFactRules) {
    const auto found = facts.find(rule.key);
    if (found != facts.end() && !rule.accepts(*found)) {
      return fmt::format("\"{}\" must be {}", rule.key, rule.wanted);
    }
  }
  return std::nullopt;
}

/// Far beyond any description of a machine.
constexpr off_t kLargestFacts = off_t{64} << 20U;

/// The content of a regular file of bearable size. What else may lie at a path can block its reader or never end.
std::optional<std::string> readRegularFile(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > kLargestFacts) {
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t used = 0;
  while (used < text.size()) {
    const ssize_t length = ::read(file.get(), text.data() + used, text.size() - used);
    if (length < 0 && errno != EINTR) {
      return std::nullopt;
    }
    if (length == 0) {
      break;
    }
    used += length > 0 ? static_cast<std::size_t>(length) : 0;
  }
  text.resize(used);
  return text;
}

/// A value that is discarded when the text is no JSON; absent when the file cannot be read.
std::optional<json> readFacts(const std::string& path) {
  const std::optional<std::string> text = readRegularFile(path);
  if (!text) {
    return std::nullopt;
  }
  return json::parse(*text, nullptr, /*allow_exceptions=*/false);
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
    if (const auto complaint = complaintAbout(*facts)) {
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
  return facts && !complaintAbout(*facts) ? *facts : json::object();
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
  return (path_ == "/" ? "" : path_) + "/machine.json";
}

}  // namespace cirrovane
