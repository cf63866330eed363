#include "platform/Machine.h"
#include "platform/linux/host/HostDisk.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class LinuxMachine : public testing::Test {
 protected:
  void describe(const std::string& facts) const { writeFile(folder_ / "machine.json", facts); }
  Machine open() const { return std::move(*makeMachine(folder_.path())); }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

TEST_F(LinuxMachine, root_thatIsNoFolder_isRefusedByName) {
  const auto machine = makeMachine(folder_ / "missing");
  ASSERT_FALSE(machine);
  EXPECT_NE(machine.message().find(folder_ / "missing"), std::string::npos);
}

TEST_F(LinuxMachine, rootFolder_givesAMachineWithItsFilesAndAClock) {
  const auto machine = makeMachine(folder_.path());
  ASSERT_TRUE(machine);
  EXPECT_EQ(machine->fileSystem->homeDirectory(), folder_ / "Users/demo");
  const Time first = machine->clock->now();
  EXPECT_GT(first, Time(std::chrono::seconds(1'700'000'000)));
}

TEST_F(LinuxMachine, folderWithoutDescription_hasItsOwnFilesAndTheHostsFacts) {
  writeFile(folder_ / "bin/tool", "#!/bin/sh\n");
  ASSERT_EQ(chmod((folder_ / "bin/tool").c_str(), 0755), 0);
  const Machine machine = open();
  EXPECT_EQ(machine.fileSystem->applicationSupportDirectory(), folder_ / "Users/demo/Library/Application Support");
  EXPECT_TRUE(machine.commandRunner->isExecutable("/bin/tool"));
  EXPECT_FALSE(machine.commandRunner->isExecutable("/bin/sh"));
  EXPECT_EQ(machine.userDefaults->set("a", true), std::nullopt);
  EXPECT_TRUE(machine.fileSystem->exists(folder_ / "Users/demo/Library/Preferences/com.quillmere.Cirrovane.json"));
  EXPECT_GT(machine.systemInformation->physicalMemory(), 0U);
  EXPECT_EQ(machine.fileSystem->volumeCapacities(folder_.path()).total, hostVolume(folder_.path()).total);
  EXPECT_EQ(machine.bundle->location(), std::filesystem::read_symlink("/proc/self/exe"));
  EXPECT_EQ(machine.notificationAuthorization(), std::nullopt);
}

TEST_F(LinuxMachine, folderWithDescription_hasTheFactsOfThat) {
  describe(R"({"home": "/Users/other", "bundle": {"path": "/a.app"}, "volume": {"total": 7}, "physicalMemory": 9,
               "notificationAuthorization": "denied"})");
  const Machine machine = open();
  EXPECT_EQ(machine.fileSystem->homeDirectory(), folder_ / "Users/other");
  EXPECT_EQ(machine.fileSystem->volumeCapacities(folder_.path()).total, 7);
  EXPECT_EQ(machine.systemInformation->physicalMemory(), 9U);
  EXPECT_EQ(machine.bundle->location(), "/a.app");
  EXPECT_EQ(machine.notificationAuthorization(), "denied");
}

TEST_F(LinuxMachine, description_thatVanishes_leavesAMachineWithoutFacts) {
  describe(R"({"home": "/Users/other", "bundle": {"path": "/a.app"}, "volume": {"total": 7}, "physicalMemory": 9})");
  const Machine machine = open();
  std::filesystem::remove(folder_ / "machine.json");
  EXPECT_EQ(machine.fileSystem->homeDirectory(), folder_ / "Users/demo");
  EXPECT_EQ(machine.fileSystem->volumeCapacities(folder_.path()).total, std::nullopt);
  EXPECT_EQ(machine.systemInformation->physicalMemory(), 0U);
  EXPECT_EQ(machine.bundle->location(), "");
}

TEST_F(LinuxMachine, host_isThisMachineInEverything) {
  const Machine machine = std::move(*makeMachine("/"));
  EXPECT_EQ(machine.fileSystem->homeDirectory(), hostFolders().home());
  EXPECT_EQ(machine.fileSystem->applicationSupportDirectory(), hostFolders().applicationSupport());
  EXPECT_TRUE(machine.commandRunner->isExecutable("/bin/sh"));
  EXPECT_GT(machine.systemInformation->physicalMemory(), 0U);
  EXPECT_EQ(machine.fileSystem->volumeCapacities("/").total, hostVolume("/").total);
}

}  // namespace
}  // namespace cirrovane::test
