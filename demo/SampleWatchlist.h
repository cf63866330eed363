#pragma once

#include "demo/Watchlist.h"

#include <filesystem>

namespace cirrovane::demo {

/// The watchlist of the demo Mac's user. Its identifiers are the same on every demo Mac and each time.
Watchlist sampleWatchlist(const std::filesystem::path& home);

/// The watched folder that does not exist.
std::filesystem::path missingFolder(const std::filesystem::path& home);

}  // namespace cirrovane::demo
