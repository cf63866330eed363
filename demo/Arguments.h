#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// The parser itself is known to few sources only: it costs each one that includes it seconds.
namespace CLI {
class App;
}

namespace cirrovane::demo {

/// Adds a command; the action is what to do once the user has asked for it and all of its arguments are read.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& help, const std::string& footer,
                     std::function<void()> action);

/// What is wrong with the text of an argument; empty when nothing is.
using Complaint = std::string (*)(const std::string& text);

/// Adds an argument that the user has to give; any text will do without a complaint.
void addArgument(CLI::App& command, const std::string& name, std::string& target, const std::string& help,
                 Complaint complaint = nullptr);
/// The same for one text or several.
void addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                  const std::string& help);

/// Adds an argument that names a file or folder, as most commands take one.
void addPathArgument(CLI::App& command, const std::string& name, std::string& target, const std::string& help);

/// Adds an option that takes a text, which must be right where it is given.
void addOption(CLI::App& command, const std::string& name, const std::string& valueName, std::string& target,
               const std::string& help, Complaint complaint);
/// The same, which may be given several times.
void addRepeatedOption(CLI::App& command, const std::string& name, const std::string& valueName,
                       std::vector<std::string>& target, const std::string& help, Complaint complaint);

/// Adds the last argument of a command that switches something "on" or "off".
void addSwitchArgument(CLI::App& command, bool& target, const std::string& help);

/// The absolute path of an argument, "." and ".." resolved by their names alone as cirrovanectl does, so that both
/// speak of the same paths.
std::filesystem::path absolutePath(const std::string& argument);

}  // namespace cirrovane::demo
