// What breaks a watch, and that it says so.

#include "platform/linux/watch/UntoldFileSystem.h"
#include "tests/platform/WatchedDisk.h"
#include "tests/support/ChildProcess.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;

constexpr const char* kNoMoreFolders = "The system watches no more folders (fs.inotify.max_user_watches).";

class InotifyWatchLoss : public WatchedDisk {};

bool standsAgain(const NotedFolderNews::News& told) {
  return !told.standings.empty() && !told.standings.back();
}

int numberIn(const std::string& path) {
  int number = 0;
  std::ifstream(path) >> number;
  return number;
}

TEST_F(InotifyWatchLoss, moreEventsThanTheSystemHolds_areALoss) {
  makeFolder(at("a/w"));
  writeFile(at("a/w/one"));
  writeFile(at("a/w/two"));
  std::atomic<bool> isHeld = false;
  std::atomic<bool> mayGoOn = false;
  noted_.beforeChange = [&](const auto&) {
    isHeld = true;
    isHeld.notify_all();
    mayGoOn.wait(false);
  };
  watch({at("a/w")});
  writeFile(at("a/w/first"));
  isHeld.wait(false);
  // Two files in turns: equal events that follow one another are one to the system.
  const int most = numberIn("/proc/sys/fs/inotify/max_queued_events");
  ASSERT_GT(most, 0);
  for (int count = 0; count <= most; count += 2) {
    chmod(at("a/w/one").c_str(), 0600);
    chmod(at("a/w/two").c_str(), 0600);
  }
  // What comes after that, the system tells nobody.
  renameItem(at("a"), at("elsewhere"));
  makeFolder(at("a/w/below"));
  mayGoOn = true;
  mayGoOn.notify_all();
  EXPECT_THAT(news().losses, ElementsAre("More changed at once than the system can tell."));
  walk(at("a/w"));
  EXPECT_TRUE(tellsOfFileIn("a/w/below"));
  writeFile(at("elsewhere/w/file"));
  EXPECT_THAT(changes(), IsEmpty());
  renameItem(at("a/w"), at("a/v"));
  EXPECT_THAT(changes(), ElementsAre("a/w/**"));
}

TEST_F(InotifyWatchLoss, noMoreWatches_endTheStandingUntilTheNextStart) {
  makeFolder(at("w/a/b"));
  std::atomic<int> left = 1000;
  InotifyCalls calls;
  calls.addWatch = [&](int instance, const char* path, std::uint32_t mask) {
    if (--left < 0) {
      errno = ENOSPC;
      return -1;
    }
    return inotify_add_watch(instance, path, mask);
  };
  watch({at("w")}, calls);
  makeFolder(at("w/new"));
  news();
  left = 0;
  walk(at("w/new"));
  EXPECT_TRUE(noted_.waitUntil([](const auto& told) { return !told.standings.empty(); }));
  EXPECT_THAT(news().standings,
              ElementsAre(Optional(std::string(kNoMoreFolders)), Optional(std::string(kNoMoreFolders))));
  // What can be told still is.
  writeFile(at("w/a/b/file"));
  EXPECT_THAT(texts(news().changes), ElementsAre("w/a/b file"));

  left = 1000;
  watch_->start({at("w")});
  EXPECT_TRUE(noted_.waitUntil(standsAgain));
  walk(at("w"));
  EXPECT_TRUE(tellsOfFileIn("w/new"));
}

TEST_F(InotifyWatchLoss, noMoreWatches_onTheWay_refuseTheStanding) {
  makeFolder(at("w"));
  InotifyCalls calls;
  calls.addWatch = [](int, const char*, std::uint32_t) {
    errno = ENOSPC;
    return -1;
  };
  EXPECT_THAT(watch({at("w")}, calls).standings, testing::Each(std::optional<std::string>(kNoMoreFolders)));
}

TEST_F(InotifyWatchLoss, noMoreInstances_refuseTheStandingUntilTheNextStart) {
  makeFolder(at("w"));
  bool isRefused = true;
  InotifyCalls calls;
  calls.makeInstance = [&](int flags) {
    if (isRefused) {
      errno = EMFILE;
      return -1;
    }
    return inotify_init1(flags);
  };
  EXPECT_THAT(watch({at("w")}, calls).standings.at(0),
              Optional(std::string("The system watches for no more programs (fs.inotify.max_user_instances).")));
  isRefused = false;
  watch_->start({at("w")});
  EXPECT_TRUE(noted_.waitUntil(standsAgain));
}

TEST_F(InotifyWatchLoss, folderThatVanishesFromTheSystem_isAReason) {
  makeFolder(at("w"));
  InotifyCalls calls;
  calls.addWatch = [](int, const char*, std::uint32_t) {
    errno = ENOMEM;
    return -1;
  };
  EXPECT_THAT(watch({at("w")}, calls).standings.at(0), Optional(HasSubstr("cannot be watched")));
}

TEST_F(InotifyWatchLoss, networkVolume_belowTheFolder_isAReason) {
  makeFolder(at("w"));
  InotifyCalls calls;
  calls.fileSystemStatus = [](int descriptor, struct statfs* result) {
    const int status = fstatfs(descriptor, result);
    result->f_type = 0x6969;
    return status;
  };
  EXPECT_THAT(watch({at("w")}, calls).standings.at(0),
              Optional(HasSubstr("NFS, whose changes the system does not tell")));
}

TEST(UntoldFileSystem, type_isKnownByItsNumber) {
  EXPECT_EQ(untoldFileSystem(0x6969), "NFS");
  EXPECT_EQ(untoldFileSystem(0xFF534D42), "CIFS");
  EXPECT_EQ(untoldFileSystem(static_cast<std::int32_t>(0xFF534D42)), "CIFS");
  EXPECT_EQ(untoldFileSystem(0xFE534D42), "SMB");
  EXPECT_EQ(untoldFileSystem(0x65735546), "FUSE");
  EXPECT_EQ(untoldFileSystem(0x01021997), "9P");
  EXPECT_EQ(untoldFileSystem(0xEF53), std::nullopt);      // ext4
  EXPECT_EQ(untoldFileSystem(0x9123683E), std::nullopt);  // btrfs
  EXPECT_EQ(untoldFileSystem(0x01021994), std::nullopt);  // tmpfs
}

/// Runs each test in a process of its own that may mount and has limits of its own.
class InotifyWatchInNamespace : public WatchedDisk {
 protected:
  /// Whether this is the test program itself, which has run the test in a process with such rights.
  static bool hasRunInside() {
    if (std::getenv(kIsInside) != nullptr) {
      return false;
    }
    const std::vector<std::string> ownNamespace = {"--mount", "--user", "--map-root-user"};
    std::vector<std::string> probe = ownNamespace;
    probe.emplace_back("/bin/true");
    if (runProgram("/usr/bin/unshare", probe).exitStatus != 0) {
      // Where the system gives no such rights, the calls that refuse above have to do.
      EXPECT_NE(geteuid(), 0U);
      return true;
    }
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::vector<std::string> again = ownNamespace;
    again.insert(again.end(), {std::filesystem::read_symlink("/proc/self/exe").native(),
                               std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name()});
    const ChildResult result =
        runProgram("/usr/bin/unshare", again, {.workingDirectory = {}, .environment = {{kIsInside, "1"}}});
    EXPECT_EQ(result.exitStatus, 0) << result.out << result.err;
    EXPECT_THAT(result.out, HasSubstr("[  PASSED  ] 1 test."));
    return true;
  }

 private:
  static constexpr const char* kIsInside = "CIRROVANE_TEST_IN_NAMESPACE";
};

TEST_F(InotifyWatchInNamespace, volume_mountedAndUnmountedBelow_isALossEachTime) {
  makeFolder(at("w/volume"));
  makeFolder(at("w/beside"));
  if (hasRunInside()) {
    return;
  }
  watch({at("w")});
  EXPECT_TRUE(tellsOfFileIn("w/volume"));
  ASSERT_EQ(mount("tmpfs", at("w/volume").c_str(), "tmpfs", 0, nullptr), 0);
  EXPECT_THAT(news().losses, Not(IsEmpty()));
  walk(at("w"));
  EXPECT_TRUE(tellsOfFileIn("w/volume"));
  ASSERT_EQ(umount(at("w/volume").c_str()), 0);
  EXPECT_THAT(news().losses, Not(IsEmpty()));
  walk(at("w"));
  EXPECT_TRUE(tellsOfFileIn("w/volume"));
  EXPECT_TRUE(tellsOfFileIn("w/beside"));
}

TEST_F(InotifyWatchInNamespace, watchedFolder_onAVolumeThatIsUnmounted_isALoss) {
  makeFolder(at("volume"));
  if (hasRunInside()) {
    return;
  }
  ASSERT_EQ(mount("tmpfs", at("volume").c_str(), "tmpfs", 0, nullptr), 0);
  makeFolder(at("volume/w"));
  watch({at("volume/w")});
  EXPECT_TRUE(tellsOfFileIn("volume/w"));
  ASSERT_EQ(umount(at("volume").c_str()), 0);
  EXPECT_THAT(news().losses, Not(IsEmpty()));
  makeFolder(at("volume/w"));
  EXPECT_THAT(news().changes, ElementsAre(FolderChange{at("volume/w"), {}, true}));
  walk(at("volume/w"));
  EXPECT_TRUE(tellsOfFileIn("volume/w"));
}

TEST_F(InotifyWatchInNamespace, limitOfTheSystem_isTheReason) {
  makeFolder(at("w/1/2/3/4/5/6/7/8/9"));
  if (hasRunInside()) {
    return;
  }
  std::ofstream("/proc/sys/user/max_inotify_watches") << 15;
  ASSERT_EQ(numberIn("/proc/sys/user/max_inotify_watches"), 15);
  const auto refused = watch({at("w")});
  EXPECT_EQ(refused.standings.back(), kNoMoreFolders);
  std::ofstream("/proc/sys/user/max_inotify_watches") << 1000;
  watch_->start({at("w")});
  EXPECT_TRUE(noted_.waitUntil(standsAgain));
  walk(at("w"));
  EXPECT_EQ(news().proofs, 1);
  EXPECT_TRUE(tellsOfFileIn("w/1/2/3/4/5/6/7/8/9"));
}

}  // namespace
}  // namespace cirrovane::test
