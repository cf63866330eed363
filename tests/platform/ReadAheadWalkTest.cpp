#include "base/FileDescriptor.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class ReadAheadWalkOfAnyKind : public testing::TestWithParam<WalkKind> {
 protected:
  std::vector<WalkedItem> walk() const { return walked(GetParam(), folder_.path()); }
  std::vector<WalkedItem> walk(const std::string& folder) const { return walked(GetParam(), folder); }
  void link(const std::string& target, const std::string& name) const {
    ASSERT_EQ(symlink(target.c_str(), (folder_ / name).c_str()), 0);
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

INSTANTIATE_TEST_SUITE_P(All, ReadAheadWalkOfAnyKind, testing::ValuesIn(allWalkKinds()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(ReadAheadWalkOfAnyKind, nestedFolders_comeInTheOrderOfOneReader) {
  for (int outer = 0; outer < 6; ++outer) {
    for (int middle = 0; middle < 5; ++middle) {
      for (int inner = 0; inner < 3; ++inner) {
        writeFile(folder_ / fmt::format("folder {}/{}/deep {}/file", outer, middle, inner));
      }
      writeFile(folder_ / fmt::format("folder {}/{}/beside", outer, middle));
    }
    writeFile(folder_ / fmt::format("file {}", outer));
    makeFolder(folder_ / fmt::format("folder {}/empty", outer));
  }
  const auto items = walk();
  EXPECT_EQ(pathsOf(items), naiveWalk(folder_.path()));
  EXPECT_EQ(items.size(), 6U * (1 + 1 + 1 + 5 * (1 + 1 + 3 * 2)));
}

TEST_P(ReadAheadWalkOfAnyKind, foldersAndFiles_areToldApart) {
  writeFile(folder_ / "file");
  makeFolder(folder_ / "folder");
  const auto items = walk();
  EXPECT_FALSE(onlyItemNamed(items, "file").values->isDirectory);
  EXPECT_TRUE(onlyItemNamed(items, "folder").values->isDirectory);
}

TEST_P(ReadAheadWalkOfAnyKind, hiddenItems_areSkippedWithAllBelow) {
  writeFile(folder_ / ".hidden");
  writeFile(folder_ / ".folder/file");
  writeFile(folder_ / "shown/.folder/deep/file");
  writeFile(folder_ / "shown/..file");
  writeFile(folder_ / "shown/...");
  writeFile(folder_ / "shown/not.hidden");
  writeFile(folder_ / "shown/ .leading space");
  EXPECT_THAT(pathsOf(walk()),
              UnorderedElementsAre(folder_ / "shown", folder_ / "shown/not.hidden", folder_ / "shown/ .leading space"));
}

TEST_P(ReadAheadWalkOfAnyKind, watchedFolder_withAHiddenOrPackageName_isWalkedAllTheSame) {
  for (const std::string name : {".hidden", "Photos.photoslibrary"}) {
    writeFile(folder_ / (name + "/file"));
    EXPECT_THAT(pathsOf(walk(folder_ / name)), ElementsAre(folder_ / (name + "/file")));
  }
}

TEST_P(ReadAheadWalkOfAnyKind, packages_areListedButNotEntered) {
  const std::vector<std::string> packages = {"A.app", "B.BUNDLE", "C.photosLibrary", "D.rtfd", "E.x.pages", "F.KEY"};
  for (const std::string& name : packages) {
    writeFile(folder_ / (name + "/Contents/file"));
    setICloudAttribute(folder_ / name, "isUploaded=false");
  }
  const auto items = walk();
  EXPECT_THAT(namesOf(items), testing::UnorderedElementsAreArray(packages));
  for (const WalkedItem& item : items) {
    EXPECT_TRUE(item.values->isDirectory);
    EXPECT_TRUE(item.values->isUbiquitousItem);
  }
}

TEST_P(ReadAheadWalkOfAnyKind, file_withAPackageName_isAFile) {
  writeFile(folder_ / "Flat.pages");
  EXPECT_FALSE(onlyItemNamed(walk(), "Flat.pages").values->isDirectory);
}

TEST_P(ReadAheadWalkOfAnyKind, links_areItemsOfTheirOwnAndNeverFollowed) {
  writeFile(folder_ / "real/file");
  setICloudAttribute(folder_ / "real/file", "isUploaded=false");
  const TemporaryFolder outside(CIRROVANE_TEST_DIR);
  writeFile(outside / "secret");
  link(outside.path(), "toOutside");
  link("real", "toFolder");
  link("real/file", "toFile");
  link("nowhere", "dangling");
  link(".", "toItself");
  link("..", "real/toParent");
  link("loopB", "loopA");
  link("loopA", "loopB");
  link("/proc/self/root", "toRoot");
  const auto items = walk();
  EXPECT_EQ(pathsOf(items), naiveWalk(folder_.path()));
  EXPECT_EQ(items.size(), 11U);
  for (const WalkedItem& item : items) {
    ASSERT_TRUE(item.values) << item.path;
    EXPECT_EQ(item.values->isDirectory, item.name == "real") << item.path;
    EXPECT_EQ(item.values->isUbiquitousItem, item.name == "file") << item.path;
  }
}

TEST_P(ReadAheadWalkOfAnyKind, watchedFolder_thatIsALink_isFollowed) {
  writeFile(folder_ / "real/below/file");
  link("real", "link");
  link("link", "linkToLink");
  for (const std::string name : {"link", "linkToLink"}) {
    EXPECT_THAT(pathsOf(walk(folder_ / name)),
                ElementsAre(folder_ / (name + "/below"), folder_ / (name + "/below/file")));
  }
}

TEST_P(ReadAheadWalkOfAnyKind, watchedFolder_withATrailingSlash_givesPathsWithOneSlash) {
  writeFile(folder_ / "below/file");
  EXPECT_THAT(pathsOf(walk(folder_.path() + "/")), ElementsAre(folder_ / "below", folder_ / "below/file"));
}

TEST_P(ReadAheadWalkOfAnyKind, specialFiles_areItemsLikeAnyOther) {
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  ASSERT_EQ(mknod((folder_ / "socket").c_str(), S_IFSOCK | 0600, 0), 0);
  std::vector<std::string> expected = {"fifo", "socket"};
  // Only root can make a device, and not in every container.
  if (mknod((folder_ / "device").c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0) {
    expected.emplace_back("device");
  }
  const auto items = walk();
  EXPECT_THAT(namesOf(items), testing::UnorderedElementsAreArray(expected));
  for (const WalkedItem& item : items) {
    ASSERT_TRUE(item.values) << item.name;
    EXPECT_FALSE(item.values->isDirectory);
    EXPECT_FALSE(item.values->isUbiquitousItem);
  }
}

/// Names of the files in a folder that have been opened since the last call.
std::vector<std::string> filesOpened(int notifications) {
  std::vector<std::string> names;
  alignas(inotify_event) std::array<char, 65536> buffer{};
  for (ssize_t length = read(notifications, buffer.data(), buffer.size()); length > 0;
       length = read(notifications, buffer.data(), buffer.size())) {
    for (std::size_t position = 0; position < static_cast<std::size_t>(length);) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + position, sizeof event);
      if ((event.mask & IN_OPEN) != 0 && (event.mask & IN_ISDIR) == 0) {
        names.emplace_back(buffer.data() + position + sizeof event);
      }
      position += sizeof event + event.len;
    }
  }
  return names;
}

TEST_P(ReadAheadWalkOfAnyKind, files_areNeverOpened) {
  for (const char* name : {"clean", "pending", "plain", "below/clean", "below/pending", "below/conflict"}) {
    writeFile(folder_ / name, "content");
    if (std::string_view(name) != "plain") {
      setICloudAttribute(folder_ / name, std::string_view(name).ends_with("clean") ? "" : "isUploaded=false");
    }
  }
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((folder_ / "below/fifo").c_str(), 0600), 0);

  const FileDescriptor notifications(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  ASSERT_TRUE(notifications.isOpen());
  for (const std::string& watched : {folder_.path(), folder_ / "below"}) {
    ASSERT_GE(inotify_add_watch(notifications.get(), watched.c_str(), IN_OPEN), 0);
  }
  EXPECT_EQ(walk().size(), 9U);
  EXPECT_THAT(filesOpened(notifications.get()), IsEmpty());

  // The watch does see what it watches for.
  readFile(folder_ / "below/pending");
  EXPECT_THAT(filesOpened(notifications.get()), ElementsAre("pending"));
}

TEST_P(ReadAheadWalkOfAnyKind, names_ofAnyBytes_comeAsTheyAre) {
  const std::vector<std::string> names = {
      "\xFF\xFE", "line\nbreak", "\x1b[31mred", "back\\slash",         " ",
      "~",        "-rf",         "caf\xC3\xA9", "cafe\xCC\x81",        "\xE2\x80\xAEgpj.exe",
      "%s%n",     "*",           "\x01\x7f",    std::string(255, 'n'), std::string(254, '\xEF') + "x"};
  for (const std::string& name : names) {
    writeFile(folder_ / name);
    setICloudAttribute(folder_ / name, "isUploaded=false");
  }
  const auto items = walk();
  EXPECT_THAT(namesOf(items), testing::UnorderedElementsAreArray(names));
  for (const WalkedItem& item : items) {
    EXPECT_EQ(item.path, folder_ / item.name);
    ASSERT_TRUE(item.values);
    EXPECT_EQ(item.values->isUploaded, false);
  }
}

TEST_P(ReadAheadWalkOfAnyKind, folders_withNamesOfAnyBytes_areEntered) {
  for (const std::string& name : {std::string("\xFF\n"), std::string(255, 'd'), std::string(" ")}) {
    writeFile(folder_ / (name + "/below"));
    EXPECT_THAT(pathsOf(walk(folder_ / name)), ElementsAre(folder_ / (name + "/below")));
  }
  EXPECT_EQ(pathsOf(walk()), naiveWalk(folder_.path()));
}

TEST_P(ReadAheadWalkOfAnyKind, folderNames_thatBeginWithAnother_areNotMixedUp) {
  for (const char* name : {"a/f1", "aa/f2", "aaa/f3", "a/a/f4", "a/a/a/f5", "aa/a/f6"}) {
    writeFile(folder_ / name);
  }
  EXPECT_EQ(pathsOf(walk()), naiveWalk(folder_.path()));
}

TEST_P(ReadAheadWalkOfAnyKind, emptyFolder_isCompleteWithoutItems) {
  const auto walk = GetParam().start(folder_.path());
  EXPECT_THAT(restOf(*walk), IsEmpty());
  EXPECT_TRUE(walk->isComplete());
}

TEST_P(ReadAheadWalkOfAnyKind, manyEmptyFolders_areItemsWithNothingBelow) {
  for (int index = 0; index < 60; ++index) {
    makeFolder(folder_ / fmt::format("{}/only/.hidden", index));
  }
  const auto items = walk();
  EXPECT_EQ(items.size(), 120U);
  EXPECT_EQ(pathsOf(items), naiveWalk(folder_.path()));
}

TEST_P(ReadAheadWalkOfAnyKind, whatIsNoFolder_isIncompleteWithoutItems) {
  writeFile(folder_ / "file");
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  link("nowhere", "dangling");
  link("loop", "loop");
  for (const char* name : {"missing", "file", "fifo", "dangling", "loop", "file/below", "missing/below"}) {
    const auto walk = GetParam().start(folder_ / name);
    EXPECT_THAT(restOf(*walk), IsEmpty()) << name;
    EXPECT_FALSE(walk->isComplete()) << name;
  }
  EXPECT_THAT(walk(folder_ / std::string(256, 'n')), IsEmpty());
  EXPECT_THAT(walk(""), IsEmpty());
}

TEST_P(ReadAheadWalkOfAnyKind, everyWalk_leavesTheWorkingDirectoryAlone) {
  writeFile(folder_ / "below/file");
  std::array<char, 4096> before{};
  std::array<char, 4096> after{};
  ASSERT_NE(getcwd(before.data(), before.size()), nullptr);
  EXPECT_EQ(walk().size(), 2U);
  ASSERT_NE(getcwd(after.data(), after.size()), nullptr);
  EXPECT_STREQ(before.data(), after.data());
}

TEST_P(ReadAheadWalkOfAnyKind, everyWalk_closesAllThatItOpened) {
  for (int index = 0; index < 50; ++index) {
    writeFile(folder_ / fmt::format("{}/below/file", index));
  }
  const std::size_t before = openDescriptorCount();
  EXPECT_EQ(walk().size(), 150U);
  EXPECT_EQ(openDescriptorCount(), before);
}

TEST_P(ReadAheadWalkOfAnyKind, walk_destroyedAtAnyPoint_endsAndClosesAll) {
  for (int index = 0; index < 40; ++index) {
    for (int file = 0; file < 5; ++file) {
      writeFile(folder_ / fmt::format("{}/below/{}", index, file));
    }
  }
  const std::size_t before = openDescriptorCount();
  for (int given = 0; given <= 83; given = given < 5 ? given + 1 : given * 2) {
    const auto walk = GetParam().start(folder_.path());
    for (int batch = 0; batch < given; ++batch) {
      walk->next();
    }
  }
  EXPECT_EQ(openDescriptorCount(), before);
}

TEST_P(ReadAheadWalkOfAnyKind, batch_staysValidUntilTheNextIsAskedFor) {
  for (int index = 0; index < 100; ++index) {
    for (const char* file : {"file", "other"}) {
      const std::string name = fmt::format("{}/{}", index, file);
      writeFile(folder_ / name);
      setICloudAttribute(folder_ / name, fmt::format("uploadingError=error of {}", name));
    }
  }
  const auto walk = GetParam().start(folder_.path());
  // By then whoever reads ahead has read all that it may.
  const ItemBatch* first = walk->next();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->items().size(), 100U);
  std::size_t fileCount = 0;
  for (const ItemBatch* batch = walk->next(); batch != nullptr; batch = walk->next()) {
    for (const Item& item : batch->items()) {
      ++fileCount;
      ASSERT_TRUE(item.values && item.values->uploadingError);
      EXPECT_EQ(folder_ / std::string(item.values->uploadingError->substr(9)), batch->path(item));
    }
  }
  EXPECT_EQ(fileCount, 200U);
}

TEST_P(ReadAheadWalkOfAnyKind, twoWalks_atOnce_doNotDisturbEachOther) {
  for (int index = 0; index < 60; ++index) {
    writeFile(folder_ / fmt::format("left/{}/file", index));
    writeFile(folder_ / fmt::format("right/{}/file", index));
  }
  const auto left = GetParam().start(folder_ / "left");
  const auto right = GetParam().start(folder_ / "right");
  std::vector<std::string> leftPaths;
  std::vector<std::string> rightPaths;
  const auto take = [](FolderWalk& walk, std::vector<std::string>& paths) {
    const ItemBatch* batch = walk.next();
    if (batch != nullptr) {
      std::ranges::transform(batch->items(), std::back_inserter(paths),
                             [&](const Item& item) { return batch->path(item); });
    }
    return batch != nullptr;
  };
  bool hasMore = true;
  while (hasMore) {
    hasMore = take(*left, leftPaths);
    hasMore = take(*right, rightPaths) || hasMore;
  }
  EXPECT_EQ(leftPaths, naiveWalk(folder_ / "left"));
  EXPECT_EQ(rightPaths, naiveWalk(folder_ / "right"));
}

}  // namespace
}  // namespace cirrovane::test
