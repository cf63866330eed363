#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/AwarenessViewModel.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class AwarenessViewModelTest : public PageTest {
 protected:
  void publish(const SyncHealthReport& report) {
    publishReport(report);
    catchUp();
  }
  void publishHistory(const std::vector<ScanSnapshot>& snapshots) {
    setPublished(dashboard_->historyStore().publishedSnapshots(), snapshots);
    catchUp();
  }
  static ScanSnapshot failedSnapshot() {
    ScanSnapshot snapshot = makeSnapshot(false);
    snapshot.topBlockerReason = BlockerReason::stalledUpload;
    snapshot.topBlockerFolderName = "Work";
    snapshot.topBlockerFilePath = "/Users/test/Work/a.txt";
    return snapshot;
  }
  std::string row(std::size_t index) const { return texts(*page_->rows()).at(index); }

  std::unique_ptr<AwarenessViewModel> page_ = open<AwarenessViewModel>();
};

TEST_F(AwarenessViewModelTest, noReportAndNoHistory_saysThatNothingIsKnown) {
  EXPECT_EQ(page_->recentStability(), "Not enough scans yet.");
  EXPECT_THAT(
      texts(*page_->rows()),
      ElementsAre("ellipsis.circle|none|Coverage Gaps|No watchlist coverage gaps detected.|||||",
                  "ellipsis.circle|none|Cloud-Only Files|No cloud-only files currently detected.|||||",
                  "info.circle.fill|info|Last Scan Result|No failed scans in history|||This can mean stable sync, or "
                  "simply not enough scan history yet.||",
                  "info.circle.fill|info|Last Confirmed Safe Scan|None yet in current history.|||||"));
}

TEST_F(AwarenessViewModelTest, reportWithoutGaps_isGoodNewsAfterAScanAlone) {
  publish(SyncHealthReport());
  EXPECT_EQ(row(0), "checkmark.circle.fill|ok|Coverage Gaps|No watchlist coverage gaps detected.|||||");
  EXPECT_EQ(row(1), "checkmark.circle.fill|ok|Cloud-Only Files|No cloud-only files currently detected.|||||");
}

TEST_F(AwarenessViewModelTest, coverageGaps_areCountedFromBlockers) {
  SyncHealthReport report;
  report.blockers = makeBlockers({BlockerReason::outsideICloud, BlockerReason::unavailableFolder,
                                  BlockerReason::notUploaded, BlockerReason::notDownloaded});
  publish(report);
  EXPECT_EQ(row(0),
            "exclamationmark.triangle.fill|warning|Coverage Gaps|2 items are outside iCloud or unavailable, so trust "
            "is reduced.|||||");
}

TEST_F(AwarenessViewModelTest, oneCoverageGap_keepsThePlural) {
  SyncHealthReport report;
  report.blockers = makeBlockers({BlockerReason::outsideICloud});
  publish(report);
  EXPECT_THAT(row(0), testing::HasSubstr("|1 items are outside iCloud or unavailable, so trust is reduced.|"));
}

TEST_F(AwarenessViewModelTest, coverageGaps_ofAnEarlierReport_areShownByAPageOpenedLater) {
  SyncHealthReport report;
  report.blockers = makeBlockers({BlockerReason::outsideICloud});
  publish(report);
  const auto later = open<AwarenessViewModel>();
  EXPECT_EQ(texts(*later->rows())[0], row(0));
}

TEST_F(AwarenessViewModelTest, cloudOnlyFiles_areCountedFromMetrics) {
  SyncHealthReport report;
  report.metrics.notDownloaded = 7;
  publish(report);
  EXPECT_EQ(row(1),
            "icloud.fill|info|Cloud-Only Files|7 files are cloud-only on this device. They can still be safely in "
            "iCloud, but may be unavailable offline.|||||");
}

TEST_F(AwarenessViewModelTest, lastFailed_withItsFile_isToldWhole) {
  publishHistory({makeSnapshot(true), failedSnapshot(), makeSnapshot(false)});
  EXPECT_EQ(row(2),
            "xmark.octagon.fill|error|Last Failed Sync|Unsafe at 6:21:00 PM|Reason: Upload Stalled|Folder: Work||Nov "
            "15, 6:21 PM|/Users/test/Work/a.txt");
}

TEST_F(AwarenessViewModelTest, lastFailed_withoutAPath_saysWhyItCannotBeShown) {
  publishHistory({makeSnapshot(false)});
  EXPECT_EQ(row(2),
            "xmark.octagon.fill|error|Last Failed Sync|Unsafe at 6:21:00 PM|||Location unavailable because older "
            "snapshots did not capture file paths.|Nov 15, 6:21 PM|");
}

TEST_F(AwarenessViewModelTest, lastFailed_revealed_showsItsFileAsItIsOnTheDisk) {
  ScanSnapshot snapshot = failedSnapshot();
  snapshot.topBlockerFilePath = "/Users/test/a\nb";
  files_.addExisting("/Users/test/a\nb");
  publishHistory({snapshot});
  EXPECT_THAT(row(2), testing::EndsWith("|/Users/test/a\\nb"));
  page_->revealLastFailed();
  EXPECT_THAT(workspace_.revealed(), ElementsAre("/Users/test/a\nb"));
}

TEST_F(AwarenessViewModelTest, lastFailed_withoutAPath_revealsNothing) {
  publishHistory({makeSnapshot(false)});
  page_->revealLastFailed();
  EXPECT_THAT(workspace_.revealed(), testing::IsEmpty());
}

TEST_F(AwarenessViewModelTest, lastSafe_isTheNewestSafeOne) {
  ScanSnapshot newest = makeSnapshot(true);
  newest.timestamp = at(9, 41);
  publishHistory({makeSnapshot(false), newest, makeSnapshot(true)});
  EXPECT_EQ(row(3), "checkmark.circle.fill|ok|Last Confirmed Safe Scan|Safe at 9:41:00 AM||||Nov 15, 9:41 AM|");
}

TEST_F(AwarenessViewModelTest, hostileFolderName_isEscaped) {
  ScanSnapshot snapshot = failedSnapshot();
  snapshot.topBlockerFolderName = "Wo\u202erk";
  publishHistory({snapshot});
  EXPECT_THAT(row(2), testing::HasSubstr("|Folder: Wo\\u{202e}rk|"));
}

TEST_F(AwarenessViewModelTest, stability_followsTheHistory) {
  publishHistory({makeSnapshot(true), makeSnapshot(true), makeSnapshot(false)});
  EXPECT_EQ(page_->recentStability(), "66% safe in last 3 scans");
}

TEST_F(AwarenessViewModelTest, sameReportAndHistoryAgain_changeNoRow) {
  const std::vector<ScanSnapshot> history = {makeSnapshot(true), failedSnapshot()};
  publish(makeReport());
  publishHistory(history);
  const RowSignals rows(*page_->rows());
  publish(makeReport());
  publishHistory(history);
  EXPECT_EQ(rows.total(), 0);
}

TEST_F(AwarenessViewModelTest, firstFailedScan_changesItsRowInPlace) {
  publishHistory({makeSnapshot(true)});
  const RowSignals rows(*page_->rows());
  publishHistory({failedSnapshot(), makeSnapshot(true)});
  EXPECT_EQ(rows.changes(), 1);
  EXPECT_EQ(rows.insertions(), 0);
}

}  // namespace
}  // namespace cirrovane::test
