// Trees of a size or depth that breaks a careless walk. Each is made once and walked in every way.

#include "base/FileDescriptor.h"
#include "platform/linux/walk/LinuxWalk.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

FileDescriptor openFolder(const std::string& path) {
  return FileDescriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

FileDescriptor makeFolderBelow(const FileDescriptor& parent, const std::string& name) {
  EXPECT_EQ(mkdirat(parent.get(), name.c_str(), 0755), 0);
  return FileDescriptor(openat(parent.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

void makeFileBelow(const FileDescriptor& parent, const std::string& name, std::string_view attribute) {
  const FileDescriptor file(openat(parent.get(), name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
  EXPECT_EQ(fsetxattr(file.get(), "user.icloud", attribute.data(), attribute.size(), 0), 0);
}

/// Folders one in the other, with a pending file in the last.
void makeChain(const std::string& root, int depth, const std::string& name) {
  FileDescriptor folder = openFolder(root);
  for (int level = 0; level < depth; ++level) {
    folder = makeFolderBelow(folder, name);
  }
  makeFileBelow(folder, "last", "isUploaded=false");
}

/// A chain whose every folder has a second subfolder, with a file in it.
void makeComb(const std::string& root, int depth) {
  FileDescriptor folder = openFolder(root);
  for (int level = 0; level < depth; ++level) {
    makeFileBelow(makeFolderBelow(folder, fmt::format("side {}", level)), fmt::format("file {}", level), "");
    folder = makeFolderBelow(folder, fmt::format("{}", level));
  }
  makeFileBelow(folder, "last", "isUploaded=false");
}

TEST(WalkLimits, folders_deeperThanAnyPathCanName_areWalkedToTheEnd) {
  constexpr int kDepth = 1000;
  const std::string name(255, 'd');
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeChain(folder.path(), kDepth, name);
  std::string lastPath = folder.path();
  for (int level = 0; level < kDepth; ++level) {
    lastPath += "/" + name;
  }
  lastPath += "/last";
  for (const WalkKind& kind : allWalkKinds()) {
    SCOPED_TRACE(kind.name);
    const auto walk = kind.start(folder.path());
    int folderCount = 0;
    bool hasSeenLast = false;
    while (const ItemBatch* batch = walk->next()) {
      for (const Item& item : batch->items()) {
        ASSERT_FALSE(hasSeenLast);
        ASSERT_TRUE(item.values);
        if (item.name == name) {
          ASSERT_TRUE(item.values->isDirectory);
          ++folderCount;
        } else {
          hasSeenLast = true;
          EXPECT_EQ(item.values->isUploaded, false);
          EXPECT_TRUE(item.values->contentModificationDate);
          // Not EXPECT_EQ: nobody wants to read a quarter of a million letters.
          EXPECT_TRUE(batch->path(item) == lastPath);
        }
      }
    }
    EXPECT_EQ(folderCount, kDepth);
    EXPECT_TRUE(hasSeenLast);
  }
}

TEST(WalkLimits, threeThousandLevels_areWalkedToTheEnd) {
  constexpr int kDepth = 3000;
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeChain(folder.path(), kDepth, "d");
  std::vector<std::string> expected(kDepth, "d");
  expected.emplace_back("last");
  for (const WalkKind& kind : allWalkKinds()) {
    SCOPED_TRACE(kind.name);
    const auto items = walked(kind, folder.path(), Paths::unwanted);
    EXPECT_TRUE(namesOf(items) == expected) << items.size();
    EXPECT_EQ(onlyItemNamed(items, "last").values->isUploaded, false);
  }
}

TEST(WalkLimits, deepFoldersWithASecondBranchEach_areWalkedWithAnyNumberOfOpenFolders) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeComb(folder.path(), 300);
  const std::vector<std::string> expected = naiveWalk(folder.path(), Paths::unwanted);
  ASSERT_EQ(expected.size(), 901U);
  for (std::size_t capacity = 0; capacity <= 8; ++capacity) {
    for (const std::size_t threadCount : {0U, 2U}) {
      SCOPED_TRACE(fmt::format("{} open folders, {} threads", capacity, threadCount));
      const std::size_t before = openDescriptorCount();
      {
        const auto walk = startLinuxWalk({folder.path()}, {.threadCount = threadCount, .openFolderCapacity = capacity});
        EXPECT_TRUE(namesOf(restOf(*walk, Paths::unwanted)) == expected);
      }
      EXPECT_EQ(openDescriptorCount(), before);
    }
  }
}

TEST(WalkLimits, deepFoldersWithASecondBranchEach_areWalkedInEveryWay) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeComb(folder.path(), 1000);
  const std::vector<std::string> expected = naiveWalk(folder.path(), Paths::unwanted);
  ASSERT_EQ(expected.size(), 3001U);
  for (const WalkKind& kind : allWalkKinds()) {
    EXPECT_TRUE(namesOf(walked(kind, folder.path(), Paths::unwanted)) == expected) << kind.name;
  }
}

TEST(WalkLimits, oneFlatFolder_ofTwentyThousandEntries_keepsItsOrder) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const FileDescriptor descriptor = openFolder(folder.path());
  for (int index = 0; index < 20'000; ++index) {
    if (index % 500 == 0) {
      makeFileBelow(makeFolderBelow(descriptor, fmt::format("folder {}", index)), "below", "");
    } else if (index % 100 == 0) {
      makeFileBelow(descriptor, fmt::format("file {}", index), fmt::format("uploadingError={}", index));
    } else {
      FileDescriptor(
          openat(descriptor.get(), fmt::format("file {}", index).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    }
  }
  const std::vector<std::string> expected = naiveWalk(folder.path());
  ASSERT_EQ(expected.size(), 20'040U);
  for (const WalkKind& kind : allWalkKinds()) {
    SCOPED_TRACE(kind.name);
    const auto items = walked(kind, folder.path());
    EXPECT_TRUE(pathsOf(items) == expected);
    int errorCount = 0;
    for (const WalkedItem& item : items) {
      ASSERT_TRUE(item.values) << item.path;
      if (item.values->uploadingError) {
        ++errorCount;
        EXPECT_EQ(item.name, "file " + *item.values->uploadingError);
      }
    }
    EXPECT_EQ(errorCount, 160);
  }
}

TEST(WalkLimits, manyHiddenEntriesInARow_doNotEndTheFolder) {
  // More than one read of the kernel's list holds, so that whole stretches have nothing to show.
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const FileDescriptor descriptor = openFolder(folder.path());
  for (int index = 0; index < 5000; ++index) {
    FileDescriptor(
        openat(descriptor.get(), fmt::format(".{:0>200}", index).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
  }
  makeFileBelow(descriptor, "shown", "");
  makeFileBelow(makeFolderBelow(descriptor, "folder"), "below", "");
  for (const WalkKind& kind : allWalkKinds()) {
    EXPECT_EQ(pathsOf(walked(kind, folder.path())), naiveWalk(folder.path())) << kind.name;
  }
}

TEST(WalkLimits, entriesWithTheLongestNames_areAllSeen) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const FileDescriptor descriptor = openFolder(folder.path());
  for (int index = 0; index < 2000; ++index) {
    FileDescriptor(
        openat(descriptor.get(), fmt::format("{:x>255}", index).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
  }
  const std::vector<std::string> expected = naiveWalk(folder.path());
  ASSERT_EQ(expected.size(), 2000U);
  for (const WalkKind& kind : allWalkKinds()) {
    EXPECT_TRUE(pathsOf(walked(kind, folder.path())) == expected) << kind.name;
  }
}

/// A tree for walks that run short of descriptors: some folders wide, some deep.
void makeSmallTree(const TemporaryFolder& folder) {
  for (int index = 0; index < 4; ++index) {
    writeFile(folder / fmt::format("wide {}/a/file", index));
    writeFile(folder / fmt::format("wide {}/b/file", index));
    writeFile(folder / fmt::format("deep/{}/{}/{}/file", index, index, index));
  }
}

TEST(WalkLimits, noDescriptorLeft_isAListingThatFailed) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeSmallTree(folder);
  for (const WalkKind& kind : allWalkKinds()) {
    SCOPED_TRACE(kind.name);
    const FewDescriptors none(0);
    ASSERT_LT(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
    ASSERT_EQ(errno, EMFILE);
    const auto walk = kind.start(folder.path());
    EXPECT_THAT(restOf(*walk), testing::IsEmpty());
    EXPECT_FALSE(walk->isComplete());
  }
}

TEST(WalkLimits, fewDescriptorsLeft_makeEveryFolderThatIsMissedAnItemWithoutValues) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeSmallTree(folder);
  const std::vector<std::string> everything = naiveWalk(folder.path());
  for (const WalkKind& kind : allWalkKinds()) {
    for (int count = 1; count <= 8; ++count) {
      SCOPED_TRACE(fmt::format("{} with {}", kind.name, count));
      std::vector<WalkedItem> items;
      {
        const FewDescriptors few(count);
        const auto walk = kind.start(folder.path());
        items = restOf(*walk);
        EXPECT_TRUE(walk->isComplete()) << "only folders below are missed";
      }
      std::set<std::string> missed;
      std::set<std::string> seen;
      for (const WalkedItem& item : items) {
        (item.values ? seen : missed).insert(item.path);
      }
      for (const std::string& path : everything) {
        const bool isAccountedFor = std::ranges::any_of(
            missed, [&](const std::string& folderPath) { return path.starts_with(folderPath + "/"); });
        EXPECT_TRUE(isAccountedFor || seen.contains(path)) << path;
      }
      if (count == 1) {
        EXPECT_FALSE(missed.empty()) << "one descriptor cannot be enough";
      }
    }
  }
}

TEST(WalkLimits, fewDescriptorsLeft_areEnoughForOneReader) {
  // The folder itself, the one above it, and one more to climb down by.
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  makeSmallTree(folder);
  makeComb(folder.path(), 100);
  const std::vector<std::string> everything = naiveWalk(folder.path());
  const FewDescriptors few(3);
  const auto walk = startLinuxWalk({folder.path()}, {.threadCount = 0});
  const auto items = restOf(*walk);
  EXPECT_EQ(pathsOf(items), everything);
  EXPECT_TRUE(std::ranges::all_of(items, [](const WalkedItem& item) { return item.values.has_value(); }));
}

}  // namespace
}  // namespace cirrovane::test
