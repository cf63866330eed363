#pragma once

#include "core/WatchFolder.h"

#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// The absolute path that a folder argument means: against the working directory, "." and ".." resolved by their names
/// alone, a trailing slash kept.
std::string absolutePath(std::string_view argument, std::string_view workingDirectory);

/// The same against the process's own working directory. Throws when a relative argument finds none.
std::string absolutePath(std::string_view argument);

/// The folders that arguments mean, named as the watchlist would name them.
std::vector<WatchFolder> namedFolders(const std::vector<std::string>& arguments);

}  // namespace cirrovane
