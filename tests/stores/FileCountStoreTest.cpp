#include "stores/FileCountStore.h"
#include "tests/stores/StoreFixture.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileCountStoreTest : public StoreTest {
 protected:
  FileCountStoreTest() { clock_.set(Time(std::chrono::seconds(1'763'231'000))); }

  FileCountStore store() const { return {fileSystem_, storage_, clock_}; }
  void record(std::int64_t files, bool isSafe = true, const std::string& path = "/x/Work/") const {
    SyncHealthReport report;
    report.safeToClose = isSafe;
    FolderHealth health;
    health.folder.path = path;
    health.scannedFileCount = files;
    report.folderHealth = {health};
    EXPECT_EQ(store().record(report), std::nullopt);
  }
  void pass(std::chrono::microseconds time) { clock_.set(clock_.now() + time); }
  std::string text() const { return readFile(storePath("coverage.json")); }
};

TEST_F(FileCountStoreTest, safeScan_leavesItsNumber) {
  record(40);
  EXPECT_THAT(store().most(), ElementsAre(FolderFileCount{"/x/Work", 40}));
  EXPECT_EQ(text(), R"([
  {
    "counts": [
      {
        "at": "2025-11-15T18:23:20Z",
        "files": 40
      }
    ],
    "path": "/x/Work"
  }
]
)");
}

TEST_F(FileCountStoreTest, scanThatIsNotSafe_leavesNothing) {
  record(40, /*isSafe=*/false);
  EXPECT_FALSE(std::filesystem::exists(storePath("coverage.json")));
}

TEST_F(FileCountStoreTest, largestNumberOfThirtyDays_counts) {
  record(40);
  pass(std::chrono::days(10));
  record(30);
  EXPECT_THAT(store().most(), ElementsAre(FolderFileCount{"/x/Work", 40}));
  pass(std::chrono::days(20));
  EXPECT_THAT(store().most(), ElementsAre(FolderFileCount{"/x/Work", 40}));
  pass(std::chrono::microseconds(1));
  EXPECT_THAT(store().most(), ElementsAre(FolderFileCount{"/x/Work", 30}));
  pass(std::chrono::days(31));
  EXPECT_THAT(store().most(), IsEmpty());
}

TEST_F(FileCountStoreTest, sameNumber_isDatedAnewOnceAnHour) {
  record(40);
  const std::string first = text();
  pass(std::chrono::minutes(59));
  record(40);
  record(39);
  EXPECT_EQ(text(), first);
  pass(std::chrono::minutes(1));
  record(40);
  EXPECT_NE(text(), first);
}

TEST_F(FileCountStoreTest, folderThatShrinksDayByDay_takesOneNumberADay) {
  for (std::int64_t hour = 0; hour < 60 * 24; ++hour) {
    record(10'000 - hour);
    pass(std::chrono::hours(1));
  }
  std::size_t lines = 0;
  for (std::size_t at = text().find("\"files\""); at != std::string::npos; at = text().find("\"files\"", at + 1)) {
    ++lines;
  }
  EXPECT_LE(lines, 32U);
  EXPECT_GE(store().most().front().files, 10'000 - 30 * 24 - 24);
}

TEST_F(FileCountStoreTest, beginAnew_forgetsWhatWasLarger) {
  record(40);
  EXPECT_EQ(store().beginAnew({{"/x/Work", 3}}), std::nullopt);
  EXPECT_THAT(store().most(), ElementsAre(FolderFileCount{"/x/Work", 3}));
}

TEST_F(FileCountStoreTest, numberOfAClockThatRanAhead_isForgotten) {
  pass(std::chrono::days(400));
  record(40);
  pass(-std::chrono::days(400));
  EXPECT_THAT(store().most(), IsEmpty());
  record(5);
  EXPECT_THAT(store().most(), ElementsAre(FolderFileCount{"/x/Work", 5}));
}

}  // namespace
}  // namespace cirrovane::test
