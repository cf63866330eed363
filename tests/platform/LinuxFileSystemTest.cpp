#include "platform/linux/host/HostDisk.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::string_literals;

class LinuxFileSystemOnDisk : public testing::Test {
 protected:
  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const MacRoot root_ = *MacRoot::open((writeFile(folder_ / "machine.json", "{}"), folder_.path()));
  const LinuxFileSystem fileSystem_{foldersOf(root_), hostVolume};
};

TEST_F(LinuxFileSystemOnDisk, exists_ofAnythingThatIsThere_isTrue) {
  writeFile(folder_ / "file");
  makeFolder(folder_ / "folder");
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  ASSERT_EQ(symlink("folder", (folder_ / "link").c_str()), 0);
  for (const char* name : {"file", "folder", "folder/", "fifo", "link", "link/", "folder/..", "."}) {
    EXPECT_TRUE(fileSystem_.exists(folder_ / name)) << name;
  }
  EXPECT_TRUE(fileSystem_.exists("/"));
}

TEST_F(LinuxFileSystemOnDisk, exists_ofWhatIsNotThere_isFalse) {
  writeFile(folder_ / "file");
  ASSERT_EQ(symlink("nowhere", (folder_ / "dangling").c_str()), 0);
  ASSERT_EQ(symlink("loop", (folder_ / "loop").c_str()), 0);
  for (const char* name : {"missing", "file/", "file/below", "missing/below", "dangling", "loop", "FILE"}) {
    EXPECT_FALSE(fileSystem_.exists(folder_ / name)) << name;
  }
  EXPECT_FALSE(fileSystem_.exists(""));
  EXPECT_FALSE(fileSystem_.exists("/" + std::string(10'000, 'x')));
}

TEST_F(LinuxFileSystemOnDisk, path_withANUL_isNotTakenForWhatStandsBeforeIt) {
  writeFile(folder_ / "folder/file");
  ASSERT_TRUE(fileSystem_.exists(folder_ / "folder"));
  EXPECT_FALSE(fileSystem_.exists(folder_ / "folder\0"s));
  EXPECT_FALSE(fileSystem_.exists(folder_ / "folder\0/x"s));
  EXPECT_EQ(fileSystem_.enumerate(folder_ / "folder\0"s), nullptr);
  EXPECT_EQ(fileSystem_.enumerate(folder_ / "folder\0x"s), nullptr);
}

/// Notes whether each folder was told before any of its entries was.
class NotedListings final : public ListingObserver {
 public:
  void beforeListing(const std::string& folder, int descriptor) override {
    const std::lock_guard lock(mutex_);
    folders_.insert(folder);
    allOpen_ = allOpen_ && fcntl(descriptor, F_GETFD) >= 0;
  }
  std::set<std::string> folders() const {
    const std::lock_guard lock(mutex_);
    return folders_;
  }
  bool allOpen() const { return allOpen_; }

 private:
  mutable std::mutex mutex_;
  std::set<std::string> folders_;
  bool allOpen_ = true;
};

TEST_F(LinuxFileSystemOnDisk, observerOfAWalk_isToldOfEachFolderThatIsEntered_beforeItsItems) {
  writeFile(folder_ / "watched/a/b/file");
  writeFile(folder_ / "watched/song.band/inside/file");
  writeFile(folder_ / "watched/.hidden/file");
  makeFolder(folder_ / "watched/empty");
  NotedListings listings;
  const auto walk = fileSystem_.enumerate({.folder = folder_ / "watched", .observer = &listings});
  while (const ItemBatch* batch = walk->next()) {
    EXPECT_TRUE(listings.folders().contains(batch->folderPath())) << batch->folderPath();
  }
  EXPECT_EQ(listings.folders(), (std::set<std::string>{folder_ / "watched", folder_ / "watched/a",
                                                       folder_ / "watched/a/b", folder_ / "watched/empty"}));
  EXPECT_TRUE(listings.allOpen());
}

TEST_F(LinuxFileSystemOnDisk, shallowWalk_tellsTheFoldersOwnEntriesAlone) {
  writeFile(folder_ / "watched/a/b/file");
  writeFile(folder_ / "watched/file");
  NotedListings listings;
  const auto walk = fileSystem_.enumerate({.folder = folder_ / "watched", .isDeep = false, .observer = &listings});
  std::vector<std::string> names = namesOf(restOf(*walk));
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::string>{"a", "file"}));
  EXPECT_EQ(listings.folders(), std::set<std::string>{folder_ / "watched"});
}

TEST_F(LinuxFileSystemOnDisk, readItems_givesWhatAWalkWouldShow_inTheOrderAskedFor) {
  writeFile(folder_ / "watched/file");
  writeFile(folder_ / "watched/.hidden");
  makeFolder(folder_ / "watched/sub");
  makeFolder(folder_ / "watched/song.band");
  setICloudAttribute(folder_ / "watched/file", "isUploaded=false\nuploadingError=No room\n");
  const auto batch =
      fileSystem_.readItems(folder_ / "watched", {"sub", "gone", ".hidden", "file", "song.band", "sub/..", ""});
  ASSERT_NE(batch, nullptr);
  ASSERT_EQ(batch->items().size(), 3U);
  EXPECT_EQ(batch->folderPath(), folder_ / "watched");
  EXPECT_EQ(batch->items()[0].name, "sub");
  EXPECT_TRUE(batch->items()[0].isEntered);
  EXPECT_EQ(batch->path(batch->items()[1]), folder_ / "watched/file");
  ASSERT_TRUE(batch->items()[1].values);
  EXPECT_EQ(batch->items()[1].values->isUploaded, false);
  EXPECT_EQ(batch->items()[1].values->uploadingError, "No room");
  EXPECT_TRUE(batch->items()[1].values->contentModificationDate);
  EXPECT_FALSE(batch->items()[2].isEntered);
}

TEST_F(LinuxFileSystemOnDisk, readItems_ofAFolderThatIsNotThere_givesNothing) {
  EXPECT_EQ(fileSystem_.readItems(folder_ / "missing", {"file"}), nullptr);
}

TEST_F(LinuxFileSystemOnDisk, relativePath_isWalkedFromWhereTheProcessStands) {
  writeFile(folder_ / "folder/file");
  const std::string relative = std::filesystem::relative(folder_ / "folder").native();
  const auto walk = fileSystem_.enumerate(relative);
  ASSERT_NE(walk, nullptr);
  const ItemBatch* batch = walk->next();
  ASSERT_NE(batch, nullptr);
  const std::string path = batch->path(batch->items().front());
  EXPECT_TRUE(path.starts_with('/')) << path;
  EXPECT_EQ(std::filesystem::canonical(path), std::filesystem::canonical(folder_ / "folder/file"));
}

TEST_F(LinuxFileSystemOnDisk, homeDirectory_isThatOfTheRoot) {
  EXPECT_EQ(fileSystem_.homeDirectory(), folder_ / "Users/demo");
  writeFile(folder_ / "machine.json", R"({"home": "/Users/other"})");
  EXPECT_EQ(fileSystem_.homeDirectory(), folder_ / "Users/other");
}

}  // namespace
}  // namespace cirrovane::test
