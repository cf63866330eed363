#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace cirrovane::demo {

/// All that a file holds; absent when there is none that may be opened. Fails for what is no file of bearable size.
std::optional<std::string> fileContent(const std::filesystem::path& path);

}  // namespace cirrovane::demo
