#include "platform/posix/DurableWriter.h"
#include "platform/posix/PosixFileStorage.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

const std::string kOldText = "the old document\n";
const std::string kNewText = std::string(200'000, 'n') + "\n";

bool produceNew(const ByteSink& sink) {
  return sink(kNewText.substr(0, 70'000)) && sink(kNewText.substr(70'000));
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  return names;
}

mode_t modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777U;
}

enum class Call { openFolder, openFile, status, lock, duplicate, write, syncFile, close, rename, syncFolder };

std::string nameOf(Call call) {
  static const std::vector<std::string> kNames = {"openFolder", "openFile", "status", "lock",   "duplicate",
                                                  "write",      "syncFile", "close",  "rename", "syncFolder"};
  return kNames.at(static_cast<std::size_t>(call));
}

/// Real calls, of which one kind fails: at its first use, or at every one.
class FailingCalls final : public FileCalls {
 public:
  FailingCalls(Call failing, int error, bool forGood) : failing_(failing), error_(error), forGood_(forGood) {}

  int failureCount() const { return failureCount_; }

  int openAt(int folder, const char* name, int flags, mode_t mode) const override {
    const Call call = (flags & O_CREAT) != 0 ? Call::openFile : Call::openFolder;
    return fails(call) ? -1 : FileCalls::openAt(folder, name, flags, mode);
  }
  int status(int file, struct stat* result) const override {
    return fails(Call::status) ? -1 : FileCalls::status(file, result);
  }
  int lock(int file) const override { return fails(Call::lock) ? -1 : FileCalls::lock(file); }
  int duplicate(int file) const override { return fails(Call::duplicate) ? -1 : FileCalls::duplicate(file); }
  ssize_t write(int file, const void* bytes, std::size_t count) const override {
    return fails(Call::write) ? -1 : FileCalls::write(file, bytes, count);
  }
  int sync(int file) const override {
    struct stat status {};
    FileCalls::status(file, &status);
    return fails(S_ISDIR(status.st_mode) ? Call::syncFolder : Call::syncFile) ? -1 : FileCalls::sync(file);
  }
  int close(int file) const override {
    const int result = FileCalls::close(file);
    return fails(Call::close) ? -1 : result;
  }
  int renameAt(int folder, const char* from, const char* to) const override {
    return fails(Call::rename) ? -1 : FileCalls::renameAt(folder, from, to);
  }

 private:
  bool fails(Call call) const {
    if (call != failing_ || (!forGood_ && failureCount_ > 0)) {
      return false;
    }
    ++failureCount_;
    errno = error_;
    return true;
  }

  Call failing_;
  int error_;
  bool forGood_;
  mutable int failureCount_ = 0;
};

class DurableWriter : public testing::Test {
 protected:
  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  std::string path_ = folder_ / "document.json";
  FileCalls calls_;
};

TEST_F(DurableWriter, newFile_holdsWhatWasProduced) {
  EXPECT_EQ(writeDurably(calls_, path_, FileAccess::privateToUser, produceNew), std::nullopt);
  EXPECT_EQ(readFile(path_), kNewText);
  EXPECT_EQ(namesIn(folder_.path()), std::vector<std::string>{"document.json"});
}

TEST_F(DurableWriter, existingFile_isReplaced) {
  writeFile(path_, kOldText);
  EXPECT_EQ(writeDurably(calls_, path_, FileAccess::asUsual, produceNew), std::nullopt);
  EXPECT_EQ(readFile(path_), kNewText);
}

TEST_F(DurableWriter, privateFile_isTheUsersAloneFromBirth) {
  const mode_t before = umask(0);
  mode_t modeAtBirth = 0;
  const auto produce = [&](const ByteSink& sink) {
    for (const std::string& name : namesIn(folder_.path())) {
      modeAtBirth = modeOf(folder_ / name);
    }
    return sink("x");
  };
  EXPECT_EQ(writeDurably(calls_, path_, FileAccess::privateToUser, produce), std::nullopt);
  umask(before);
  EXPECT_EQ(modeAtBirth, 0600U);
  EXPECT_EQ(modeOf(path_), 0600U);
}

TEST_F(DurableWriter, usualFile_hasTheModeOfTheUsersMask) {
  const mode_t before = umask(027);
  EXPECT_EQ(writeDurably(calls_, path_, FileAccess::asUsual, produceNew), std::nullopt);
  umask(before);
  EXPECT_EQ(modeOf(path_), 0640U);
}

TEST_F(DurableWriter, producerThatGivesUp_leavesTheOldFile) {
  writeFile(path_, kOldText);
  const auto failure = writeDurably(calls_, path_, FileAccess::asUsual, [](const ByteSink& sink) {
    sink("half a docu");
    return false;
  });
  EXPECT_TRUE(failure.has_value());
  EXPECT_EQ(readFile(path_), kOldText);
  EXPECT_EQ(namesIn(folder_.path()).size(), 1U);
}

TEST_F(DurableWriter, everyCallFailingOnceOrForGood_leavesOneWholeFileAndNoOther) {
  for (int index = 0; index <= static_cast<int>(Call::syncFolder); ++index) {
    for (const int error : {ENOSPC, EIO, EACCES, EROFS, EDQUOT}) {
      for (const bool forGood : {false, true}) {
        const Call call = static_cast<Call>(index);
        SCOPED_TRACE(nameOf(call) + ": " + std::strerror(error) + (forGood ? ", for good" : ", once"));
        writeFile(path_, kOldText);
        const FailingCalls calls(call, error, forGood);
        const auto failure = writeDurably(calls, path_, FileAccess::privateToUser, produceNew);
        EXPECT_GT(calls.failureCount(), 0);
        // A file system without locks is written to all the same. When the folder cannot be synced, the new file
        // already stands, and only a loss of power could take it back: that is worth a failure.
        const bool isHarmless = call == Call::lock;
        EXPECT_EQ(failure.has_value(), !isHarmless);
        EXPECT_EQ(readFile(path_), isHarmless || call == Call::syncFolder ? kNewText : kOldText);
        EXPECT_EQ(namesIn(folder_.path()), std::vector<std::string>{"document.json"});
        if (failure) {
          EXPECT_EQ(failure->message,
                    std::string("\u201Cdocument.json\u201D could not be written: ") + std::strerror(error) + ".");
        }
      }
    }
  }
}

TEST_F(DurableWriter, everyCallInterruptedOnce_writesAllTheSame) {
  for (const Call call : {Call::openFolder, Call::openFile, Call::lock, Call::write, Call::syncFile, Call::close,
                          Call::rename, Call::syncFolder}) {
    SCOPED_TRACE(nameOf(call));
    writeFile(path_, kOldText);
    const FailingCalls calls(call, EINTR, /*forGood=*/false);
    EXPECT_EQ(writeDurably(calls, path_, FileAccess::privateToUser, produceNew), std::nullopt);
    EXPECT_EQ(calls.failureCount(), 1);
    EXPECT_EQ(readFile(path_), kNewText);
    EXPECT_EQ(namesIn(folder_.path()).size(), 1U);
  }
}

class ShortWrites final : public FileCalls {
 public:
  ssize_t write(int file, const void* bytes, std::size_t count) const override {
    return FileCalls::write(file, bytes, std::min<std::size_t>(count, 1'000));
  }
};

TEST_F(DurableWriter, shortWrites_areGoneOnWith) {
  EXPECT_EQ(writeDurably(ShortWrites(), path_, FileAccess::asUsual, produceNew), std::nullopt);
  EXPECT_EQ(readFile(path_), kNewText);
}

class WritesNothing final : public FileCalls {
 public:
  ssize_t write(int, const void*, std::size_t) const override { return 0; }
};

TEST_F(DurableWriter, writesThatTakeNothing_endInAFailure) {
  writeFile(path_, kOldText);
  EXPECT_TRUE(writeDurably(WritesNothing(), path_, FileAccess::asUsual, produceNew).has_value());
  EXPECT_EQ(readFile(path_), kOldText);
}

TEST_F(DurableWriter, folderThatKnowsNoSync_isNoFailure) {
  const FailingCalls calls(Call::syncFolder, EINVAL, /*forGood=*/true);
  EXPECT_EQ(writeDurably(calls, path_, FileAccess::asUsual, produceNew), std::nullopt);
}

TEST_F(DurableWriter, missingFolder_isAFailure) {
  EXPECT_TRUE(writeDurably(calls_, folder_ / "none/document.json", FileAccess::asUsual, produceNew).has_value());
}

TEST_F(DurableWriter, folderInTheFilesPlace_isAFailureAndStays) {
  makeFolder(path_ + "/inside");
  EXPECT_TRUE(writeDurably(calls_, path_, FileAccess::asUsual, produceNew).has_value());
  EXPECT_TRUE(std::filesystem::is_directory(path_ + "/inside"));
  EXPECT_EQ(namesIn(folder_.path()).size(), 1U);
}

TEST_F(DurableWriter, fileOfADeadWriter_isRemoved) {
  writeFile(folder_ / ".cirrovane-0123456789abcdef.tmp", "left behind");
  EXPECT_EQ(writeDurably(calls_, path_, FileAccess::asUsual, produceNew), std::nullopt);
  EXPECT_EQ(namesIn(folder_.path()), std::vector<std::string>{"document.json"});
}

TEST_F(DurableWriter, fileOfALivingWriter_stays) {
  const auto outer = writeDurably(calls_, path_, FileAccess::asUsual, [&](const ByteSink& sink) {
    EXPECT_EQ(writeDurably(calls_, folder_ / "other.json", FileAccess::asUsual, produceNew), std::nullopt);
    return sink(kNewText);
  });
  EXPECT_EQ(outer, std::nullopt);
  EXPECT_EQ(readFile(path_), kNewText);
  EXPECT_EQ(readFile(folder_ / "other.json"), kNewText);
}

TEST_F(DurableWriter, otherHiddenFiles_areNotTouched) {
  writeFile(folder_ / ".cirrovane-notes.txt", "mine");
  writeFile(folder_ / "document.tmp", "mine");
  EXPECT_EQ(writeDurably(calls_, path_, FileAccess::asUsual, produceNew), std::nullopt);
  EXPECT_EQ(namesIn(folder_.path()).size(), 3U);
}

/// Puts a link where the writer wants its temporary file, the first few times.
class LinkInTheWay final : public FileCalls {
 public:
  LinkInTheWay(std::string target, int times) : target_(std::move(target)), times_(times) {}

  int openAt(int folder, const char* name, int flags, mode_t mode) const override {
    if ((flags & O_CREAT) != 0 && times_-- > 0) {
      EXPECT_EQ(symlinkat(target_.c_str(), folder, name), 0);
    }
    return FileCalls::openAt(folder, name, flags, mode);
  }

 private:
  std::string target_;
  mutable int times_;
};

TEST_F(DurableWriter, linkInTheTemporaryFilesPlace_isNeverFollowed) {
  const std::string victim = folder_ / "victim";
  writeFile(victim, "untouched");
  EXPECT_EQ(writeDurably(LinkInTheWay(victim, 3), path_, FileAccess::privateToUser, produceNew), std::nullopt);
  EXPECT_EQ(readFile(path_), kNewText);
  EXPECT_EQ(readFile(victim), "untouched");
  EXPECT_TRUE(writeDurably(LinkInTheWay(victim, 1'000), path_, FileAccess::privateToUser, produceNew).has_value());
  EXPECT_EQ(readFile(victim), "untouched");
}

/// Runs a check in a child process of its own; its exit status.
int inChild(const std::function<int()>& check) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(check());
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(DurableWriter, fileSizeLimit_leavesTheOldFile) {
  writeFile(path_, kOldText);
  EXPECT_EQ(inChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{100'000, 100'000};
              setrlimit(RLIMIT_FSIZE, &limit);
              return writeDurably(calls_, path_, FileAccess::asUsual, produceNew).has_value() ? 7 : 0;
            }),
            7);
  EXPECT_EQ(readFile(path_), kOldText);
  EXPECT_EQ(namesIn(folder_.path()).size(), 1U);
}

TEST_F(DurableWriter, diskThatIsReallyFull_leavesTheOldFile) {
  constexpr int kPassed = 7;
  constexpr int kMayNotMount = 8;
  const int result = inChild([&] {
    if (unshare(CLONE_NEWNS | (geteuid() == 0 ? 0 : CLONE_NEWUSER)) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=128k") != 0) {
      return kMayNotMount;
    }
    writeFile(path_, kOldText);
    const auto failure = writeDurably(calls_, path_, FileAccess::privateToUser, produceNew);
    const bool isWhole = failure && failure->message.find(std::strerror(ENOSPC)) != std::string::npos &&
                         readFile(path_) == kOldText && namesIn(folder_.path()).size() == 1;
    const auto small = [](const ByteSink& sink) { return sink("small enough"); };
    return isWhole && !writeDurably(calls_, path_, FileAccess::privateToUser, small) ? kPassed : 1;
  });
  // Where no file system may be mounted, the limit on file sizes above stands for the full disk.
  EXPECT_TRUE(result == kPassed || (result == kMayNotMount && geteuid() != 0)) << result;
}

TEST(PosixFileStorage, createFolders_makesOursPrivate) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const PosixFileStorage storage;
  const mode_t before = umask(022);
  EXPECT_EQ(storage.createFolders(folder / "a/b/ours", FileAccess::privateToUser), std::nullopt);
  umask(before);
  EXPECT_EQ(modeOf(folder / "a/b/ours"), 0700U);
  EXPECT_EQ(modeOf(folder / "a/b"), 0755U);
}

TEST(PosixFileStorage, createFolders_tightensOursAndLeavesOthers) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const PosixFileStorage storage;
  makeFolder(folder / "there");
  chmod((folder / "there").c_str(), 0755);
  EXPECT_EQ(storage.createFolders(folder / "there", FileAccess::asUsual), std::nullopt);
  EXPECT_EQ(modeOf(folder / "there"), 0755U);
  EXPECT_EQ(storage.createFolders(folder / "there", FileAccess::privateToUser), std::nullopt);
  EXPECT_EQ(modeOf(folder / "there"), 0700U);
}

TEST(PosixFileStorage, createFoldersOverAFile_isAFailure) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  writeFile(folder / "file");
  EXPECT_TRUE(PosixFileStorage().createFolders(folder / "file", FileAccess::asUsual).has_value());
  EXPECT_TRUE(PosixFileStorage().createFolders(folder / "file/below", FileAccess::asUsual).has_value());
}

TEST(PosixFileStorage, read_givesAllBytesUpToTheLimit) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const std::string bytes("a\0b\xff", 4);
  writeFile(folder / "file", bytes);
  const PosixFileStorage storage;
  const auto whole = storage.read(folder / "file", 4);
  ASSERT_TRUE(whole);
  EXPECT_EQ(*whole, bytes);
  EXPECT_FALSE(storage.read(folder / "file", 3));
  EXPECT_FALSE(storage.read(folder / "none", 3));
  EXPECT_FALSE(storage.read(folder.path(), 3));
}

TEST(PosixFileStorage, readOfAFIFO_failsWithoutWaiting) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(PosixFileStorage().read(folder / "pipe", 100));
}

TEST(PosixFileStorage, readOfAFileInProc_whoseSizeIsUnknown_givesItsText) {
  const auto text = PosixFileStorage().read("/proc/self/status", 1 << 20);
  ASSERT_TRUE(text);
  EXPECT_NE(text->find("Name:"), std::string::npos);
}

TEST(PosixFileStorage, rename_replacesTheTarget) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  writeFile(folder / "from", "one");
  writeFile(folder / "to", "two");
  const PosixFileStorage storage;
  EXPECT_EQ(storage.rename(folder / "from", folder / "to"), std::nullopt);
  EXPECT_EQ(readFile(folder / "to"), "one");
  EXPECT_TRUE(storage.rename(folder / "from", folder / "to").has_value());
}

}  // namespace
}  // namespace cirrovane::test
