#include "coordinator/CoverageKeeper.h"
#include "tests/stores/StoreFixture.h"
#include "tests/support/ICloudAttribute.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class CoverageKeeperTest : public StoreTest {
 protected:
  CoverageKeeperTest() {
    clock_.set(Time(std::chrono::seconds(1'763'231'000)));
    makeFolder(work());
    for (int number = 0; number < 30; ++number) {
      addFile(std::to_string(number));
    }
  }

  std::string work() const { return iCloudDrivePath() + "/Work"; }
  void addFile(const std::string& name) const {
    writeFile(work() + "/" + name);
    setICloudAttribute(work() + "/" + name, "isUploaded=true");
  }
  void recordSafeScan(std::int64_t files) const {
    SyncHealthReport report;
    report.safeToClose = true;
    report.folderHealth.emplace_back().folder.path = work();
    report.folderHealth.back().scannedFileCount = files;
    EXPECT_EQ(keeper_.record(report), std::nullopt);
  }
  CoverageReport look() const { return keeper_.look({{UUID(), "Work", work()}})->report; }

  CoverageKeeper keeper_{fileSystem_, storage_, clock_};
};

TEST_F(CoverageKeeperTest, lostFiles_areMissedByWhatASafeScanHeld) {
  recordSafeScan(61);
  EXPECT_EQ(look().gapCounts.filesLost, 1);
  EXPECT_EQ(look().gaps.front().rule, "from 61 files to 30");
}

TEST_F(CoverageKeeperTest, lostFilesAcknowledged_beginAnewWithTodaysNumber) {
  recordSafeScan(61);
  EXPECT_EQ(keeper_.acknowledge({work() + "/"}, std::nullopt), std::nullopt);
  EXPECT_THAT(keeper_.acknowledgements(), IsEmpty());
  EXPECT_TRUE(look().complete);
  for (int number = 0; number < 20; ++number) {
    std::filesystem::remove(work() + "/" + std::to_string(number));
  }
  EXPECT_EQ(look().gaps.front().rule, "from 30 files to 10");
}

TEST_F(CoverageKeeperTest, folderThatLostNothing_isAcknowledgedItself) {
  recordSafeScan(59);
  EXPECT_EQ(keeper_.acknowledge({work()}, std::nullopt), std::nullopt);
  EXPECT_THAT(keeper_.acknowledgements(), SizeIs(1));
}

TEST_F(CoverageKeeperTest, missingFolder_isAcknowledgedItself) {
  recordSafeScan(61);
  std::filesystem::remove_all(work());
  EXPECT_EQ(keeper_.acknowledge({work()}, std::nullopt), std::nullopt);
  EXPECT_THAT(keeper_.acknowledgements(), SizeIs(1));
}

TEST_F(CoverageKeeperTest, acknowledgementThatExpired_coversNoMore) {
  writeFile(work() + "/.env");
  EXPECT_EQ(keeper_.acknowledge({work()}, clock_.now() + std::chrono::days(1)), std::nullopt);
  EXPECT_TRUE(look().complete);
  clock_.set(clock_.now() + std::chrono::days(1));
  EXPECT_EQ(look().gapCounts.notInICloud, 1);
}

}  // namespace
}  // namespace cirrovane::test
