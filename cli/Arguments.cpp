#include "cli/Arguments.h"

#include <utility>

#include <CLI/CLI.hpp>

namespace cirrovane {
namespace {

template <class Target>
void add(CLI::App& command, const ArgumentForm& form, Target& target) {
  CLI::Option* option = command.add_option(form.name, target, form.help)->required(form.isRequired);
  if (form.valueName) {
    option->type_name(*form.valueName);
  }
  if (form.complaint) {
    option->check(form.complaint);
  }
  if (!form.choices.empty()) {
    option->check(CLI::IsMember(form.choices));
  }
  if (form.neededOption != nullptr) {
    option->needs(form.neededOption);
  }
}

template <class Number>
std::optional<Number> parsed(const std::string& text) {
  if (text.empty()) {
    // The parser takes it for 0.
    return std::nullopt;
  }
  CLI::App reader;
  CLI::Option* option = reader.add_option("number");
  option->add_result(text);
  try {
    return option->as<Number>();
  } catch (const CLI::ConversionError&) {
    return std::nullopt;
  }
}

}  // namespace

CLI::App& addCommand(CLI::App& parent, const std::string& name, const std::string& help, const std::string& footer) {
  CLI::App* command = parent.add_subcommand(name, help);
  if (!footer.empty()) {
    command->footer(footer);
  }
  return *command;
}

void takeVerbs(CLI::App& command) {
  command.require_subcommand(0, 1);
}

void onChosen(CLI::App& command, std::function<void()> action) {
  command.callback(std::move(action));
}

void refuseUsage(const std::string& message) {
  throw CLI::ValidationError(message);
}

bool isChosen(const CLI::App& command) {
  return command.parsed();
}

CLI::Option& addFlag(CLI::App& command, const std::string& name, bool& target, const std::string& help) {
  return *command.add_flag(name, target, help);
}

void addArgument(CLI::App& command, const ArgumentForm& form, std::string& target) {
  add(command, form, target);
}

void addArgument(CLI::App& command, const ArgumentForm& form, std::vector<std::string>& target) {
  add(command, form, target);
}

void addArgument(CLI::App& command, const ArgumentForm& form, double& target) {
  add(command, form, target);
}

void addArgument(CLI::App& command, const ArgumentForm& form, std::optional<double>& target) {
  add(command, form, target);
}

void addArgument(CLI::App& command, const ArgumentForm& form, std::optional<std::int64_t>& target) {
  add(command, form, target);
}

std::optional<double> numberOf(const std::string& text) {
  return parsed<double>(text);
}

std::optional<std::int64_t> wholeNumberOf(const std::string& text) {
  return parsed<std::int64_t>(text);
}

}  // namespace cirrovane
