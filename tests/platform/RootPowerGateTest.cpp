#include "platform/Machine.h"
#include "tests/cli/Watching.h"
#include "tests/support/NotedPower.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::HasSubstr;

class RootPowerGateTest : public testing::Test {
 protected:
  void SetUp() override {
    writeFile(folder_ / "machine.json", "{}");
    ASSERT_EQ(mkfifo((folder_ / "said").c_str(), 0600), 0);
  }

  /// A command of the Mac's that notes how it is called.
  void addCommand(const std::string& path, const std::string& script = "") const {
    writeFile(folder_.path() + path,
              "#!/bin/sh\nroot=" + folder_.path() + "\necho \"$0 $*\" >>$root/calls\n" + script + "\n");
    chmod((folder_.path() + path).c_str(), 0755);
  }
  std::string calls() const { return readFile(folder_ / "calls"); }
  std::unique_ptr<PowerGate> gate() { return makeMachine(folder_.path())->makePowerGate(news_); }
  std::string failureOf(PowerAct act) {
    const auto failure = gate()->perform(act);
    return failure ? failure->message : "";
  }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  NotedPower news_;
};

TEST_F(RootPowerGateTest, start_standsNotSinceSuchAMacTellsNothing) {
  const auto gate = this->gate();
  gate->start();
  EXPECT_THAT(news_.next(), HasSubstr("against: "));
  gate->letGo();
}

TEST_F(RootPowerGateTest, sleep_isTheRootsOwnCommandAndCalledOnce) {
  addCommand("/usr/bin/pmset");
  EXPECT_EQ(gate()->perform(PowerAct::sleep), std::nullopt);
  EXPECT_EQ(calls(), folder_ / "usr/bin/pmset sleepnow\n");
}

TEST_F(RootPowerGateTest, shutdown_isTheRootsOwnCommandAndCalledOnce) {
  addCommand("/sbin/shutdown");
  EXPECT_EQ(gate()->perform(PowerAct::shutdown), std::nullopt);
  EXPECT_EQ(calls(), folder_ / "sbin/shutdown -h now\n");
}

TEST_F(RootPowerGateTest, command_missing_isADenial) {
  EXPECT_EQ(failureOf(PowerAct::sleep), "This Mac has no /usr/bin/pmset.");
  EXPECT_EQ(failureOf(PowerAct::shutdown), "This Mac has no /sbin/shutdown.");
  const auto hold = gate()->keepAwake("Uploading");
  ASSERT_FALSE(hold);
  EXPECT_EQ(hold.message(), "This Mac has no /usr/bin/caffeinate.");
}

TEST_F(RootPowerGateTest, command_thatFails_isADenialInItsWords) {
  addCommand("/usr/bin/pmset", "echo 'Not privileged.' >&2; exit 77");
  addCommand("/usr/bin/caffeinate", "exit 1");
  EXPECT_EQ(failureOf(PowerAct::sleep), "/usr/bin/pmset refuses it: Not privileged.");
  const auto hold = gate()->keepAwake("Uploading");
  ASSERT_FALSE(hold);
  EXPECT_EQ(hold.message(), "/usr/bin/caffeinate refuses it.");
}

TEST_F(RootPowerGateTest, command_linkedOutOfTheRoot_isNotTheMachines) {
  // Tells if it is called after all.
  const TemporaryFolder machine(CIRROVANE_TEST_DIR);
  writeFile(machine / "shutdown", "#!/bin/sh\ntouch " + machine / "called\n");
  chmod((machine / "shutdown").c_str(), 0755);
  makeFolder(folder_ / "usr/bin");
  std::filesystem::create_symlink(machine.path(), folder_ / "sbin");
  std::filesystem::create_symlink(machine / "shutdown", folder_ / "usr/bin/caffeinate");
  EXPECT_EQ(failureOf(PowerAct::shutdown), "This Mac's /sbin/shutdown leads to the machine itself.");
  EXPECT_FALSE(gate()->keepAwake("Uploading"));
  EXPECT_FALSE(std::filesystem::exists(machine / "called"));
}

TEST_F(RootPowerGateTest, keepAwake_isTheRootsOwnCommandUntilTheHoldEnds) {
  // It has the fifo open for as long as it runs, a child of its own among it.
  addCommand("/usr/bin/caffeinate", "exec >$root/said\necho awake\nsleep 1000");
  auto hold = gate()->keepAwake("Uploading");
  ASSERT_TRUE(hold);
  Watching caffeinate("/bin/cat", {folder_ / "said"});
  EXPECT_EQ(caffeinate.nextText(), "awake");
  EXPECT_EQ(calls(), folder_ / "usr/bin/caffeinate -i -w " + std::to_string(getpid()) + "\n");
  hold->reset();
  EXPECT_EQ(caffeinate.exitStatus(), 0);
}

TEST_F(RootPowerGateTest, program_killed_keepsNothingAwake) {
  // As a Mac's own it waits for the end of the process that it is told.
  addCommand("/usr/bin/caffeinate",
             "exec >$root/said\necho awake\nwhile kill -0 $3 2>/dev/null; do /bin/sleep 0.05; done");
  Watching probe(CIRROVANE_BIN_DIR "/power_gate_probe", {folder_.path()});
  Watching caffeinate("/bin/cat", {folder_ / "said"});
  EXPECT_EQ(caffeinate.nextText(), "awake");
  EXPECT_EQ(probe.nextText(), "held");
  probe.signal(SIGKILL);
  EXPECT_EQ(probe.exitStatus(), std::nullopt);
  EXPECT_EQ(caffeinate.exitStatus(), 0);
}

TEST_F(RootPowerGateTest, machineFolders_haveAGateOfTheirOwnKind) {
  std::filesystem::remove(folder_ / "machine.json");
  addCommand("/usr/bin/pmset");
  EXPECT_EQ(gate()->perform(PowerAct::sleep), std::nullopt);
  EXPECT_EQ(calls(), folder_ / "usr/bin/pmset sleepnow\n");
}

}  // namespace
}  // namespace cirrovane::test
