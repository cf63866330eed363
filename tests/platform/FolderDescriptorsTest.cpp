#include "platform/posix/walk/WalkedFolder.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

namespace fs = std::filesystem;

TEST(WalkedFolder, path_ofAChain_isItsNamesWithSlashesBetween) {
  const WalkedFolder root{nullptr, "/a/root"};
  const WalkedFolder child{&root, "child"};
  const WalkedFolder grandchild{&child, "grand child"};
  EXPECT_EQ(pathOf(root), "/a/root");
  EXPECT_EQ(pathOf(grandchild), "/a/root/child/grand child");
  EXPECT_EQ(pathOf(grandchild, "file"), "/a/root/child/grand child/file");
}

TEST(WalkedFolder, path_belowAFolderThatEndsInASlash_hasNoSecondOne) {
  const WalkedFolder root{nullptr, "/"};
  const WalkedFolder child{&root, "child"};
  EXPECT_EQ(pathOf(root, "file"), "/file");
  EXPECT_EQ(pathOf(child, "file"), "/child/file");
  EXPECT_EQ(pathOf(WalkedFolder{nullptr, "/a/"}, "file"), "/a/file");
}

class FolderDescriptorsOnDisk : public testing::Test {
 protected:
  void SetUp() override { makeFolder(folder_ / "child/grandchild"); }

  static bool isSameFolder(const FolderDescriptors::Opened& opened, const std::string& path) {
    struct stat lhs {};
    struct stat rhs {};
    return opened.descriptor && fstat(opened.descriptor->get(), &lhs) == 0 && stat(path.c_str(), &rhs) == 0 &&
           lhs.st_ino == rhs.st_ino && lhs.st_dev == rhs.st_dev;
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const WalkedFolder root_{nullptr, folder_.path()};
  const WalkedFolder child_{&root_, "child"};
  const WalkedFolder grandchild_{&child_, "grandchild"};
};

TEST_F(FolderDescriptorsOnDisk, folder_withAnyCapacity_isOpenedThroughAllAboveIt) {
  for (std::size_t capacity = 0; capacity <= 4; ++capacity) {
    FolderDescriptors descriptors(capacity);
    EXPECT_TRUE(isSameFolder(descriptors.open(grandchild_), folder_ / "child/grandchild"));
    EXPECT_TRUE(isSameFolder(descriptors.open(child_), folder_ / "child"));
    EXPECT_TRUE(isSameFolder(descriptors.open(root_), folder_.path()));
  }
}

TEST_F(FolderDescriptorsOnDisk, folders_beyondTheCapacity_areClosed) {
  const std::size_t before = openDescriptorCount();
  for (std::size_t capacity = 0; capacity <= 4; ++capacity) {
    FolderDescriptors descriptors(capacity);
    descriptors.open(grandchild_);
    EXPECT_EQ(openDescriptorCount(), before + std::min<std::size_t>(capacity, 3));
  }
  EXPECT_EQ(openDescriptorCount(), before);
}

TEST_F(FolderDescriptorsOnDisk, folderInUse_staysOpenWhenTheCapacityIsSpent) {
  FolderDescriptors descriptors(1);
  const auto child = descriptors.open(child_);
  descriptors.open(grandchild_);
  EXPECT_TRUE(isSameFolder(child, folder_ / "child"));
}

TEST_F(FolderDescriptorsOnDisk, forgottenFolder_isClosedAndCanBeOpenedAgain) {
  FolderDescriptors descriptors(4);
  descriptors.open(grandchild_);
  const std::size_t before = openDescriptorCount();
  descriptors.forget(grandchild_);
  EXPECT_EQ(openDescriptorCount(), before - 1);
  descriptors.forget(grandchild_);
  EXPECT_EQ(openDescriptorCount(), before - 1);
  EXPECT_TRUE(isSameFolder(descriptors.open(grandchild_), folder_ / "child/grandchild"));
}

TEST_F(FolderDescriptorsOnDisk, folderMovedWhileItsParentIsOpen_isStillFoundBelowIt) {
  FolderDescriptors descriptors(4);
  descriptors.open(child_);
  fs::rename(folder_ / "child", folder_ / "moved");
  EXPECT_TRUE(isSameFolder(descriptors.open(grandchild_), folder_ / "moved/grandchild"));
}

TEST_F(FolderDescriptorsOnDisk, folderThatIsGone_isUnreadable) {
  FolderDescriptors descriptors(4);
  fs::remove(folder_ / "child/grandchild");
  const auto opened = descriptors.open(grandchild_);
  EXPECT_EQ(opened.result, FolderOpening::unreadable);
  EXPECT_FALSE(opened.descriptor);
}

TEST_F(FolderDescriptorsOnDisk, folderThatBecameALink_isUnreadable) {
  fs::rename(folder_ / "child", folder_ / "moved");
  fs::create_directory_symlink("moved", folder_ / "child");
  FolderDescriptors descriptors(4);
  EXPECT_EQ(descriptors.open(child_).result, FolderOpening::unreadable);
  EXPECT_EQ(descriptors.open(grandchild_).result, FolderOpening::unreadable);
}

TEST_F(FolderDescriptorsOnDisk, folderThatBecameAFifo_isUnreadableAndNotWaitedFor) {
  fs::remove_all(folder_ / "child");
  ASSERT_EQ(mkfifo((folder_ / "child").c_str(), 0600), 0);
  FolderDescriptors descriptors(4);
  EXPECT_EQ(descriptors.open(child_).result, FolderOpening::unreadable);
}

TEST_F(FolderDescriptorsOnDisk, noDescriptorLeft_isExhaustionAndNotUnreadability) {
  FolderDescriptors descriptors(4);
  {
    const FewDescriptors none(0);
    EXPECT_EQ(descriptors.open(root_).result, FolderOpening::exhausted);
  }
  EXPECT_EQ(descriptors.open(root_).result, FolderOpening::opened);
}

TEST_F(FolderDescriptorsOnDisk, noDescriptorLeftButSomeKept_givesThoseUp) {
  FolderDescriptors descriptors(4);
  const FewDescriptors few(2);
  EXPECT_EQ(descriptors.open(child_).result, FolderOpening::opened);
  EXPECT_TRUE(isSameFolder(descriptors.open(grandchild_), folder_ / "child/grandchild"));
}

TEST(FolderDescriptors, reasonableCapacity_leavesMostDescriptorsToOthers) {
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlim_t before = limit.rlim_cur;
  limit.rlim_cur = 64;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  const std::size_t ofFew = FolderDescriptors::reasonableCapacity();
  limit.rlim_cur = before;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_GE(ofFew, 1U);
  EXPECT_LE(ofFew, 32U);
  EXPECT_GE(FolderDescriptors::reasonableCapacity(), ofFew);
}

}  // namespace
}  // namespace cirrovane::test
