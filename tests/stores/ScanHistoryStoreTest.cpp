#include "stores/ScanHistoryStore.h"
#include "tests/stores/StoreFixture.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;

SyncHealthReport reportOf(std::int64_t score, Time generatedAt) {
  SyncHealthReport report;
  report.score = score;
  report.localAvailabilityScore = 88;
  report.status = HealthState::danger;
  report.generatedAt = generatedAt;
  report.metrics.pendingUploads = 3;
  return report;
}

class ScanHistoryStoreTest : public StoreTest {
 protected:
  ScanHistoryStore open() { return {fileSystem_, storage_}; }
  std::string filePath() const { return storePath("history.json"); }
};

TEST_F(ScanHistoryStoreTest, recordedReport_leavesItsNumbers) {
  SyncHealthReport report = reportOf(42, clock_.now());
  report.blockers = {{UUIDGenerator()(), "/x/top", "Docs", BlockerReason::uploadError, "d", std::nullopt},
                     {UUIDGenerator()(), "/x/second", "Docs", BlockerReason::notUploaded, "d", std::nullopt}};
  report.safeToClose = true;
  ScanHistoryStore store = open();
  store.record(report);
  ASSERT_EQ(store.snapshots().size(), 1U);
  const ScanSnapshot& snapshot = store.snapshots()[0];
  EXPECT_EQ(snapshot.timestamp, clock_.now());
  EXPECT_EQ(snapshot.score, 42);
  EXPECT_EQ(snapshot.status, HealthState::danger);
  EXPECT_TRUE(snapshot.safeToClose);
  EXPECT_EQ(snapshot.blockerCount, 2);
  EXPECT_EQ(snapshot.pendingUploads, 3);
  EXPECT_EQ(snapshot.localAvailabilityScore, 88);
  EXPECT_EQ(snapshot.topBlockerReason, BlockerReason::uploadError);
  EXPECT_EQ(snapshot.topBlockerFilePath, "/x/top");
  EXPECT_EQ(snapshot.topBlockerFolderName, "Docs");
}

TEST_F(ScanHistoryStoreTest, sameReportTwice_makesTwoSnapshots) {
  ScanHistoryStore store = open();
  const SyncHealthReport report = reportOf(1, clock_.now());
  store.record(report);
  store.record(report);
  ASSERT_EQ(store.snapshots().size(), 2U);
  EXPECT_NE(store.snapshots()[0].id, store.snapshots()[1].id);
}

TEST_F(ScanHistoryStoreTest, record201_dropsTheOldest) {
  ScanHistoryStore store = open();
  for (std::int64_t score = 0; score <= 200; ++score) {
    store.record(reportOf(score, clock_.now()));
    clock_.advance(std::chrono::seconds(90));
  }
  ASSERT_EQ(store.snapshots().size(), 200U);
  EXPECT_EQ(store.snapshots().front().score, 200);
  EXPECT_EQ(store.snapshots().back().score, 1);
  EXPECT_EQ(open().snapshots().size(), 200U);
}

TEST_F(ScanHistoryStoreTest, fileWithMoreThan200_loadsWholeAndIsCutByTheNextRecord) {
  ScanHistoryStore store = open();
  store.record(reportOf(5, clock_.now()));
  std::string one = readFile(filePath());
  one = one.substr(1, one.rfind(']') - 1);
  std::string many = "[";
  for (int count = 0; count < 250; ++count) {
    many += (count == 0 ? "" : ",") + one;
  }
  writeFile(filePath(), many + "]");
  ScanHistoryStore loaded = open();
  EXPECT_EQ(loaded.snapshots().size(), 250U);
  loaded.record(reportOf(6, clock_.now()));
  EXPECT_EQ(loaded.snapshots().size(), 200U);
  EXPECT_EQ(loaded.snapshots().front().score, 6);
}

TEST_F(ScanHistoryStoreTest, reportWithoutBlockers_leavesNoTopBlockerKeys) {
  ScanHistoryStore store = open();
  store.record(reportOf(100, clock_.now()));
  const auto json = nlohmann::json::parse(readFile(filePath()));
  ASSERT_EQ(json.size(), 1U);
  EXPECT_FALSE(json[0].contains("topBlockerReason"));
  EXPECT_FALSE(json[0].contains("topBlockerFilePath"));
  EXPECT_FALSE(json[0].contains("topBlockerFolderName"));
  EXPECT_EQ(json[0]["localAvailabilityScore"], 88);
}

constexpr const char* kOldSnapshot =
    R"([{"id": "6F9619FF-8B86-D011-B42D-00CF4FC964FF", "timestamp": "2026-11-15T18:21:10Z", "score": 64,
         "status": "danger", "safeToClose": false, "blockerCount": 3, "pendingUploads": 2}])";

TEST_F(ScanHistoryStoreTest, fileWithoutTheOptionalKeys_loadsWithThemAbsent) {
  writeFile(filePath(), kOldSnapshot);
  const ScanHistoryStore store = open();
  ASSERT_EQ(store.snapshots().size(), 1U);
  const ScanSnapshot& snapshot = store.snapshots()[0];
  EXPECT_EQ(snapshot.score, 64);
  EXPECT_EQ(snapshot.localAvailabilityScore, std::nullopt);
  EXPECT_EQ(snapshot.topBlockerReason, std::nullopt);
  EXPECT_EQ(snapshot.topBlockerFilePath, std::nullopt);
  EXPECT_EQ(snapshot.topBlockerFolderName, std::nullopt);
}

TEST_F(ScanHistoryStoreTest, fileWithoutPendingUploads_failsAsAWhole) {
  std::string text = kOldSnapshot;
  text.replace(text.find(", \"pendingUploads\": 2"), std::string(", \"pendingUploads\": 2").size(), "");
  writeFile(filePath(), text);
  ScanHistoryStore store = open();
  EXPECT_THAT(store.snapshots(), IsEmpty());
  store.record(reportOf(1, clock_.now()));
  EXPECT_EQ(store.snapshots().size(), 1U);
  EXPECT_EQ(open().snapshots().size(), 1U);
  EXPECT_EQ(readFile(filePath() + ".unreadable"), text);
}

TEST_F(ScanHistoryStoreTest, unreadableFile_isKeptAsideOnceUnderOneName) {
  for (const char* text : {"first", "second"}) {
    writeFile(filePath(), text);
    ScanHistoryStore store = open();
    store.record(reportOf(1, clock_.now()));
    store.record(reportOf(2, clock_.now()));
    EXPECT_EQ(readFile(filePath() + ".unreadable"), text);
    EXPECT_EQ(open().snapshots().size(), 2U);
  }
}

TEST_F(ScanHistoryStoreTest, dates_areWrittenAndReadInWholeSeconds) {
  const Time time = Time(std::chrono::seconds(1'794'766'870)) + std::chrono::microseconds(999'999);
  ScanHistoryStore store = open();
  store.record(reportOf(1, time));
  EXPECT_NE(readFile(filePath()).find("\"timestamp\": \"2026-11-15T18:21:10Z\""), std::string::npos);
  EXPECT_EQ(open().snapshots()[0].timestamp, Time(std::chrono::seconds(1'794'766'870)));
}

TEST_F(ScanHistoryStoreTest, keys_areInAlphabeticalOrder) {
  SyncHealthReport report = reportOf(42, clock_.now());
  report.blockers = {{UUIDGenerator()(), "/x/top", "Docs", BlockerReason::uploadError, "d", std::nullopt}};
  ScanHistoryStore store = open();
  store.record(report);
  const std::string text = readFile(filePath());
  std::size_t position = 0;
  for (const char* key : {"blockerCount", "id", "localAvailabilityScore", "pendingUploads", "safeToClose", "score",
                          "status", "timestamp", "topBlockerFilePath", "topBlockerFolderName", "topBlockerReason"}) {
    const std::size_t found = text.find("\"" + std::string(key) + "\":");
    ASSERT_NE(found, std::string::npos) << key;
    EXPECT_GT(found, position) << key;
    position = found;
  }
}

}  // namespace
}  // namespace cirrovane::test
