#include "base/FileDescriptor.h"
#include "stores/ScanSnapshot.h"
#include "stores/SharedFile.h"
#include "tests/stores/StoreFixture.h"

#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

using Snapshots = std::vector<ScanSnapshot>;

class SharedFileTest : public StoreTest {
 protected:
  std::string path() const { return storePath("shared.json"); }
  SharedFile<Snapshots> file() const { return {fileSystem_, storage_, path()}; }
  std::optional<Failure> add(std::int64_t score) const {
    return file().change([score](Snapshots& snapshots) {
      snapshots.emplace_back().score = score;
      return true;
    });
  }
};

TEST_F(SharedFileTest, missingFile_isEmpty) {
  EXPECT_THAT(file().read(), IsEmpty());
}

TEST_F(SharedFileTest, change_isMadeToWhatAnotherHasWritten) {
  EXPECT_EQ(add(1), std::nullopt);
  EXPECT_EQ(add(2), std::nullopt);
  EXPECT_THAT(file().read(), SizeIs(2));
}

TEST_F(SharedFileTest, nothingChanged_writesNothing) {
  EXPECT_EQ(file().change([](Snapshots&) { return false; }), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(SharedFileTest, senselessFile_isKeptAsideByTheFirstChange) {
  writeFile(path(), "no JSON");
  EXPECT_THAT(file().read(), IsEmpty());
  EXPECT_EQ(readFile(path()), "no JSON");
  EXPECT_EQ(add(1), std::nullopt);
  EXPECT_THAT(file().read(), SizeIs(1));
  EXPECT_EQ(readFile(path() + ".unreadable"), "no JSON");
}

TEST_F(SharedFileTest, programsThatChangeSideBySide_loseNothing) {
  constexpr int kPrograms = 6;
  constexpr int kChanges = 25;
  std::vector<pid_t> children;
  for (int number = 0; number < kPrograms; ++number) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      bool isDone = true;
      for (int change = 0; change < kChanges; ++change) {
        // A busy machine may keep one waiting for longer than a person would be.
        bool isAdded = !add(number);
        for (int attempt = 0; attempt < 20 && !isAdded; ++attempt) {
          isAdded = !add(number);
        }
        isDone = isDone && isAdded;
      }
      _exit(isDone ? 0 : 1);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_THAT(file().read(), SizeIs(kPrograms * kChanges));
}

TEST_F(SharedFileTest, lockThatIsNeverLetGo_isAFailureAndNoHang) {
  ASSERT_EQ(add(1), std::nullopt);
  const FileDescriptor folder(open(storePath("").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(flock(folder.get(), LOCK_EX), 0);
  const auto failure = add(2);
  ASSERT_TRUE(failure);
  EXPECT_THAT(failure->message, testing::HasSubstr("could not be locked"));
  EXPECT_THAT(file().read(), SizeIs(1));
}

TEST_F(SharedFileTest, lock_isLetGoWithTheProgramThatDies) {
  ASSERT_EQ(add(1), std::nullopt);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const Result<FolderLock> lock = storage_.lockFolder(storePath(""));
    kill(getpid(), SIGKILL);
    _exit(lock ? 1 : 2);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(add(2), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
