#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "ui/viewmodels/TimelineViewModel.h"

#include <chrono>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class TimelineViewModelTest : public PageTest {
 protected:
  void publish(const std::vector<ScanSnapshot>& snapshots) {
    setPublished(dashboard_->historyStore().publishedSnapshots(), snapshots);
    catchUp();
  }
  ScanRow rowOf(const ScanSnapshot& snapshot) {
    publish({snapshot});
    return page_->rows()->row(0);
  }

  void exportProofPacket() {
    dashboard_->exportProofPacket();
    catchUp();
  }

  std::unique_ptr<TimelineViewModel> page_ = open<TimelineViewModel>();
};

TEST_F(TimelineViewModelTest, noHistory_isEmpty) {
  EXPECT_TRUE(page_->isEmpty());
  EXPECT_EQ(page_->rows()->count(), 0);
  EXPECT_THAT(page_->snapshots().scores(), IsEmpty());
  EXPECT_EQ(page_->exportNote(), "");
}

TEST_F(TimelineViewModelTest, safeSnapshot_isToldWhole) {
  ScanSnapshot snapshot = makeSnapshot(true, 97);
  snapshot.status = HealthState::safe;
  snapshot.localAvailabilityScore = 84;
  const ScanRow row = rowOf(snapshot);
  EXPECT_EQ(row.time, "6:21:00 PM");
  EXPECT_EQ(row.date, "Nov 15, 6:21 PM");
  EXPECT_EQ(row.score, "Score 97");
  EXPECT_EQ(row.local, "Local 84");
  EXPECT_EQ(row.blockers, "0 blockers");
  EXPECT_EQ(row.verdict, "Safe");
  EXPECT_EQ(row.tone, Tone::Good);
}

TEST_F(TimelineViewModelTest, safeSnapshot_withBlockers_isStillSafe) {
  ScanSnapshot snapshot = makeSnapshot(true, 97);
  snapshot.blockerCount = 3;
  snapshot.topBlockerReason = BlockerReason::notDownloaded;
  const ScanRow row = rowOf(snapshot);
  EXPECT_EQ(row.score, "Score 97");
  EXPECT_EQ(row.local, "Local -");
  EXPECT_EQ(row.blockers, "3 blockers");
  EXPECT_EQ(row.verdict, "Safe");
  EXPECT_EQ(row.tone, Tone::Caution);
}

TEST_F(TimelineViewModelTest, unsafeSnapshot_isNamedByItsReason) {
  ScanSnapshot snapshot = makeSnapshot(false, 40);
  snapshot.status = HealthState::danger;
  snapshot.localAvailabilityScore = 0;
  snapshot.blockerCount = 1;
  snapshot.topBlockerReason = BlockerReason::notUploaded;
  const ScanRow row = rowOf(snapshot);
  EXPECT_EQ(row.score, "Score 40");
  EXPECT_EQ(row.local, "Local 0");
  EXPECT_EQ(row.blockers, "1 blocker");
  EXPECT_EQ(row.verdict, "Not Uploaded");
  EXPECT_EQ(row.tone, Tone::Critical);
}

TEST_F(TimelineViewModelTest, unsafeSnapshot_withoutAReason_isUnsafe) {
  const ScanRow row = rowOf(makeSnapshot(false, 40));
  EXPECT_EQ(row.score, "Score 40");
  EXPECT_EQ(row.local, "Local -");
  EXPECT_EQ(row.blockers, "0 blockers");
  EXPECT_EQ(row.verdict, "Unsafe");
  EXPECT_EQ(row.tone, Tone::Caution);
}

TEST_F(TimelineViewModelTest, longHistory_showsTheEightNewestAndChartsTwoHundred) {
  publish(makeSnapshots(201));
  ASSERT_EQ(page_->rows()->count(), 8);
  EXPECT_EQ(page_->rows()->row(0).score, "Score 0");
  EXPECT_EQ(page_->rows()->row(7).score, "Score 7");
  EXPECT_THAT(page_->snapshots().scores(), SizeIs(200));
  EXPECT_FALSE(page_->isEmpty());
}

TEST_F(TimelineViewModelTest, nextScan_addsOneRowAndDropsTheOldest) {
  std::vector<ScanSnapshot> history = makeSnapshots(8);
  publish(history);
  const RowSignals rows(*page_->rows());
  history.insert(history.begin(), makeSnapshot(false, 50));
  publish(history);
  EXPECT_EQ(rows.insertions(), 1);
  EXPECT_EQ(rows.changes(), 0);
  EXPECT_EQ(rows.total(), 2);
}

TEST_F(TimelineViewModelTest, sameHistoryAgain_changesNoRow) {
  const std::vector<ScanSnapshot> history = makeSnapshots(3);
  publish(history);
  const RowSignals rows(*page_->rows());
  publish(history);
  EXPECT_EQ(rows.total(), 0);
}

TEST_F(TimelineViewModelTest, scanByItsNumber_isToldOnOneLineFromTheOldest) {
  ScanSnapshot older = makeSnapshot(false, 40);
  older.timestamp -= std::chrono::minutes(2);
  older.localAvailabilityScore = 84;
  older.blockerCount = 2;
  older.topBlockerReason = BlockerReason::stalledUpload;
  older.topBlockerFilePath = "/Users/test/in\u202evoice.pdf";
  publish({makeSnapshot(true, 97), older});
  EXPECT_EQ(page_->scanText(0),
            "Nov 15, 6:19 PM · Score 40 · Local 84 · 2 blockers · Upload Stalled: in\\u{202e}voice.pdf");
  EXPECT_EQ(page_->scanText(1), "Nov 15, 6:21 PM · Score 97 · Local - · 0 blockers");
  EXPECT_EQ(page_->scanText(2), "");
  EXPECT_EQ(page_->scanText(-1), "");
}

TEST_F(TimelineViewModelTest, scanWhoseFileIsUnknown_tellsTheReason) {
  ScanSnapshot snapshot = makeSnapshot(false, 40);
  snapshot.blockerCount = 1;
  snapshot.topBlockerReason = BlockerReason::notUploaded;
  publish({snapshot});
  EXPECT_EQ(page_->scanText(0), "Nov 15, 6:21 PM · Score 40 · Local - · 1 blocker · Not Uploaded");
}

TEST_F(TimelineViewModelTest, export_notesTheFileByItsName) {
  panels_.answer = "/Users/test/Desktop/proof\u202e.json";
  exportProofPacket();
  EXPECT_EQ(page_->exportNote(), "Proof packet exported to proof\\u{202e}.json.");
}

TEST_F(TimelineViewModelTest, export_isRevealedWhileItsNoteStands) {
  EXPECT_FALSE(page_->canRevealExport());
  files_.addExisting("/Users/test/Desktop/proof.json");
  panels_.answer = "/Users/test/Desktop/proof.json";
  exportProofPacket();
  EXPECT_TRUE(page_->canRevealExport());
  page_->revealExport();
  EXPECT_THAT(workspace_.revealed(), testing::ElementsAre("/Users/test/Desktop/proof.json"));
  exportNoteAlarm_.ring();
  catchUp();
  EXPECT_EQ(page_->exportNote(), "");
  EXPECT_FALSE(page_->canRevealExport());
}

TEST_F(TimelineViewModelTest, snapshot_ofAnotherDay_saysTheDay) {
  ScanSnapshot snapshot = makeSnapshot(true, 97);
  EXPECT_EQ(rowOf(snapshot).time, "6:21:00 PM");
  snapshot.timestamp -= std::chrono::hours(24);
  EXPECT_EQ(rowOf(snapshot).time, "Nov 14, 6:21 PM");
}

TEST_F(TimelineViewModelTest, export_failed_saysWhy) {
  panels_.answer = "/Users/test/Desktop/proof.json";
  storage_.failure = Failure{"No space left on device"};
  exportProofPacket();
  EXPECT_EQ(page_->exportNote(), "Export failed: No space left on device");
  EXPECT_FALSE(page_->canRevealExport());
}

TEST_F(TimelineViewModelTest, export_cancelled_notesNothing) {
  exportProofPacket();
  EXPECT_EQ(page_->exportNote(), "");
}

TEST_F(TimelineViewModelTest, scan_thatCouldNotBeSaved_isTold) {
  storage_.privateFailure = Failure{"No space left on device"};
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_EQ(page_->rows()->count(), 1);
  EXPECT_EQ(page_->saveFailure(), "The scan history could not be saved: No space left on device");
}

}  // namespace
}  // namespace cirrovane::test
