#pragma once

#include <filesystem>

namespace cirrovane::demo {

/// Writes the commands that a Mac with Homebrew has into a new root, some of Homebrew's tools installed.
void placeCommands(const std::filesystem::path& root);

}  // namespace cirrovane::demo
