#pragma once

#include <filesystem>
#include <string>

namespace CLI {
class App;
}

namespace cirrovane::demo {

/// Adds an argument that names a file or folder, as most commands take one.
void addPathArgument(CLI::App& command, const std::string& name, std::string& target, const std::string& help);

/// Adds the last argument of a command that switches something "on" or "off".
void addSwitchArgument(CLI::App& command, bool& target, const std::string& help);

/// The absolute path of an argument, "." and ".." resolved by their names alone as cirrovanectl does, so that both
/// speak of the same paths.
std::filesystem::path absolutePath(const std::string& argument);

}  // namespace cirrovane::demo
