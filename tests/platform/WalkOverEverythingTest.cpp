#include "platform/linux/walk/LinuxWalk.h"
#include "platform/posix/BackgroundThread.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <filesystem>
#include <sched.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

struct MetItem {
  std::string path;
  ItemKind kind = ItemKind::file;
  Concealment concealment = Concealment::none;
  bool isUnlisted = false;
  bool hasValues = false;
};

class WalkOverEverything : public testing::TestWithParam<std::size_t> {
 protected:
  std::vector<MetItem> walk(WalkOptions options = {}, bool isUnhurried = false) const {
    options.threadCount = GetParam();
    const auto walk = startLinuxWalk({folder_.path(), true, nullptr, WalkScope::everything, isUnhurried}, options);
    std::vector<MetItem> met;
    while (const ItemBatch* batch = walk->next()) {
      for (const Item& item : batch->items()) {
        met.push_back({batch->path(item).substr(folder_.path().size() + 1), item.kind, item.concealment,
                       item.isUnlisted, item.values.has_value()});
      }
    }
    return met;
  }
  static MetItem find(const std::vector<MetItem>& met, const std::string& path) {
    const auto found = std::ranges::find(met, path, &MetItem::path);
    return found != met.end() ? *found : MetItem{"none"};
  }
  static std::vector<std::string> pathsOf(const std::vector<MetItem>& met) {
    std::vector<std::string> paths;
    std::ranges::transform(met, std::back_inserter(paths), &MetItem::path);
    return paths;
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

INSTANTIATE_TEST_SUITE_P(Threads, WalkOverEverything, testing::Values(0, 1, 2));

TEST_P(WalkOverEverything, hiddenItemsAndPackages_areMetWithAllBelow) {
  writeFile(folder_ / "a");
  writeFile(folder_ / ".b/c");
  writeFile(folder_ / "d.app/.e/f");
  const auto met = walk();
  EXPECT_THAT(pathsOf(met), UnorderedElementsAre("a", ".b", ".b/c", "d.app", "d.app/.e", "d.app/.e/f"));
  EXPECT_EQ(find(met, ".b").concealment, Concealment::hidden);
  EXPECT_EQ(find(met, ".b/c").concealment, Concealment::none);
  EXPECT_EQ(find(met, "d.app").concealment, Concealment::package);
  EXPECT_EQ(find(met, "a").concealment, Concealment::none);
}

TEST_P(WalkOverEverything, kinds_areTold) {
  writeFile(folder_ / "file");
  makeFolder(folder_ / "folder");
  std::filesystem::create_symlink("/", folder_ / "link");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const auto met = walk();
  EXPECT_EQ(met.size(), 4U);
  EXPECT_EQ(find(met, "file").kind, ItemKind::file);
  EXPECT_EQ(find(met, "folder").kind, ItemKind::folder);
  EXPECT_EQ(find(met, "link").kind, ItemKind::other);
  EXPECT_EQ(find(met, "pipe").kind, ItemKind::other);
}

TEST_P(WalkOverEverything, folderThatMayNotBeListed_isToldAfterItself) {
  writeFile(folder_ / "locked/file");
  setICloudAttribute(folder_ / "locked", "isListable=false");
  const auto met = walk();
  ASSERT_EQ(met.size(), 2U);
  EXPECT_EQ(met[0].path, "locked");
  EXPECT_FALSE(met[0].isUnlisted);
  EXPECT_EQ(met[1].path, "locked");
  EXPECT_TRUE(met[1].isUnlisted);
  EXPECT_EQ(met[1].kind, ItemKind::folder);
}

TEST_P(WalkOverEverything, listingThatBreaksOff_isToldAfterWhatWasListed) {
  writeFile(folder_ / "broken/a");
  std::atomic<int> calls = 0;
  WalkOptions options;
  // The first folder to its end, then the second's entries, and then no more.
  options.list = [&](int descriptor, void* target, std::size_t size) -> ssize_t {
    if (++calls == 4) {
      errno = EIO;
      return -1;
    }
    return getdents64(descriptor, target, size);
  };
  const auto met = walk(options);
  EXPECT_THAT(pathsOf(met), ElementsAre("broken", "broken/a", "broken"));
  EXPECT_TRUE(met.back().isUnlisted);
}

TEST_P(WalkOverEverything, folderThatGoesBeforeItIsOpened_isPassedOver) {
  makeFolder(folder_ / "going");
  WalkOptions options;
  options.list = [&](int descriptor, void* target, std::size_t size) {
    const ssize_t length = getdents64(descriptor, target, size);
    std::filesystem::remove(folder_ / "going");
    return length;
  };
  for (const MetItem& item : walk(options)) {
    EXPECT_EQ(item.path, "going");
    EXPECT_FALSE(item.isUnlisted);
    // It was gone, too, when its values were read.
    EXPECT_EQ(item.kind, ItemKind::other);
  }
}

TEST_P(WalkOverEverything, unhurriedWalk_givesWayOnItsOwnThreadsAlone) {
  writeFile(folder_ / "a");
  std::atomic<int> policy = -1;
  WalkOptions options;
  options.list = [&](int descriptor, void* target, std::size_t size) {
    policy = sched_getscheduler(0);
    return getdents64(descriptor, target, size);
  };
  walk(options, /*isUnhurried=*/true);
  EXPECT_EQ(policy, GetParam() == 0 ? SCHED_OTHER : SCHED_BATCH);
  EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
  walk(options);
  EXPECT_EQ(policy, SCHED_OTHER);
}

TEST(BackgroundThread, givingWay_isOfTheCallingThreadAlone) {
  const int before = getpriority(PRIO_PROCESS, 0);
  int policy = -1;
  int niceness = -1;
  std::thread([&] {
    giveWay();
    policy = sched_getscheduler(0);
    niceness = getpriority(PRIO_PROCESS, 0);
  }).join();
  EXPECT_EQ(policy, SCHED_BATCH);
  EXPECT_EQ(niceness, std::min(before + 10, 19));
  EXPECT_EQ(getpriority(PRIO_PROCESS, 0), before);
  EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
}

}  // namespace
}  // namespace cirrovane::test
