#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::demo {

/// One entry of the application's watchlist.
struct WatchedFolder {
  std::string id;
  std::string name;
  std::string path;
};

using Watchlist = std::vector<WatchedFolder>;

/// The file where the application of a user keeps its watchlist.
std::filesystem::path watchlistPath(const std::filesystem::path& home);

/// Absent when there is no such file, or the application would make nothing of its text either.
std::optional<Watchlist> readWatchlist(const std::filesystem::path& path);

/// Writes a file that is its user's alone, in a folder that is so too.
void writeOwnFile(const std::filesystem::path& path, std::string_view content);

/// Sorts by name as the application does, and keeps the file to its user.
void writeWatchlist(const std::filesystem::path& path, Watchlist watchlist);

}  // namespace cirrovane::demo
