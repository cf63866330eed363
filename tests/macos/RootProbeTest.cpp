#include "core/ICloudScanEngine.h"
#include "platform/macos/plain/RootProbe.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// A system on which opening any folder ends with this error.
OpenCall failingWith(int error) {
  return [error](const char* /*path*/, int /*flags*/) {
    errno = error;
    return -1;
  };
}

/// A Mac whose folders are all in the state that the probe finds.
class ProbedFileSystem final : public FileSystem {
 public:
  explicit ProbedFileSystem(OpenCall open) : open_(std::move(open)) {}
  bool exists(const std::string& /*path*/) const override { return true; }
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override {
    return walkWithoutItems(probeRoot(request.folder, open_));
  }
  std::unique_ptr<ItemBatch> readItems(const std::string& /*folder*/,
                                       const std::vector<std::string>& /*names*/) const override {
    return nullptr;
  }
  VolumeCapacities volumeCapacities(const std::string& /*folder*/) const override { return {}; }
  std::string homeDirectory() const override { return "/Users/test"; }
  std::optional<std::string> applicationSupportDirectory() const override { return std::nullopt; }

 private:
  OpenCall open_;
};

SyncHealthReport reportWhereOpening(OpenCall open) {
  const ProbedFileSystem fileSystem(std::move(open));
  const ManualClock clock;
  return ICloudScanEngine(fileSystem, clock)
      .scan({{UUID(), "Work", "/Users/test/Library/Mobile Documents/com~apple~CloudDocs/Work"}});
}

TEST(RootProbe, folder_thatOpens_isListableAndClosedAgain) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  int opened = -1;
  const OpenCall noting = [&](const char* path, int flags) { return opened = ::open(path, flags); };
  EXPECT_EQ(probeRoot(folder.path(), noting), RootState::listable);
  ASSERT_GE(opened, 0);
  EXPECT_EQ(fcntl(opened, F_GETFD), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(probeRoot(folder.path()), RootState::listable);
}

TEST(RootProbe, folder_isOpenedAsAFolderForReadingAndForThisProcessAlone) {
  std::string askedPath;
  int askedFlags = 0;
  probeRoot("/Users/test/Work", [&](const char* path, int flags) {
    askedPath = path;
    askedFlags = flags;
    errno = EACCES;
    return -1;
  });
  EXPECT_EQ(askedPath, "/Users/test/Work");
  EXPECT_EQ(askedFlags, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

TEST(RootProbe, deadlock_isADatalessFolder) {
  EXPECT_EQ(probeRoot("/a", failingWith(EDEADLK)), RootState::dataless);
}

TEST(RootProbe, anyOtherFailure_isARefusal) {
  for (const int error : {EPERM, EACCES, EIO, ENOENT, ENOTDIR, ELOOP, EMFILE, ENFILE, ENOMEM, ETIMEDOUT}) {
    EXPECT_EQ(probeRoot("/a", failingWith(error)), RootState::refused) << error;
  }
}

TEST(RootProbe, interruption_isTriedAgain) {
  std::vector<int> errors = {EDEADLK, EINTR, EINTR};
  const OpenCall interrupted = [&](const char* /*path*/, int /*flags*/) {
    errno = errors.back();
    errors.pop_back();
    return -1;
  };
  EXPECT_EQ(probeRoot("/a", interrupted), RootState::dataless);
  EXPECT_TRUE(errors.empty());
}

TEST(RootProbe, plainFile_isARefusal) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  writeFile(folder / "file");
  EXPECT_EQ(probeRoot(folder / "file"), RootState::refused);
}

TEST(WalkWithoutItems, listableFolder_hasToBeWalked) {
  EXPECT_EQ(walkWithoutItems(RootState::listable), nullptr);
}

TEST(WalkWithoutItems, datalessFolder_isCompleteWithoutItems) {
  const auto walk = walkWithoutItems(RootState::dataless);
  ASSERT_NE(walk, nullptr);
  EXPECT_EQ(walk->next(), nullptr);
  EXPECT_TRUE(walk->isComplete());
}

TEST(WalkWithoutItems, refusedFolder_isIncompleteWithoutItems) {
  const auto walk = walkWithoutItems(RootState::refused);
  ASSERT_NE(walk, nullptr);
  EXPECT_EQ(walk->next(), nullptr);
  EXPECT_FALSE(walk->isComplete());
}

TEST(ProbedFolder, dataless_isAnEmptyFolderToTheScan) {
  const SyncHealthReport report = reportWhereOpening(failingWith(EDEADLK));
  EXPECT_TRUE(report.blockers.empty());
  EXPECT_EQ(report.metrics.errors, 0);
  EXPECT_EQ(report.metrics.totalFiles, 0);
  EXPECT_TRUE(report.safeToClose);
}

TEST(ProbedFolder, refused_isUnavailableToTheScan) {
  for (const int error : {EPERM, EACCES, EIO}) {
    const SyncHealthReport report = reportWhereOpening(failingWith(error));
    ASSERT_EQ(report.blockers.size(), 1U);
    EXPECT_EQ(report.blockers[0].reason, BlockerReason::unavailableFolder);
    EXPECT_EQ(report.blockers[0].details, "The folder exists but cannot be read.");
    EXPECT_EQ(report.folderHealth.at(0).status, HealthState::danger);
    EXPECT_EQ(report.metrics.errors, 1);
    EXPECT_FALSE(report.safeToClose);
  }
}

}  // namespace
}  // namespace cirrovane::test
