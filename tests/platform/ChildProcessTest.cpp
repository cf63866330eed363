#include "base/FileDescriptor.h"
#include "platform/posix/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <optional>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::size_t kTenMegabytes = 10'000'000;

std::optional<CommandResult> collect(const std::string& executable, const std::vector<std::string>& arguments = {}) {
  return runChild(executable, arguments, CommandOutput::collected);
}

std::optional<CommandResult> collectFromShell(const std::string& script) {
  return collect("/bin/sh", {"-c", script});
}

std::string outputOf(const std::string& script) {
  const auto result = collectFromShell(script);
  return result && result->hasSucceeded() ? result->output : "(failed)";
}

bool hasChildren() {
  return waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

class ChildProcessTest : public testing::Test {
 protected:
  std::string makeExecutable(const std::string& name, const std::string& content) const {
    const std::string path = folder_ / name;
    writeFile(path, content);
    chmod(path.c_str(), 0755);
    return path;
  }
  void TearDown() override { EXPECT_FALSE(hasChildren()) << "a zombie was left"; }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

TEST_F(ChildProcessTest, output_onBothStreams_comesInTheOrderOfPrinting) {
  EXPECT_EQ(outputOf("echo one; echo two >&2; echo three"), "one\ntwo\nthree\n");
}

TEST_F(ChildProcessTest, output_onStandardErrorAlone_isOutput) {
  EXPECT_EQ(outputOf("echo text >&2"), "text\n");
}

TEST_F(ChildProcessTest, output_none_isAnEmptyText) {
  const auto result = collectFromShell("exit 0");
  ASSERT_TRUE(result);
  EXPECT_TRUE(result->hasSucceeded());
  EXPECT_EQ(result->output, "");
}

TEST_F(ChildProcessTest, output_withAnyBytes_isHandedBackAsItIs) {
  EXPECT_EQ(outputOf("printf 'a\\000b\\377c'"), std::string("a\0b\377c", 5));
}

TEST_F(ChildProcessTest, output_ofTenMegabytes_isWhole) {
  const std::string text = outputOf("head -c 10000000 /dev/zero");
  EXPECT_EQ(text.size(), kTenMegabytes);
}

TEST_F(ChildProcessTest, output_ofTenMegabytesThatNobodyReads_doesNotHoldTheChildUp) {
  const auto result = runChild("/bin/sh", {"-c", "head -c 10000000 /dev/zero; head -c 10000000 /dev/zero >&2"},
                               CommandOutput::discarded);
  ASSERT_TRUE(result);
  EXPECT_TRUE(result->hasSucceeded());
  EXPECT_THAT(result->output, IsEmpty());
}

TEST_F(ChildProcessTest, output_beyondAllReason_isNone) {
  EXPECT_FALSE(collectFromShell("head -c 70000000 /dev/zero"));
}

TEST_F(ChildProcessTest, exitStatus_otherThanZero_isNoSuccess) {
  const auto result = collectFromShell("echo text; exit 3");
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, 3);
  EXPECT_FALSE(result->hasSucceeded());
}

TEST_F(ChildProcessTest, exitStatus_whenNobodyReadsTheOutput_isTold) {
  const auto result = runChild("/bin/sh", {"-c", "exit 1"}, CommandOutput::discarded);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, 1);
}

TEST_F(ChildProcessTest, deathBySignal_isNoSuccess) {
  const auto result = collectFromShell("echo text; kill -9 $$");
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, std::nullopt);
  EXPECT_FALSE(result->hasSucceeded());
}

TEST_F(ChildProcessTest, launch_ofNothing_fails) {
  EXPECT_FALSE(collect(folder_ / "missing"));
  EXPECT_FALSE(runChild(folder_ / "missing", {}, CommandOutput::discarded));
}

TEST_F(ChildProcessTest, launch_ofAFolder_fails) {
  EXPECT_FALSE(collect(folder_.path()));
}

TEST_F(ChildProcessTest, launch_ofAFileThatIsNotExecutable_fails) {
  writeFile(folder_ / "text", "#!/bin/sh\necho text\n");
  EXPECT_FALSE(collect(folder_ / "text"));
}

TEST_F(ChildProcessTest, launch_ofAProgramForNoMachine_fails) {
  EXPECT_FALSE(collect(makeExecutable("broken",
                                      "\x7f"
                                      "ELF and no more")));
}

TEST_F(ChildProcessTest, launch_ofAScriptWhoseInterpreterIsMissing_fails) {
  EXPECT_FALSE(collect(makeExecutable("script", "#!/no/such/interpreter\n")));
}

TEST_F(ChildProcessTest, launch_withANulInTheNameOrAnArgument_fails) {
  EXPECT_FALSE(collect(std::string("/bin/echo\0", 10)));
  EXPECT_FALSE(collect("/bin/echo", {std::string("a\0b", 3)}));
}

TEST_F(ChildProcessTest, launch_withoutADescriptorLeft_fails) {
  rlimit old{};
  getrlimit(RLIMIT_NOFILE, &old);
  const int lowest = dup(0);
  close(lowest);
  const rlimit none{static_cast<rlim_t>(lowest), old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const auto result = collect("/bin/true");
  setrlimit(RLIMIT_NOFILE, &old);
  EXPECT_FALSE(result);
}

TEST_F(ChildProcessTest, arguments_withBlanksAndQuotes_arriveAsTheyAre) {
  const auto result = collect("/usr/bin/printf", {"[%s]", "a b", "", "$HOME", "'\"", "*"});
  ASSERT_TRUE(result);
  EXPECT_EQ(result->output, "[a b][][$HOME]['\"][*]");
}

TEST_F(ChildProcessTest, standardInput_isEmpty) {
  EXPECT_EQ(outputOf("cat; echo end"), "end\n");
}

TEST_F(ChildProcessTest, descriptors_ofOurs_areNotInherited) {
  const int open = ::open("/dev/null", O_RDONLY);
  const int high = fcntl(open, F_DUPFD, 200);
  const std::string seen = outputOf("for d in $(seq 0 255); do [ -e /dev/fd/$d ] && echo $d; done; true");
  close(open);
  close(high);
  EXPECT_EQ(seen, "0\n1\n2\n");
}

TEST_F(ChildProcessTest, ownStandardStreams_closed_disturbNothing) {
  const pid_t tester = fork();
  if (tester == 0) {
    close(0);
    close(1);
    close(2);
    const auto result = collectFromShell("echo one; echo two >&2; cat");
    _exit(result && result->hasSucceeded() && result->output == "one\ntwo\n" ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(tester, &status, 0), tester);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST_F(ChildProcessTest, environment_ownByDefault_isUntouched) {
  setenv("CIRROVANE_TEST_VARIABLE", "a value", 1);
  EXPECT_EQ(outputOf("printf %s \"$CIRROVANE_TEST_VARIABLE\""), "a value");
  unsetenv("CIRROVANE_TEST_VARIABLE");
}

TEST_F(ChildProcessTest, environment_given_isTheWholeOne) {
  const auto result = runChild("/usr/bin/env", {}, CommandOutput::collected, Environment{"ONE=1", "TWO=a b"});
  ASSERT_TRUE(result);
  EXPECT_EQ(result->output, "ONE=1\nTWO=a b\n");
}

TEST_F(ChildProcessTest, workingDirectory_isOurs) {
  EXPECT_EQ(outputOf("pwd -P"), std::filesystem::current_path().string() + "\n");
}

TEST_F(ChildProcessTest, brokenPipes_ignoredByUs_endAChildAsUsual) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  const std::string text = outputOf("(yes; echo survived $? >&2) | head -n 1");
  std::signal(SIGPIPE, before);
  EXPECT_THAT(text, HasSubstr("survived 141"));
}

TEST_F(ChildProcessTest, signals_blockedByUs_reachAChild) {
  sigset_t terminate;
  sigemptyset(&terminate);
  sigaddset(&terminate, SIGTERM);
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &terminate, &before);
  const auto result = collectFromShell("kill -TERM $$; echo survived");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->output, "");
}

TEST_F(ChildProcessTest, signalsForUs_whileAChildRuns_disturbNothing) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  struct sigaction before {};
  sigaction(SIGUSR1, &action, &before);
  std::atomic<bool> isOver = false;
  const pthread_t self = pthread_self();
  std::thread nuisance([&] {
    while (!isOver) {
      pthread_kill(self, SIGUSR1);
      std::this_thread::yield();
    }
  });
  const std::string text = outputOf("echo one; sleep 0.1; echo two");
  isOver = true;
  nuisance.join();
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_EQ(text, "one\ntwo\n");
}

TEST_F(ChildProcessTest, children_onSeveralThreads_doNotHoldEachOtherUp) {
  std::atomic<int> good = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < 10; ++round) {
        const std::string text = std::to_string(number * 100 + round);
        const auto result = collect("/bin/echo", {text});
        good += result && result->output == text + "\n" ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(good, 80);
}

TEST_F(ChildProcessTest, child_whoseHelperOutlivesIt_isNotWaitedForWhenNobodyReads) {
  const auto result =
      runChild("/bin/sh", {"-c", "sleep 60 & echo $! > " + (folder_ / "pid")}, CommandOutput::discarded);
  ASSERT_TRUE(result);
  EXPECT_TRUE(result->hasSucceeded());
  const pid_t helper = std::stoi(readFile(folder_ / "pid"));
  EXPECT_EQ(kill(helper, 0), 0) << "the helper still runs";
  kill(helper, SIGKILL);
}

TEST_F(ChildProcessTest, child_withoutALimit_staysInOurGroup) {
  EXPECT_EQ(outputOf("exec perl -e 'print getpgrp()'"), std::to_string(getpgrp()));
}

/// Children within a limit.
class LimitedChildTest : public ChildProcessTest {
 protected:
  static constexpr milliseconds kShort{50};
  /// Longer than any test takes.
  static constexpr std::chrono::minutes kLong{10};

  LimitedChildTest() { mkfifo(sign().c_str(), 0600); }

  /// A path that a script opens for writing, and so shows whether it or a child of its own lives.
  std::string sign() const { return folder_ / "sign"; }

  static std::optional<CommandResult> runShell(const std::string& script, milliseconds limit,
                                               CommandOutput output = CommandOutput::collected) {
    return runChild("/bin/sh", {"-c", script}, output, std::nullopt, limit);
  }
  /// What expects a script to be ended by its limit.
  static void expectOutOfTime(const std::optional<CommandResult>& result) {
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->isOutOfTime);
    EXPECT_EQ(result->exitStatus, std::nullopt);
    EXPECT_EQ(result->output, "");
    EXPECT_FALSE(result->hasSucceeded());
  }
  /// Shell text that starts a program in a session of its own and waits until it is there.
  std::string startStranger() const {
    return "perl -MPOSIX=setsid -e 'setsid(); open(F, q{>}, shift); close F; exec @ARGV' " + (folder_ / "ready") +
           " sleep 600 & echo $! > " + (folder_ / "pid") + "; while [ ! -e " + (folder_ / "ready") +
           " ]; do sleep 0.01; done; ";
  }
  /// Whether the stranger lives; ends it.
  bool killStranger() const { return kill(std::stoi(readFile(folder_ / "pid")), SIGKILL) == 0; }

  /// Opens the sign for reading, before anybody writes.
  FileDescriptor openSign() const { return FileDescriptor(open(sign().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)); }
  /// Whether everybody who could write is gone, or goes soon.
  static bool isClosedSoon(const FileDescriptor& sign) {
    pollfd awaited{sign.get(), POLLIN, 0};
    return poll(&awaited, 1, 10'000) == 1 && (awaited.revents & POLLHUP) != 0;
  }

  /// Runs a script that is to write to the sign, given more and more time until it comes to that, and ended each time.
  void expectOutOfTimeOnceSeen(const std::string& script) const {
    const FileDescriptor watched = openSign();
    char letter = 0;
    for (milliseconds limit = kShort; read(watched.get(), &letter, 1) != 1; limit *= 2) {
      expectOutOfTime(runShell("exec 3>" + sign() + "; " + script, limit));
    }
    EXPECT_EQ(letter, 'x');
    EXPECT_TRUE(isClosedSoon(watched));
  }

  /// The status of a process of its own that does this, and meanwhile does what `meanwhile` says to it.
  template <class Work, class Meanwhile>
  static int statusOfProcess(const Work& work, const Meanwhile& meanwhile) {
    const pid_t process = fork();
    if (process == 0) {
      _exit(work());
    }
    meanwhile(process);
    int status = 0;
    waitpid(process, &status, 0);
    return status;
  }
  template <class Work>
  static int statusOfProcess(const Work& work) {
    return statusOfProcess(work, [](pid_t) {});
  }
};

TEST_F(LimitedChildTest, child_inTime_isAsWithoutALimit) {
  const auto result = runShell("echo one; echo two >&2; exit 3", kLong);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->output, "one\ntwo\n");
  EXPECT_EQ(result->exitStatus, 3);
  EXPECT_FALSE(result->isOutOfTime);
  EXPECT_EQ(runShell("kill -9 $$", kLong)->exitStatus, std::nullopt);
  EXPECT_EQ(runShell("head -c 10000000 /dev/zero", kLong)->output.size(), kTenMegabytes);
  EXPECT_FALSE(runShell("head -c 70000000 /dev/zero", kLong)) << "too much";
}

TEST_F(LimitedChildTest, child_inTimeWhoseOutputNobodyReads_isTakenByItsStatus) {
  const auto result = runShell("head -c 10000000 /dev/zero; exit 1", kLong, CommandOutput::discarded);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, 1);
  EXPECT_FALSE(result->isOutOfTime);
}

TEST_F(LimitedChildTest, child_leadsAGroupOfItsOwn) {
  EXPECT_EQ(runShell("exec perl -e 'print getpgrp() == $$'", kLong)->output, "1");
}

TEST_F(LimitedChildTest, launch_ofNothing_isNotOutOfTime) {
  EXPECT_FALSE(runChild(folder_ / "missing", {}, CommandOutput::collected, std::nullopt, kLong));
  EXPECT_FALSE(runChild(folder_ / "missing", {}, CommandOutput::discarded, std::nullopt, kLong));
}

TEST_F(LimitedChildTest, child_thatHangs_isEndedAtItsLimit) {
  for (const CommandOutput output : {CommandOutput::collected, CommandOutput::discarded}) {
    const auto start = std::chrono::steady_clock::now();
    expectOutOfTime(runShell("echo text; sleep 600", kShort, output));
    EXPECT_GE(std::chrono::steady_clock::now() - start, kShort);
  }
}

TEST_F(LimitedChildTest, child_thatHangsWithOthersInItsGroup_takesThemAllAlong) {
  expectOutOfTimeOnceSeen("sleep 600 & sleep 600 & (sleep 600; true) & printf x >&3; wait");
}

TEST_F(LimitedChildTest, child_thatIgnoresEverySignalThatItCan_isEndedAtItsLimit) {
  expectOutOfTimeOnceSeen("trap '' TERM INT HUP QUIT; printf x >&3; while :; do sleep 600; done");
}

TEST_F(LimitedChildTest, child_thatIsStopped_isEndedAtItsLimit) {
  expectOutOfTime(runShell("kill -STOP $$", kShort));
}

TEST_F(LimitedChildTest, child_thatClosesItsOutputAndHangs_isEndedAtItsLimit) {
  expectOutOfTime(runShell("exec >&- 2>&-; sleep 600", kShort));
}

TEST_F(LimitedChildTest, child_thatPrintsForEver_isEndedAtItsLimit) {
  expectOutOfTime(runChild("/usr/bin/yes", {}, CommandOutput::collected, std::nullopt, kShort));
  expectOutOfTime(runChild("/usr/bin/yes", {}, CommandOutput::discarded, std::nullopt, kShort));
}

TEST_F(LimitedChildTest, child_thatHangsBesideAStrangerWithItsPipe_isNotWaitedFor) {
  for (milliseconds limit = kShort; !std::filesystem::exists(folder_ / "ready"); limit *= 2) {
    expectOutOfTime(runShell(startStranger() + "sleep 600", limit));
  }
  EXPECT_TRUE(killStranger()) << "who left the group is left alone";
}

TEST_F(LimitedChildTest, child_thatEndsBeforeAStrangerWithItsPipe_isTakenAtItsWord) {
  const auto result = runShell("echo one; " + startStranger() + "echo two; exit 4", kLong);
  EXPECT_TRUE(killStranger());
  ASSERT_TRUE(result);
  EXPECT_EQ(result->output, "one\ntwo\n");
  EXPECT_EQ(result->exitStatus, 4);
}

TEST_F(LimitedChildTest, child_thatEndsBeforeAHelperThatPrintsForEver_isTakenAtItsWord) {
  const auto result = runShell("echo text; yes & echo $! > " + (folder_ / "pid"), kLong);
  killStranger();
  ASSERT_TRUE(result);
  EXPECT_THAT(result->output, HasSubstr("text\n"));
  EXPECT_EQ(result->exitStatus, 0);
}

TEST_F(LimitedChildTest, descriptors_ofOurs_areNotInherited) {
  const int high = fcntl(0, F_DUPFD, 200);
  EXPECT_EQ(runShell("for d in $(seq 0 255); do [ -e /dev/fd/$d ] && echo $d; done; true", kLong)->output, "0\n1\n2\n");
  close(high);
}

#ifndef __APPLE__
std::size_t entriesIn(const std::string& folder) {
  return static_cast<std::size_t>(
      std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

/// What this process has of the system: threads, descriptors, and children that are not buried.
std::vector<std::size_t> ownUse() {
  std::size_t children = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::istringstream list(readFile(thread.path() / "children"));
    children += static_cast<std::size_t>(
        std::distance(std::istream_iterator<std::string>(list), std::istream_iterator<std::string>()));
  }
  return {entriesIn("/proc/self/task"), entriesIn("/proc/self/fd"), children};
}

TEST_F(LimitedChildTest, children_aThousandThatHang_leaveNothingBehind) {
  constexpr int kBatches = 10;
  constexpr int kThreads = 10;
  constexpr int kInARow = 10;
  const std::vector<std::size_t> before = ownUse();
  std::atomic<int> ended = 0;
  for (int batch = 0; batch < kBatches; ++batch) {
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
      threads.emplace_back([&] {
        for (int round = 0; round < kInARow; ++round) {
          const CommandOutput output = round % 2 == 0 ? CommandOutput::collected : CommandOutput::discarded;
          const auto result = runChild("/bin/sleep", {"600"}, output, std::nullopt, milliseconds(5));
          ended += result && result->isOutOfTime ? 1 : 0;
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    // A thread that was joined may be listed for a moment yet.
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (ownUse() != before && std::chrono::steady_clock::now() < patience) {
      std::this_thread::yield();
    }
    EXPECT_EQ(ownUse(), before) << "after batch " << batch;
  }
  EXPECT_EQ(ended, kBatches * kThreads * kInARow);
}
#endif

TEST_F(LimitedChildTest, signals_thatEndUs_endTheGroupFirst) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    FileDescriptor watched;
    const int status = statusOfProcess(
        [&] {
          endLimitedCommandsOnSignals();
          runShell("exec 3>" + sign() + "; sleep 600 & sleep 600", kLong);
          return 0;
        },
        [&](pid_t process) {
          // Comes back when the script has opened the other end.
          watched = FileDescriptor(open(sign().c_str(), O_RDONLY | O_CLOEXEC));
          kill(process, signal);
        });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal);
    EXPECT_TRUE(isClosedSoon(watched));
  }
}

TEST_F(LimitedChildTest, signals_thatAreIgnored_stayIgnored) {
  const int status = statusOfProcess([] {
    std::signal(SIGHUP, SIG_IGN);
    endLimitedCommandsOnSignals();
    raise(SIGHUP);
    return 7;
  });
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7);
}

TEST_F(LimitedChildTest, child_begunAfterTheEnd_isNotStarted) {
  const int status = statusOfProcess([] {
    endLimitedCommands();
    const bool isRefused = !runShell("true", kLong);
    return isRefused && collectFromShell("true") ? 7 : 1;
  });
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7);
}

TEST_F(ChildProcessTest, isExecutableFile_tellsProgramsFromEverythingElse) {
  writeFile(folder_ / "text", "text");
  makeFolder(folder_ / "folder");
  const std::string program = makeExecutable("program", "#!/bin/sh\n");
  std::filesystem::create_symlink(program, folder_ / "link");
  std::filesystem::create_symlink(folder_ / "missing", folder_ / "dangling");
  EXPECT_TRUE(isExecutableFile(program));
  EXPECT_TRUE(isExecutableFile(folder_ / "link"));
  EXPECT_FALSE(isExecutableFile(folder_ / "text"));
  EXPECT_FALSE(isExecutableFile(folder_ / "folder"));
  EXPECT_FALSE(isExecutableFile(folder_ / "dangling"));
  EXPECT_FALSE(isExecutableFile(folder_ / "missing"));
  EXPECT_FALSE(isExecutableFile(program + std::string("\0x", 2)));
}

}  // namespace
}  // namespace cirrovane::test
