#include "tests/platform/WatchedDisk.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <unistd.h>
#include <utility>

namespace cirrovane::test {

WatchedDisk::WatchedDisk() = default;

WatchedDisk::~WatchedDisk() = default;

NotedFolderNews::News WatchedDisk::watch(const std::vector<std::string>& folders, InotifyCalls calls) {
  watch_.reset();
  noted_.take();
  watch_ = std::make_unique<InotifyWatch>(noted_, std::move(calls));
  watch_->start(folders);
  EXPECT_TRUE(noted_.waitUntil([](const auto& news) { return !news.standings.empty(); }));
  for (const std::string& folder : folders) {
    walk(folder);
  }
  return news();
}

void WatchedDisk::walk(const std::string& folder, bool isDeep) {
  const auto walk = files_.enumerate({folder, isDeep, &watch_->listings()});
  while (walk && walk->next() != nullptr) {
  }
}

NotedFolderNews::News WatchedDisk::news() {
  std::size_t before = 0;
  noted_.waitUntil([&](const auto& news) {
    before = news.standings.size();
    return true;
  });
  watch_->prove();
  EXPECT_TRUE(noted_.waitUntil(
      [&](const auto& news) { return news.proofs > 0 || (news.standings.size() > before && news.standings.back()); }));
  return noted_.take();
}

std::vector<std::string> WatchedDisk::changes() {
  const NotedFolderNews::News told = news();
  EXPECT_THAT(told.losses, testing::IsEmpty());
  return texts(told.changes);
}

std::vector<std::string> WatchedDisk::texts(const std::vector<FolderChange>& changes) const {
  std::vector<std::string> texts;
  for (const FolderChange& change : changes) {
    std::string folder = change.folder;
    if (folder == folder_.path()) {
      folder = ".";
    } else if (folder.starts_with(folder_.path() + "/")) {
      folder.erase(0, folder_.path().size() + 1);
    }
    texts.push_back(change.isDeep ? folder + "/**" : folder + " " + change.item);
  }
  std::ranges::sort(texts);
  const auto rest = std::ranges::unique(texts);
  texts.erase(rest.begin(), rest.end());
  return texts;
}

testing::AssertionResult WatchedDisk::tellsOfFileIn(const std::string& folder) {
  news();
  writeFile(at(folder) + "/told");
  const std::vector<std::string> told = changes();
  std::filesystem::remove(at(folder) + "/told");
  news();
  if (told == std::vector<std::string>{folder + " told"}) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << testing::PrintToString(told);
}

void renameItem(const std::string& from, const std::string& to) {
  ASSERT_EQ(std::rename(from.c_str(), to.c_str()), 0) << from;
}

void removeItem(const std::string& path) {
  std::filesystem::remove_all(path);
}

void makeLink(const std::string& target, const std::string& path) {
  ASSERT_EQ(symlink(target.c_str(), path.c_str()), 0) << path;
}

}  // namespace cirrovane::test
