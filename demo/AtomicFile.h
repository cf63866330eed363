#pragma once

#include <filesystem>
#include <string_view>
#include <sys/types.h>

namespace cirrovane::demo {

/// For what anybody may read, as far as the umask lets them.
inline constexpr mode_t kPublicFile = 0666;

/// Replaces a file's content in one step, so that nobody ever reads half of it: a temporary file beside it is renamed
/// over it. The new file's permissions are `mode` less the umask.
void writeAtomically(const std::filesystem::path& path, std::string_view content, mode_t mode);

}  // namespace cirrovane::demo
