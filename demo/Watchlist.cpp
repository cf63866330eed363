#include "demo/Watchlist.h"

#include "base/ASCII.h"
#include "demo/AtomicFile.h"
#include "demo/Failure.h"
#include "demo/FileContent.h"
#include "demo/Text.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

using nlohmann::json;

constexpr mode_t kOwnFile = 0600;
constexpr mode_t kOwnFolder = 0700;

constexpr auto kLowerCase = [](char letter) { return lowerCase(letter); };

bool goesBefore(const WatchedFolder& lhs, const WatchedFolder& rhs) {
  return std::ranges::lexicographical_compare(lhs.name, rhs.name, {}, kLowerCase, kLowerCase);
}

}  // namespace

void writeOwnFile(const std::filesystem::path& path, std::string_view content) {
  const std::filesystem::path folder = path.parent_path();
  std::filesystem::create_directories(folder.parent_path());
  if (mkdir(folder.c_str(), kOwnFolder) != 0 && errno != EEXIST) {
    throw CouldNot(printable(folder.native()) + " cannot be made: " + systemMessage(errno) + ".");
  }
  writeAtomically(path, content, kOwnFile);
}

std::filesystem::path watchlistPath(const std::filesystem::path& home) {
  return home / "Library/Application Support/com.quillmere.Cirrovane/watchlist.json";
}

std::optional<Watchlist> readWatchlist(const std::filesystem::path& path) {
  const std::optional<std::string> text = fileContent(path);
  if (!text) {
    return std::nullopt;
  }
  Watchlist watchlist;
  try {
    const json document = json::parse(*text);
    for (const json& entry : document.get_ref<const json::array_t&>()) {
      watchlist.push_back({entry.at("id"), entry.at("name"), entry.at("path")});
    }
  } catch (const json::exception&) {
    return std::nullopt;
  }
  return watchlist;
}

void writeWatchlist(const std::filesystem::path& path, Watchlist watchlist) {
  std::ranges::stable_sort(watchlist, goesBefore);
  json document = json::array();
  for (WatchedFolder& folder : watchlist) {
    document.push_back(
        {{"id", std::move(folder.id)}, {"name", std::move(folder.name)}, {"path", std::move(folder.path)}});
  }
  writeOwnFile(path, document.dump(2) + "\n");
}

}  // namespace cirrovane::demo
