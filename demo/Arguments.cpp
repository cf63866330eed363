#include "demo/Arguments.h"

#include <CLI/CLI.hpp>

namespace cirrovane::demo {

void addFolderArgument(CLI::App& command, std::string& target, const std::string& help) {
  command.add_option("DIR", target, help)->required()->type_name("")->check([](const std::string& folder) {
    return folder.empty() ? "A folder's name cannot be empty." : "";
  });
}

std::filesystem::path absolutePath(const std::string& argument) {
  const std::filesystem::path path = std::filesystem::absolute(argument).lexically_normal();
  return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

}  // namespace cirrovane::demo
