#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/AwarenessViewModel.h"

#include <memory>
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
  SignalRow coverage() const { return page_->rows()->row(0); }
  SignalRow cloudOnly() const { return page_->rows()->row(1); }
  SignalRow failed() const { return page_->rows()->row(2); }
  SignalRow safe() const { return page_->rows()->row(3); }

  SignalRow unvouched() const { return page_->rows()->row(4); }

  std::unique_ptr<AwarenessViewModel> page_ = open<AwarenessViewModel>();
};

TEST_F(AwarenessViewModelTest, noReportAndNoHistory_saysThatNothingIsKnown) {
  EXPECT_EQ(page_->recentStability(), "Not enough scans yet.");
  EXPECT_THAT(rowsOf(*page_->rows()),
              ElementsAre(SignalRow{.key = "coverage",
                                    .symbol = "ellipsis.circle",
                                    .tone = Tone::Neutral,
                                    .title = "Coverage Gaps",
                                    .text = "No watchlist coverage gaps detected."},
                          SignalRow{.key = "cloudOnly",
                                    .symbol = "ellipsis.circle",
                                    .tone = Tone::Neutral,
                                    .title = "Cloud-Only Files",
                                    .text = "No cloud-only files currently detected."},
                          SignalRow{.key = "failed",
                                    .symbol = "info.circle.fill",
                                    .tone = Tone::Info,
                                    .title = "Last Scan Result",
                                    .text = "No failed scans in history",
                                    .explanation = "This can mean stable sync, or simply not enough scan history yet."},
                          SignalRow{.key = "safe",
                                    .symbol = "info.circle.fill",
                                    .tone = Tone::Info,
                                    .title = "Last Confirmed Safe Scan",
                                    .text = "None yet in current history."},
                          SignalRow{.key = "unvouched",
                                    .symbol = "ellipsis.circle",
                                    .tone = Tone::Neutral,
                                    .title = "Not Vouched For",
                                    .text = "Nobody has looked yet.",
                                    .hasReview = true}));
}

TEST_F(AwarenessViewModelTest, completeCoverage_isGoodNewsWithWhatIsAcknowledged) {
  CoverageReport coverage;
  coverage.complete = true;
  publishCoverage(coverage);
  catchUp();
  EXPECT_EQ(unvouched().symbol, "checkmark.circle.fill");
  EXPECT_EQ(unvouched().tone, Tone::Good);
  EXPECT_EQ(unvouched().text, "The verdict vouches for everything in your watched folders.");
  coverage.acknowledged = 2;
  publishCoverage(coverage);
  catchUp();
  EXPECT_EQ(unvouched().text, "The verdict vouches for everything in your watched folders. 2 gaps are acknowledged.");
}

TEST_F(AwarenessViewModelTest, gapsOfTheCoverage_areCountedByTheirKinds) {
  CoverageReport coverage;
  coverage.gapCounts.syncPaused = 2;
  coverage.notExamined = {"/gone"};
  publishCoverage(coverage);
  catchUp();
  EXPECT_EQ(unvouched().symbol, "exclamationmark.triangle.fill");
  EXPECT_EQ(unvouched().tone, Tone::Warning);
  EXPECT_EQ(unvouched().text, "The verdict does not vouch for 3 items: 2 Sync Paused, 1 Not Looked At.");
}

TEST_F(AwarenessViewModelTest, reportWithoutGaps_isGoodNewsAfterAScanAlone) {
  publish(SyncHealthReport());
  for (const SignalRow& row : {coverage(), cloudOnly()}) {
    EXPECT_EQ(row.symbol, "checkmark.circle.fill");
    EXPECT_EQ(row.tone, Tone::Good);
  }
  EXPECT_EQ(coverage().text, "No watchlist coverage gaps detected.");
  EXPECT_EQ(cloudOnly().text, "No cloud-only files currently detected.");
}

TEST_F(AwarenessViewModelTest, coverageGaps_areCountedFromBlockers) {
  SyncHealthReport report;
  report.blockers = makeBlockers({BlockerReason::outsideICloud, BlockerReason::unavailableFolder,
                                  BlockerReason::notUploaded, BlockerReason::notDownloaded});
  publish(report);
  EXPECT_EQ(coverage().symbol, "exclamationmark.triangle.fill");
  EXPECT_EQ(coverage().tone, Tone::Warning);
  EXPECT_EQ(coverage().title, "Coverage Gaps");
  EXPECT_EQ(coverage().text, "2 items are outside iCloud or unavailable, so trust is reduced.");
}

TEST_F(AwarenessViewModelTest, oneCoverageGap_keepsThePlural) {
  SyncHealthReport report;
  report.blockers = makeBlockers({BlockerReason::outsideICloud});
  publish(report);
  EXPECT_EQ(coverage().text, "1 items are outside iCloud or unavailable, so trust is reduced.");
}

TEST_F(AwarenessViewModelTest, coverageGaps_ofAnEarlierReport_areShownByAPageOpenedLater) {
  SyncHealthReport report;
  report.blockers = makeBlockers({BlockerReason::outsideICloud});
  publish(report);
  const auto later = open<AwarenessViewModel>();
  EXPECT_EQ(later->rows()->row(0), coverage());
  EXPECT_EQ(coverage().tone, Tone::Warning);
}

TEST_F(AwarenessViewModelTest, cloudOnlyFiles_areCountedFromMetrics) {
  SyncHealthReport report;
  report.metrics.notDownloaded = 7;
  publish(report);
  EXPECT_EQ(cloudOnly().symbol, "icloud.fill");
  EXPECT_EQ(cloudOnly().tone, Tone::Info);
  EXPECT_EQ(cloudOnly().title, "Cloud-Only Files");
  EXPECT_EQ(cloudOnly().text,
            "7 files are cloud-only on this device. They can still be safely in iCloud, but may be unavailable "
            "offline.");
}

TEST_F(AwarenessViewModelTest, lastFailed_withItsFile_isToldWhole) {
  publishHistory({makeSnapshot(true), failedSnapshot(), makeSnapshot(false)});
  EXPECT_EQ(failed(), (SignalRow{.key = "failed",
                                 .symbol = "xmark.octagon.fill",
                                 .tone = Tone::Critical,
                                 .title = "Last Failed Sync",
                                 .text = "Unsafe at 6:21:00 PM",
                                 .reason = "Reason: Upload Stalled",
                                 .folder = "Folder: Work",
                                 .date = "Nov 15, 6:21 PM",
                                 .path = "/Users/test/Work/a.txt"}));
}

TEST_F(AwarenessViewModelTest, lastFailed_withoutAPath_saysWhyItCannotBeShown) {
  publishHistory({makeSnapshot(false)});
  EXPECT_EQ(failed(),
            (SignalRow{.key = "failed",
                       .symbol = "xmark.octagon.fill",
                       .tone = Tone::Critical,
                       .title = "Last Failed Sync",
                       .text = "Unsafe at 6:21:00 PM",
                       .explanation = "Location unavailable because older snapshots did not capture file paths.",
                       .date = "Nov 15, 6:21 PM"}));
}

TEST_F(AwarenessViewModelTest, lastFailed_revealed_showsItsFileAsItIsOnTheDisk) {
  ScanSnapshot snapshot = failedSnapshot();
  snapshot.topBlockerFilePath = "/Users/test/a\nb";
  files_.addExisting("/Users/test/a\nb");
  publishHistory({snapshot});
  EXPECT_EQ(failed().path, "/Users/test/a\\nb");
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
  EXPECT_EQ(safe(), (SignalRow{.key = "safe",
                               .symbol = "checkmark.circle.fill",
                               .tone = Tone::Good,
                               .title = "Last Confirmed Safe Scan",
                               .text = "Safe at 9:41:00 AM",
                               .date = "Nov 15, 9:41 AM"}));
}

TEST_F(AwarenessViewModelTest, hostileFolderName_isEscaped) {
  ScanSnapshot snapshot = failedSnapshot();
  snapshot.topBlockerFolderName = "Wo\u202erk";
  publishHistory({snapshot});
  EXPECT_EQ(failed().folder, "Folder: Wo\\u{202e}rk");
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
