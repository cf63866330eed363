#include "stores/FileCountStore.h"

#include "base/Path.h"

#include <algorithm>
#include <utility>

namespace cirrovane {
namespace {

using Histories = std::vector<FileCountHistory>;

/// A time that a clock gave which was set wrong is as good as none.
bool isRemembered(const FileCount& count, Time now) {
  return count.at >= now - FileCountStore::kMemory && count.at <= now + std::chrono::days(1);
}

/// Forgets what is too old.
void tidy(Histories& histories, Time now) {
  for (FileCountHistory& history : histories) {
    std::erase_if(history.counts, [&](const FileCount& count) { return !isRemembered(count, now); });
  }
  std::erase_if(histories, [](const FileCountHistory& history) { return history.counts.empty(); });
}

FileCountHistory& historyOf(Histories& histories, const std::string& path) {
  const auto known = std::ranges::find(histories, path, &FileCountHistory::path);
  return known != histories.end() ? *known : histories.emplace_back(FileCountHistory{path, {}});
}

/// Whether anything differs afterwards.
bool take(std::vector<FileCount>& counts, const FileCount& count) {
  const bool isKnown = std::ranges::any_of(counts, [&](const FileCount& other) {
    return other.files >= count.files && count.at - other.at < FileCountStore::kRedating;
  });
  if (isKnown) {
    return false;
  }
  const auto day = [](const FileCount& other) { return std::chrono::floor<std::chrono::days>(other.at); };
  std::erase_if(counts, [&](const FileCount& other) { return other.files <= count.files; });
  // A smaller number of a day says nothing beside its largest.
  if (std::ranges::any_of(counts, [&](const FileCount& other) { return day(other) == day(count); })) {
    return false;
  }
  counts.push_back(count);
  return true;
}

}  // namespace

FileCountStore::FileCountStore(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock,
                               std::optional<std::string> filePath)
    : clock_(clock),
      file_(fileSystem, storage, filePath ? std::move(*filePath) : defaultStoragePath(fileSystem, "coverage.json")) {}

std::vector<FolderFileCount> FileCountStore::most() const {
  Histories histories = file_.read();
  tidy(histories, clock_.now());
  std::vector<FolderFileCount> most;
  for (const FileCountHistory& history : histories) {
    most.push_back({history.path, std::ranges::max(history.counts, {}, &FileCount::files).files});
  }
  return most;
}

std::optional<Failure> FileCountStore::record(const SyncHealthReport& report) const {
  if (!report.safeToClose || report.folderHealth.empty()) {
    return std::nullopt;
  }
  return file_.change([&](Histories& histories) {
    const Time now = clock_.now();
    tidy(histories, now);
    bool isChanged = false;
    for (const FolderHealth& health : report.folderHealth) {
      const std::string path(withoutTrailingSlash(health.folder.path));
      isChanged = take(historyOf(histories, path).counts, {now, health.scannedFileCount}) || isChanged;
    }
    return isChanged;
  });
}

std::optional<Failure> FileCountStore::beginAnew(const std::vector<FolderFileCount>& counts) const {
  return file_.change([&](Histories& histories) {
    const Time now = clock_.now();
    tidy(histories, now);
    for (const FolderFileCount& count : counts) {
      historyOf(histories, count.path).counts = {{now, count.files}};
    }
    return !counts.empty();
  });
}

}  // namespace cirrovane
