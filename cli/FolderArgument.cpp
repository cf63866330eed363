#include "cli/FolderArgument.h"

#include "base/UUID.h"
#include "core/FolderNaming.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace cirrovane {

std::string absolutePath(std::string_view argument, std::string_view workingDirectory) {
  std::string joined;
  if (!argument.starts_with('/')) {
    joined = std::string(workingDirectory) + "/";
  }
  joined += argument;

  std::vector<std::string_view> components;
  std::string_view rest = joined;
  while (!rest.empty()) {
    const std::size_t end = rest.find('/');
    const std::string_view component = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (component == "..") {
      if (!components.empty()) {
        components.pop_back();
      }
    } else if (!component.empty() && component != ".") {
      components.push_back(component);
    }
  }

  std::string path;
  for (const std::string_view component : components) {
    path += '/';
    path += component;
  }
  if (path.empty() || argument.ends_with('/')) {
    path += '/';
  }
  return path;
}

std::string absolutePath(std::string_view argument) {
  if (argument.starts_with('/')) {
    return absolutePath(argument, "/");
  }
  std::error_code error;
  const std::filesystem::path workingDirectory = std::filesystem::current_path(error);
  if (error) {
    // To guess would be to vouch for another folder than the one that was meant.
    throw std::runtime_error(
        "A relative path has no meaning here, because the working directory cannot be told: " + error.message() + ".");
  }
  return absolutePath(argument, workingDirectory.native());
}

std::vector<WatchFolder> namedFolders(const std::vector<std::string>& arguments) {
  UUIDGenerator makeID;
  std::vector<WatchFolder> folders;
  for (const std::string& argument : arguments) {
    const std::string path = absolutePath(argument);
    folders.push_back({makeID(), watchFolderName(path), path});
  }
  return folders;
}

}  // namespace cirrovane
