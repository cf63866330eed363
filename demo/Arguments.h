#pragma once

#include <filesystem>
#include <string>

namespace CLI {
class App;
}

namespace cirrovane::demo {

/// Adds the folder argument that most commands take.
void addFolderArgument(CLI::App& command, std::string& target, const std::string& help);

/// The absolute path of an argument, "." and ".." resolved by their names alone as cirrovanectl does, so that both
/// speak of the same paths.
std::filesystem::path absolutePath(const std::string& argument);

}  // namespace cirrovane::demo
