#include "demo/Arguments.h"

#include <utility>

#include <CLI/CLI.hpp>

namespace cirrovane::demo {

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& help, const std::string& footer,
                     std::function<void()> action) {
  CLI::App* command = app.add_subcommand(name, help);
  command->footer(footer);
  command->callback(std::move(action));
  return *command;
}

void addArgument(CLI::App& command, const std::string& name, std::string& target, const std::string& help,
                 Complaint complaint) {
  CLI::Option* option = command.add_option(name, target, help)->required()->type_name("");
  if (complaint != nullptr) {
    option->check(complaint);
  }
}

void addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                  const std::string& help) {
  command.add_option(name, target, help)->required()->type_name("");
}

void addPathArgument(CLI::App& command, const std::string& name, std::string& target, const std::string& help) {
  addArgument(command, name, target, help,
              [](const std::string& path) -> std::string { return path.empty() ? "The name cannot be empty." : ""; });
}

void addOption(CLI::App& command, const std::string& name, const std::string& valueName, std::string& target,
               const std::string& help, Complaint complaint) {
  command.add_option(name, target, help)->type_name(valueName)->check(complaint);
}

void addRepeatedOption(CLI::App& command, const std::string& name, const std::string& valueName,
                       std::vector<std::string>& target, const std::string& help, Complaint complaint) {
  command.add_option(name, target, help)->type_name(valueName)->expected(1)->take_all()->check(complaint);
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
