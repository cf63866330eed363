// A watched folder that exists but cannot be listed must never look empty and safe.

#include "base/FileDescriptor.h"
#include "core/ICloudScanEngine.h"
#include "platform/linux/host/HostDisk.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/linux/walk/LinuxWalk.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr const char* kDoesNotExist = "The folder path does not exist on this Mac.";
constexpr const char* kCannotBeRead = "The folder exists but cannot be read.";

/// This machine's files, walked in a way of the test's own.
class WalkedFileSystem final : public FileSystem {
 public:
  using Start = std::function<std::unique_ptr<FolderWalk>(const std::string& folder)>;

  WalkedFileSystem(const MacRoot& root, Start start) : files_(foldersOf(root), hostVolume), start_(std::move(start)) {}
  bool exists(const std::string& path) const override { return files_.exists(path); }
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override { return start_(request.folder); }
  std::unique_ptr<ItemBatch> readItems(const std::string& folder,
                                       const std::vector<std::string>& names) const override {
    return files_.readItems(folder, names);
  }
  VolumeCapacities volumeCapacities(const std::string& folder) const override {
    return files_.volumeCapacities(folder);
  }
  std::string homeDirectory() const override { return files_.homeDirectory(); }
  std::optional<std::string> applicationSupportDirectory() const override {
    return files_.applicationSupportDirectory();
  }

 private:
  LinuxFileSystem files_;
  Start start_;
};

/// A folder in iCloud Drive with clean files, which would be safe if it could be read.
class WatchedTree {
 protected:
  WatchedTree() {
    makeFile("a");
    makeFile("below/b");
  }

  void makeFile(const std::string& name, const std::string& state = "isUploaded=true") const {
    writeFile(watched_ + "/" + name);
    setICloudAttribute(watched_ + "/" + name, state);
  }
  SyncHealthReport scanWith(const WalkedFileSystem::Start& start, const std::string& path) const {
    const WalkedFileSystem fileSystem(root_, start);
    const ManualClock clock;
    return ICloudScanEngine(fileSystem, clock).scan({{UUID(), "Work", path}});
  }

  static void expectUnavailable(const SyncHealthReport& report, const std::string& path, const std::string& details) {
    ASSERT_EQ(report.blockers.size(), 1U);
    EXPECT_EQ(report.blockers[0].reason, BlockerReason::unavailableFolder);
    EXPECT_EQ(report.blockers[0].filePath, path);
    EXPECT_EQ(report.blockers[0].details, details);
    EXPECT_EQ(report.metrics.errors, 1);
    EXPECT_EQ(report.metrics.totalFiles, 0);
    ASSERT_EQ(report.folderHealth.size(), 1U);
    EXPECT_EQ(report.folderHealth[0].scannedFileCount, 0);
    EXPECT_EQ(report.folderHealth[0].blockerCount, 1);
    EXPECT_EQ(report.folderHealth[0].status, HealthState::danger);
    EXPECT_EQ(report.folderHealth[0].score, 0);
    EXPECT_FALSE(report.safeToClose);
  }
  static void expectSafe(const SyncHealthReport& report, std::int64_t fileCount) {
    EXPECT_TRUE(report.safeToClose);
    EXPECT_EQ(report.metrics.errors, 0);
    EXPECT_EQ(report.metrics.totalFiles, fileCount);
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const MacRoot root_ = *MacRoot::open(folder_.path());
  const std::string drive_ = folder_ / "Library/Mobile Documents/com~apple~CloudDocs";
  const std::string watched_ = drive_ + "/Work";
};

class WatchedFolder : public testing::TestWithParam<WalkKind>, protected WatchedTree {
 protected:
  SyncHealthReport scan(const std::string& path) const { return scanWith(GetParam().start, path); }
  SyncHealthReport scan() const { return scan(watched_); }
};

INSTANTIATE_TEST_SUITE_P(All, WatchedFolder, testing::ValuesIn(allWalkKinds()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WatchedFolder, thatCanBeRead_isSafe) {
  expectSafe(scan(), 2);
}

TEST_P(WatchedFolder, thatMayNotBeListed_isUnavailable) {
  ASSERT_EQ(chmod(watched_.c_str(), 0), 0);
  const WithoutPrivileges privileges;
  ASSERT_LT(open(watched_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
  ASSERT_EQ(errno, EACCES);
  expectUnavailable(scan(), watched_, kCannotBeRead);
}

TEST_P(WatchedFolder, thatIsAPlainFile_isUnavailable) {
  expectUnavailable(scan(watched_ + "/a"), watched_ + "/a", kCannotBeRead);
}

TEST_P(WatchedFolder, thatIsAFifo_isUnavailableAndNotWaitedFor) {
  ASSERT_EQ(mkfifo((drive_ + "/fifo").c_str(), 0600), 0);
  expectUnavailable(scan(drive_ + "/fifo"), drive_ + "/fifo", kCannotBeRead);
}

TEST_P(WatchedFolder, outsideICloudThatIsAPlainFile_isOnlyUnavailable) {
  writeFile(folder_ / "file");
  expectUnavailable(scan(folder_ / "file"), folder_ / "file", kCannotBeRead);
}

TEST_P(WatchedFolder, thatIsALinkToNothing_doesNotExist) {
  ASSERT_EQ(symlink("nowhere", (drive_ + "/link").c_str()), 0);
  expectUnavailable(scan(drive_ + "/link"), drive_ + "/link", kDoesNotExist);
}

TEST_P(WatchedFolder, thatIsALoopOfLinks_doesNotExist) {
  ASSERT_EQ(symlink("second", (drive_ + "/first").c_str()), 0);
  ASSERT_EQ(symlink("first", (drive_ + "/second").c_str()), 0);
  expectUnavailable(scan(drive_ + "/first"), drive_ + "/first", kDoesNotExist);
}

TEST_P(WatchedFolder, withoutADescriptorLeft_isUnavailable) {
  const FewDescriptors none(0);
  ASSERT_LT(open(watched_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
  ASSERT_EQ(errno, EMFILE);
  expectUnavailable(scan(), watched_, kCannotBeRead);
}

TEST_P(WatchedFolder, thatIsNotListable_isUnavailable) {
  setICloudAttribute(watched_, "isListable=false");
  expectUnavailable(scan(), watched_, kCannotBeRead);
}

TEST_P(WatchedFolder, thatIsALinkToOneThatIsNotListable_isUnavailable) {
  setICloudAttribute(watched_, "isUploaded=true\nisListable=false");
  ASSERT_EQ(symlink("Work", (drive_ + "/link").c_str()), 0);
  expectUnavailable(scan(drive_ + "/link"), drive_ + "/link", kCannotBeRead);
}

TEST_P(WatchedFolder, thatIsNotListableBehindALongAttribute_isUnavailable) {
  setICloudAttribute(watched_, "other=" + std::string(2000, 'x') + "\nisListable=false");
  expectUnavailable(scan(), watched_, kCannotBeRead);
}

TEST_P(WatchedFolder, withAnotherAttribute_isReadAsEver) {
  for (const char* attribute : {"", "isListable=true", "isListable=maybe", "isUploaded=false", "bad"}) {
    setICloudAttribute(watched_, attribute);
    expectSafe(scan(), 2);
  }
}

TEST_P(WatchedFolder, withASubfolderThatIsNotListable_passesItOver) {
  makeFile("closed/pending", "isUploaded=false");
  makeFile("closed/deep/pending", "isUploaded=false");
  EXPECT_FALSE(scan().safeToClose);
  setICloudAttribute(watched_ + "/closed", "isListable=false");
  expectSafe(scan(), 2);
  EXPECT_EQ(pathsOf(walked(GetParam(), watched_)), naiveWalk(watched_));
}

TEST_P(WatchedFolder, withASubfolderWhoseListabilityIsMalformed_countsAnErrorAndEntersIt) {
  makeFile("odd/file");
  setICloudAttribute(watched_ + "/odd", "isListable=maybe");
  const SyncHealthReport report = scan();
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.metrics.totalFiles, 3);
  EXPECT_FALSE(report.safeToClose);
}

TEST_P(WatchedFolder, withASubfolderThatMayNotBeListed_isCompleteAllTheSame) {
  makeFile("closed/pending", "isUploaded=false");
  ASSERT_EQ(chmod((watched_ + "/closed").c_str(), 0), 0);
  const WithoutPrivileges privileges;
  ASSERT_LT(open((watched_ + "/closed").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
  const auto walk = GetParam().start(watched_);
  EXPECT_THAT(namesOf(restOf(*walk)), testing::UnorderedElementsAre("a", "b", "below", "closed"));
  EXPECT_TRUE(walk->isComplete());
}

TEST_P(WatchedFolder, ofRandomTreesWithFoldersThatAreNotListable_isWalkedAsByTheNaiveWalk) {
  std::mt19937 random(7);
  std::size_t closedCount = 0;
  for (int tree = 0; tree < 15; ++tree) {
    const std::string top = fmt::format("{}/tree {}", drive_, tree);
    makeFolder(top);
    std::vector<std::string> folders = {top};
    for (int index = 0; index < 25; ++index) {
      const std::string path = fmt::format("{}/{}", folders[random() % folders.size()], index);
      if (random() % 2 == 0) {
        writeFile(path);
        continue;
      }
      makeFolder(path);
      folders.push_back(path);
    }
    for (const std::string& path : folders) {
      const bool isClosed = random() % 6 == 0;
      closedCount += isClosed ? 1U : 0U;
      if (isClosed || random() % 2 == 0) {
        setICloudAttribute(path, isClosed ? "isUploaded=true\nisListable=false\n" : "isListable=true");
      }
    }
    const auto walk = GetParam().start(top);
    EXPECT_EQ(pathsOf(restOf(*walk)), naiveWalk(top)) << tree;
  }
  EXPECT_GT(closedCount, 10U);
}

/// A walk on a disk whose lists of names this call reads.
struct FailingDisk {
  const char* name;
  WalkOptions options;
};

class WatchedFolderOnAFailingDisk : public testing::TestWithParam<FailingDisk>, protected WatchedTree {
 protected:
  WalkedFileSystem::Start listingBy(ListingCall list) const {
    WalkOptions options = GetParam().options;
    options.list = std::move(list);
    return [options](const std::string& folder) { return startLinuxWalk(WalkRequest{folder}, options); };
  }
  SyncHealthReport scanListingBy(ListingCall list) const { return scanWith(listingBy(std::move(list)), watched_); }

  static bool isFolder(int descriptor, const std::string& path) {
    struct stat lhs {};
    struct stat rhs {};
    return fstat(descriptor, &lhs) == 0 && stat(path.c_str(), &rhs) == 0 && lhs.st_ino == rhs.st_ino;
  }
  static ssize_t failWith(int error) {
    errno = error;
    return -1;
  }
};

INSTANTIATE_TEST_SUITE_P(All, WatchedFolderOnAFailingDisk,
                         testing::Values(FailingDisk{"onTwoThreads", {}},
                                         FailingDisk{"onCallersThread", {.threadCount = 0}},
                                         FailingDisk{"onManyThreads", {.threadCount = 8}},
                                         FailingDisk{"withoutWorkingDirectory", {.usesWorkingDirectory = false}}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WatchedFolderOnAFailingDisk, whoseListingFailsAtOnce_isUnavailable) {
  for (const int error : {EIO, ENOENT, ENOTDIR, EBADF, EINVAL, ENOMEM, EACCES}) {
    expectUnavailable(
        scanListingBy([&](int /*folder*/, void* /*target*/, std::size_t /*size*/) { return failWith(error); }),
        watched_, kCannotBeRead);
  }
}

TEST_P(WatchedFolderOnAFailingDisk, whoseListingBreaksOffWithinTheFirstBatch_isReportedAsFarAsItWasSeen) {
  makeFile("pending", "isUploaded=false");
  std::atomic<int> calls = 0;
  const SyncHealthReport report = scanListingBy([&](int folder, void* target, std::size_t size) {
    if (!isFolder(folder, watched_)) {
      return getdents64(folder, target, size);
    }
    return calls++ == 0 ? getdents64(folder, target, size) : failWith(EIO);
  });
  EXPECT_EQ(calls, 2);
  ASSERT_EQ(report.blockers.size(), 2U);
  EXPECT_EQ(report.blockers[0].reason, BlockerReason::unavailableFolder);
  EXPECT_EQ(report.blockers[0].filePath, watched_);
  EXPECT_EQ(report.blockers[0].details, kCannotBeRead);
  EXPECT_EQ(report.blockers[1].reason, BlockerReason::notUploaded);
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.metrics.totalFiles, 3) << "what the folders below hold is seen all the same";
  EXPECT_EQ(report.folderHealth.at(0).scannedFileCount, 3);
  EXPECT_EQ(report.folderHealth.at(0).blockerCount, 2);
  EXPECT_EQ(report.folderHealth.at(0).score, 66);
  EXPECT_FALSE(report.safeToClose);
}

TEST_P(WatchedFolderOnAFailingDisk, whoseListingBreaksOffAfterSomeBatches_isReportedAsFarAsItWasSeen) {
  constexpr int kFiles = 6000;
  for (int index = 0; index < kFiles; ++index) {
    writeFile(fmt::format("{}/{:x>60}", watched_, index));
  }
  const std::size_t everything = naiveWalk(watched_).size();
  std::atomic<std::size_t> told = 0;
  const WalkedFileSystem::Start start = listingBy([&](int folder, void* target, std::size_t size) {
    if (!isFolder(folder, watched_)) {
      return getdents64(folder, target, size);
    }
    // More than two batches' worth.
    constexpr std::size_t kEnough = std::size_t{160} * 1024;
    if (told > kEnough) {
      return failWith(EIO);
    }
    const ssize_t length = getdents64(folder, target, size);
    told += static_cast<std::size_t>(length);
    return length;
  });

  const auto walk = start(watched_);
  std::size_t batchCount = 0;
  std::size_t itemCount = 0;
  while (const ItemBatch* batch = walk->next()) {
    ++batchCount;
    itemCount += batch->items().size();
  }
  EXPECT_FALSE(walk->isComplete());
  EXPECT_GE(batchCount, 3U);
  EXPECT_LT(itemCount, everything);

  told = 0;
  const SyncHealthReport report = scanWith(start, watched_);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].reason, BlockerReason::unavailableFolder);
  EXPECT_EQ(report.blockers[0].details, kCannotBeRead);
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_GT(report.metrics.totalFiles, 1000);
  EXPECT_LT(report.metrics.totalFiles, kFiles);
  EXPECT_EQ(report.folderHealth.at(0).scannedFileCount, report.metrics.totalFiles);
  EXPECT_EQ(report.folderHealth.at(0).score, 76);
  EXPECT_FALSE(report.safeToClose);
}

TEST_P(WatchedFolderOnAFailingDisk, whoseSubfolderBreaksOff_isComplete) {
  expectSafe(scanListingBy([&](int folder, void* target, std::size_t size) {
               return isFolder(folder, watched_) ? getdents64(folder, target, size) : failWith(EIO);
             }),
             1);
}

TEST_P(WatchedFolderOnAFailingDisk, whoseListingIsInterrupted_isReadToItsEnd) {
  std::atomic<int> calls = 0;
  expectSafe(scanListingBy([&](int folder, void* target, std::size_t size) {
               return calls++ % 2 == 0 ? failWith(EINTR) : getdents64(folder, target, size);
             }),
             2);
}

TEST_P(WatchedFolderOnAFailingDisk, whoseNextNameNeedsMoreSpace_isReadToItsEnd) {
  // What the system says where a name does not fit behind those that were read before it.
  std::atomic<int> refusals = 0;
  expectSafe(scanListingBy([&](int folder, void* target, std::size_t size) {
               constexpr std::size_t kWholeBatch = std::size_t{64} * 1024;
               if (size < kWholeBatch) {
                 ++refusals;
                 return failWith(EINVAL);
               }
               return getdents64(folder, target, size);
             }),
             2);
  EXPECT_GT(refusals, 0);
}

}  // namespace
}  // namespace cirrovane::test
