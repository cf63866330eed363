#include "demo/FileCounts.h"

#include "base/ISO8601.h"
#include "demo/FileContent.h"
#include "demo/Watchlist.h"

#include <chrono>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

using nlohmann::json;

constexpr const char* kFolder = "School";
constexpr int kFilesOnce = 64;
constexpr std::chrono::days kAge{7};

std::optional<json> readHistories(const std::filesystem::path& path) {
  const std::optional<std::string> text = fileContent(path);
  if (!text) {
    return json::array();
  }
  json histories = json::parse(*text, nullptr, /*allow_exceptions=*/false);
  return histories.is_array() ? std::optional(std::move(histories)) : std::nullopt;
}

bool isSample(const json& history) {
  const json counts = history.is_object() ? history.value("counts", json::array()) : json::array();
  return counts.is_array() && counts.size() == 1 && counts.front().is_object() &&
         counts.front().value("files", json()) == kFilesOnce;
}

void eraseSample(json& histories) {
  json kept = json::array();
  for (json& history : histories) {
    if (!isSample(history)) {
      kept.push_back(std::move(history));
    }
  }
  histories = std::move(kept);
}

}  // namespace

std::filesystem::path fileCountsPath(const std::filesystem::path& home) {
  return watchlistPath(home).replace_filename("coverage.json");
}

void writeSampleFileCounts(const std::filesystem::path& path, const std::filesystem::path& drive) {
  json histories = readHistories(path).value_or(json::array());
  eraseSample(histories);
  const std::string folder = drive / kFolder;
  std::erase_if(histories.get_ref<json::array_t&>(),
                [&](const json& history) { return history.is_object() && history.value("path", json()) == folder; });
  // The same all day long, as everything else in a new demo Mac is.
  const Time today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
  histories.push_back({{"path", folder}, {"counts", {{{"at", iso8601Text(today - kAge)}, {"files", kFilesOnce}}}}});
  writeOwnFile(path, histories.dump(2) + "\n");
}

void forgetSampleFileCounts(const std::filesystem::path& path) {
  std::optional<json> histories = readHistories(path);
  if (!histories) {
    return;
  }
  const std::size_t countBefore = histories->size();
  eraseSample(*histories);
  if (histories->empty()) {
    std::filesystem::remove(path);
  } else if (histories->size() != countBefore) {
    writeOwnFile(path, histories->dump(2) + "\n");
  }
}

}  // namespace cirrovane::demo
