#include "demo/Arguments.h"

#include <CLI/CLI.hpp>

namespace cirrovane::demo {

void addPathArgument(CLI::App& command, const std::string& name, std::string& target, const std::string& help) {
  command.add_option(name, target, help)->required()->type_name("")->check([](const std::string& path) {
    return path.empty() ? "The name cannot be empty." : "";
  });
}

void addSwitchArgument(CLI::App& command, bool& target, const std::string& help) {
  command.add_option("on|off", target, help)->required()->type_name("")->check([](const std::string& word) {
    return word == "on" || word == "off" ? "" : "Say on or off.";
  });
}

std::filesystem::path absolutePath(const std::string& argument) {
  const std::filesystem::path path = std::filesystem::absolute(argument).lexically_normal();
  return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

}  // namespace cirrovane::demo
