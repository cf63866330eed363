#include "cli/FolderArgument.h"

#include <filesystem>
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
  std::error_code ignored;
  return absolutePath(argument, std::filesystem::current_path(ignored).native());
}

}  // namespace cirrovane
