#include "tests/diagnostics/MachineFixture.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using testing::Each;
using testing::ElementsAre;
using testing::Field;

class StorageFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const { return service().storageFindings(newProbes()).findings; }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }
  /// The row for a disk of 500 GB with so much free.
  Row diskWith(std::int64_t free) {
    files_.setVolumeCapacities("/Users/test", {free, 500'000'000'000});
    return row("Disk capacity").value_or(Row());
  }
};

const Row kDetected = {info, "SMART tooling", "smartctl detected; deeper disk SMART checks can be added."};
const Row kNotDetected = {warning, "SMART tooling",
                          "smartctl not detected. Install from Tools tab for deeper disk health checks."};

TEST_F(StorageFindings, healthyMac_givesThreeRowsInOrder) {
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{ok, "Disk capacity", "212.5 GB free of 494.4 GB."},
                          Row{info, "Swap usage", "total = 2048.00M  used = 512.00M  free = 1536.00M  (encrypted)\n"},
                          kDetected));
}

TEST_F(StorageFindings, everythingWrong_givesTwoWarningsInOrder) {
  files_.setVolumeCapacities("/Users/test", {});
  commands_ = FakeCommandRunner();
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{warning, "Disk capacity", "Could not read disk capacity metadata."}, kNotDetected));
}

TEST_F(StorageFindings, everyFinding_isOfStorageAndOfNow) {
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::storage)));
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::observedAt, clock_.now())));
}

TEST_F(StorageFindings, disk_below3GB_isAnError) {
  EXPECT_EQ(diskWith(0), (Row{error, "Disk capacity", "0.0 GB free of 500.0 GB."}));
  EXPECT_EQ(diskWith(2'990'000'000), (Row{error, "Disk capacity", "3.0 GB free of 500.0 GB."}));
  EXPECT_EQ(diskWith(2'999'999'999), (Row{error, "Disk capacity", "3.0 GB free of 500.0 GB."}));
}

TEST_F(StorageFindings, disk_from3To10GB_isAWarning) {
  EXPECT_EQ(diskWith(3'000'000'000), (Row{warning, "Disk capacity", "3.0 GB free of 500.0 GB."}));
  EXPECT_EQ(diskWith(9'990'000'000), (Row{warning, "Disk capacity", "10.0 GB free of 500.0 GB."}));
  EXPECT_EQ(diskWith(9'999'999'999), (Row{warning, "Disk capacity", "10.0 GB free of 500.0 GB."}));
}

TEST_F(StorageFindings, disk_from10GB_isOk) {
  EXPECT_EQ(diskWith(10'000'000'000), (Row{ok, "Disk capacity", "10.0 GB free of 500.0 GB."}));
  EXPECT_EQ(diskWith(499'949'999'999), (Row{ok, "Disk capacity", "499.9 GB free of 500.0 GB."}));
}

TEST_F(StorageFindings, disk_isThatOfTheHomeFolder) {
  files_.setHomeDirectory("/Volumes/Big/me");
  files_.setVolumeCapacities("/Volumes/Big/me", {4'000'000'000'000, 8'000'000'000'000});
  EXPECT_EQ(row("Disk capacity"), (Row{ok, "Disk capacity", "4000.0 GB free of 8000.0 GB."}));
}

TEST_F(StorageFindings, disk_withOneValueMissing_couldNotBeRead) {
  const Row unread = {warning, "Disk capacity", "Could not read disk capacity metadata."};
  files_.setVolumeCapacities("/Users/test", {std::nullopt, 500'000'000'000});
  EXPECT_EQ(row("Disk capacity"), unread);
  files_.setVolumeCapacities("/Users/test", {1'000'000'000, std::nullopt});
  EXPECT_EQ(row("Disk capacity"), unread);
}

TEST_F(StorageFindings, swap_losesEveryPrefixAndNothingElse) {
  const auto swapFor = [&](const std::string& output) {
    commands_.answer(kSwap, output);
    const auto found = row("Swap usage");
    EXPECT_EQ(found.value_or(Row()).severity, info);
    return found.value_or(Row()).detail;
  };
  EXPECT_EQ(swapFor("vm.swapusage: total = 0.00M\n"), "total = 0.00M\n");
  EXPECT_EQ(swapFor(" \nvm.swapusage: a vm.swapusage: b\t\n\n"), " \na b\t\n\n");
  EXPECT_EQ(swapFor("vm.swapusage: vm.swapusage: "), "");
  EXPECT_EQ(swapFor("vm.swapusage:none"), "vm.swapusage:none");
  EXPECT_EQ(swapFor("vm.vm.swapusage: swapusage: x"), "vm.swapusage: x");
  EXPECT_EQ(swapFor(""), "");
}

TEST_F(StorageFindings, swap_withoutOutput_isLeftOut) {
  inEveryWayWithoutOutput(kSwap, [&] { EXPECT_EQ(row("Swap usage"), std::nullopt); });
}

TEST_F(StorageFindings, smart_processIsAskedForBeforeTheCommandIsLookedUp) {
  findings();
  EXPECT_THAT(commands_.ran(),
              ElementsAre(CommandLine{"/usr/sbin/sysctl", "vm.swapusage"},
                          CommandLine{"/usr/bin/pgrep", "-x", "smartctl"}, CommandLine{"/usr/bin/which", "smartctl"}));
}

TEST_F(StorageFindings, smart_runningProcess_isEnough) {
  commands_.answer(pgrep("smartctl"), "77\n");
  commands_.forget(kSMARTLookup);
  EXPECT_EQ(row("SMART tooling"), kDetected);
  EXPECT_THAT(commands_.ran().back(), pgrep("smartctl"));
}

TEST_F(StorageFindings, smart_foundCommand_isEnough) {
  commands_.forget(pgrep("smartctl"));
  EXPECT_EQ(row("SMART tooling"), kDetected);
  commands_.answer(kSMARTLookup, "");
  EXPECT_EQ(row("SMART tooling"), kDetected);
}

TEST_F(StorageFindings, smart_neither_isAWarning) {
  inEveryWayWithoutOutput(kSMARTLookup, [&] { EXPECT_EQ(row("SMART tooling"), kNotDetected); });
}

}  // namespace
}  // namespace cirrovane::test
