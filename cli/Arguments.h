#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// The parser itself is known to few sources only: it costs each one that includes it seconds.
namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace cirrovane {

/// What an argument is called, what it is for, and what it has to be.
struct ArgumentForm {
  /// "--limit" for an option, "FILE" for an argument that has its place.
  std::string name;
  std::string help;
  /// What its value is called in the help; absent for the kind of value.
  std::optional<std::string> valueName = std::nullopt;
  bool isRequired = false;
  /// What is wrong with a text that was given; empty when nothing is. Absent where any text will do.
  std::function<std::string(const std::string&)> complaint = nullptr;
  /// The only texts that will do; none where any will.
  std::vector<std::string> choices = {};
  /// Another option without which this one makes no sense.
  CLI::Option* neededOption = nullptr;
};

/// Adds a command, or the verb of a command.
CLI::App& addCommand(CLI::App& parent, const std::string& name, const std::string& help,
                     const std::string& footer = "");
/// Lets a command be followed by one of its verbs, or by none.
void takeVerbs(CLI::App& command);
/// What to do once the user has asked for the command and all of its arguments are read.
void onChosen(CLI::App& command, std::function<void()> action);
/// Says, from within such an action, that the arguments make no sense together.
[[noreturn]] void refuseUsage(const std::string& message);
/// Whether the user has asked for the command.
bool isChosen(const CLI::App& command);

CLI::Option& addFlag(CLI::App& command, const std::string& name, bool& target, const std::string& help);

/// Each adds an argument, which fills the target when the user gives it. The target outlives the command line.
void addArgument(CLI::App& command, const ArgumentForm& form, std::string& target);
void addArgument(CLI::App& command, const ArgumentForm& form, std::vector<std::string>& target);
void addArgument(CLI::App& command, const ArgumentForm& form, double& target);
void addArgument(CLI::App& command, const ArgumentForm& form, std::optional<double>& target);
void addArgument(CLI::App& command, const ArgumentForm& form, std::optional<std::int64_t>& target);

/// The number that the parser would take a text for; absent when it would refuse it.
std::optional<double> numberOf(const std::string& text);
std::optional<std::int64_t> wholeNumberOf(const std::string& text);

}  // namespace cirrovane
