#pragma once

#include "demo/CloudState.h"

#include <filesystem>
#include <optional>
#include <string>

namespace cirrovane::demo {

/// The cloud state that is kept with a file or folder; absent when it has none. Never follows a symbolic link.
std::optional<CloudState> readCloudState(const std::filesystem::path& path);

/// Keeps the state with the file or folder; an empty one is removed. Its date stays.
void writeCloudState(const std::filesystem::path& path, const CloudState& state);

/// Proves by trying that files in the folder can keep a state.
void requireCloudStates(const std::filesystem::path& folder);

}  // namespace cirrovane::demo
