#include "platform/Machine.h"
#include "platform/linux/LinuxFileSystem.h"
#include "platform/linux/macroot/MacRoot.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <memory>
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
  const MacRoot root_ = *MacRoot::open(folder_.path());
  const LinuxFileSystem fileSystem_{root_};
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

TEST(LinuxMachine, root_thatIsNoFolder_isRefusedByName) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const auto machine = makeMachine(folder / "missing");
  ASSERT_FALSE(machine);
  EXPECT_NE(machine.message().find(folder / "missing"), std::string::npos);
}

TEST(LinuxMachine, rootFolder_givesAMachineWithItsFilesAndAClock) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const auto machine = makeMachine(folder.path());
  ASSERT_TRUE(machine);
  EXPECT_EQ((*machine)->fileSystem().homeDirectory(), folder / "Users/demo");
  const Time first = (*machine)->clock().now();
  EXPECT_GT(first, Time(std::chrono::seconds(1'700'000'000)));
}

}  // namespace
}  // namespace cirrovane::test
