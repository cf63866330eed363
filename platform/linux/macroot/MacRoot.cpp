#include "platform/linux/macroot/MacRoot.h"

#include "base/BoundedRead.h"
#include "base/MacRootFacts.h"
#include "base/Path.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/stat.h>

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

std::string trimmed(std::string_view path) {
  return std::string(withoutTrailingSlash(path));
}

}  // namespace

MacRoot::MacRoot(std::string path) : path_(std::move(path)) {
  // A link that leads nowhere is a broken description, not none.
  struct stat status {};
  isDescribed_ = lstat(factsPath().c_str(), &status) == 0;
}

Result<MacRoot> MacRoot::open(std::string path) {
  MacRoot root(trimmed(path));
  if (!isFolder(root.path_)) {
    return Failure{fmt::format("There is no folder {} to use as a Mac's disk.", root.path_)};
  }
  if (root.isDescribed()) {
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

json MacRoot::facts() const {
  if (!isDescribed_) {
    return json::object();
  }
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
  return textFact("notificationAuthorization");
}

std::optional<std::string> MacRoot::loginItemApproval() const {
  return textFact("loginItemApproval");
}

std::string MacRoot::homeDirectory() const {
  const std::string home = facts().value("home", std::string(kDefaultHome));
  return trimmed((path_ == "/" ? "" : path_) + home);
}

std::string MacRoot::realPath(const std::string& path) const {
  if (path_ == "/" || !path.starts_with('/')) {
    return path;
  }
  // A ".." leads no further up than the Mac's own root.
  const std::string onDisk = std::filesystem::path(path).lexically_normal().native();
  return onDisk.starts_with(path_ + "/") ? onDisk : path_ + onDisk;
}

std::optional<std::string> MacRoot::textFact(const char* key) const {
  const json facts = this->facts();
  const auto described = facts.find(key);
  return described != facts.end() ? std::optional(described->get<std::string>()) : std::nullopt;
}

std::string MacRoot::factsPath() const {
  return (path_ == "/" ? "" : path_) + "/" + std::string(kMacRootFactsFile);
}

}  // namespace cirrovane
