#include "tests/coordinator/DashboardFixture.h"
#include "tests/support/ManualExecutor.h"
#include "ui/viewmodels/SnapshotViewModel.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class SnapshotViewModelTest : public DashboardMachine {
 protected:
  SnapshotViewModelTest() : DashboardMachine({executor_, executor_, executor_, executor_}) {
    bundle_.info = {{"CFBundleShortVersionString", "1.2"},
                    {"CFBundleVersion", "45"},
                    {"CirrovaneReleasesURL", "https://example.com/releases"}};
    launch();
    updates_ =
        std::make_unique<AppUpdateService>(bundle_, defaults_, workspace_, timeText_, clock_, [] { return nullptr; });
  }

  SnapshotViewModel& open() {
    snapshot_ = std::make_unique<SnapshotViewModel>(*dashboard_, *updates_, *coverage_, timeText_);
    return *snapshot_;
  }

  /// Publishes a report of this state and verdict.
  void report(HealthState status, bool safeToClose) {
    SyncHealthReport report;
    report.status = status;
    report.safeToClose = safeToClose;
    report.score = 92;
    report.localAvailabilityScore = 84;
    publishReport(report);
  }

  void publishBlockers(std::vector<SyncBlocker> blockers) {
    SyncHealthReport report;
    report.blockers = std::move(blockers);
    publishReport(std::move(report));
  }
  void publishHistory(const std::vector<ScanSnapshot>& snapshots) {
    setPublished(dashboard_->historyStore().publishedSnapshots(), snapshots);
  }
  QString topBlockerAt(const std::string& path) {
    publishBlockers({makeBlocker(BlockerReason::stalledUpload, path), makeBlocker(BlockerReason::notUploaded, "/b")});
    return snapshot_->topBlocker();
  }

  ManualExecutor executor_;
  // What comes later needs an application object.
  int argumentCount_ = 1;
  char name_[6] = "tests";
  char* arguments_[1] = {name_};
  QCoreApplication application_{argumentCount_, arguments_};
  std::unique_ptr<AppUpdateService> updates_;
  std::unique_ptr<SnapshotViewModel> snapshot_;
};

TEST_F(SnapshotViewModelTest, beforeTheFirstScan_isNeitherGoodNorBad) {
  const SnapshotViewModel& snapshot = open();
  EXPECT_EQ(snapshot.tone(), Tone::Neutral);
  EXPECT_EQ(snapshot.menuBarSymbol(), "ellipsis.circle");
  EXPECT_EQ(snapshot.statusLabel(), "Scanning");
  EXPECT_EQ(snapshot.verdict(), "Do not close yet");
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Scanning. Do not close yet.");
}

TEST_F(SnapshotViewModelTest, noWithASafeState_hasTheWarningSign) {
  const SnapshotViewModel& snapshot = open();
  report(HealthState::safe, false);
  EXPECT_EQ(snapshot.tone(), Tone::Caution);
  EXPECT_EQ(snapshot.menuBarSymbol(), "exclamationmark.triangle.fill");
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Yellow Needs Attention. Do not close yet.");
}

TEST_F(SnapshotViewModelTest, yesThatIsStale_saysSinceWhenAndWhy) {
  const SnapshotViewModel& snapshot = open();
  report(HealthState::safe, true);
  EXPECT_EQ(snapshot.verdictNote(), "");
  publishStanding(VerdictStanding::expired);
  EXPECT_EQ(snapshot.tone(), Tone::Caution);
  EXPECT_EQ(snapshot.statusLabel(), "Yellow Needs Attention");
  EXPECT_EQ(snapshot.verdict(), "Safe to close as of 6:25:00 PM");
  EXPECT_EQ(snapshot.verdictNote(), "The last scan is over 3 minutes old.");
  publishStanding(VerdictStanding::slept);
  EXPECT_EQ(snapshot.toolTip(),
            "Cirrovane: Yellow Needs Attention. Safe to close as of 6:25:00 PM. This Mac slept after the last scan.");
}

TEST_F(SnapshotViewModelTest, liveness_isToldWithItsReasonOnceThereIsAVerdict) {
  const SnapshotViewModel& snapshot = open();
  publishLiveness({LivenessState::live, ""});
  EXPECT_EQ(snapshot.liveness(), "");
  report(HealthState::safe, true);
  EXPECT_EQ(snapshot.liveness(), "Live");
  const QSignalSpy changes(&snapshot, &SnapshotViewModel::reportChanged);
  publishLiveness({LivenessState::notLive, "The system watches no more folders."});
  EXPECT_EQ(snapshot.liveness(), "Not live. The system watches no more folders.");
  EXPECT_EQ(changes.count(), 1);
  publishLiveness({LivenessState::catchingUp, "The Mac slept."});
  EXPECT_EQ(snapshot.liveness(), "Catching up. The Mac slept.");
}

TEST_F(SnapshotViewModelTest, gaps_areToldBesideEitherVerdictAndMarkAYes) {
  const SnapshotViewModel& snapshot = open();
  EXPECT_EQ(snapshot.unvouched(), "");
  const QSignalSpy changes(&snapshot, &SnapshotViewModel::coverageChanged);
  CoverageReport coverage;
  coverage.gapCounts.syncPaused = 2;
  publishCoverage(coverage);
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(snapshot.unvouched(), "The verdict does not vouch for 2 items.");
  EXPECT_FALSE(snapshot.isYesMarked());
  report(HealthState::safe, true);
  EXPECT_TRUE(snapshot.isYesMarked());
  EXPECT_EQ(snapshot.statusLabel(), "Green Safe");
  EXPECT_EQ(snapshot.verdict(), "Safe to close now");
  report(HealthState::danger, false);
  EXPECT_FALSE(snapshot.isYesMarked());
  EXPECT_EQ(snapshot.unvouched(), "The verdict does not vouch for 2 items.");
  publishCoverage(CoverageReport());
  EXPECT_EQ(snapshot.unvouched(), "");
}

TEST_F(SnapshotViewModelTest, reviewOfTheCoverage_isAskedFor) {
  SnapshotViewModel& snapshot = open();
  const QSignalSpy requests(&snapshot, &SnapshotViewModel::coverageRequested);
  snapshot.reviewCoverage();
  EXPECT_EQ(requests.count(), 1);
}

TEST_F(SnapshotViewModelTest, uploads_areToldInPanelAndTooltipWhileAnythingIsLeft) {
  const SnapshotViewModel& snapshot = open();
  report(HealthState::warning, false);
  EXPECT_EQ(snapshot.uploads(), "");
  const QSignalSpy changes(&snapshot, &SnapshotViewModel::uploadsChanged);
  UploadStanding standing;
  standing.totals.pendingFiles = 2;
  standing.totals.pendingBytes = 950'000;
  standing.totals.stuckFiles = 1;
  standing.quietSince = clock_.now() - std::chrono::minutes(12);
  setPublished(dashboard_->publishedUploads(), standing);
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(snapshot.uploads(), "Left to upload: 2 files, 950 KB, nothing has moved for 12 min. 1 file is stuck.");
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Yellow Needs Attention. Do not close yet. " + snapshot.uploads());
  setPublished(dashboard_->publishedUploads(), UploadStanding());
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Yellow Needs Attention. Do not close yet.");
}

TEST_F(SnapshotViewModelTest, noBeforeSleep_staysThatNo) {
  const SnapshotViewModel& snapshot = open();
  report(HealthState::danger, false);
  publishStanding(VerdictStanding::slept);
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Red Unsafe. Do not close yet.");
  EXPECT_EQ(snapshot.verdictNote(), "");
}

TEST_F(SnapshotViewModelTest, eachState_hasItsSymbolAndItsWords) {
  const SnapshotViewModel& snapshot = open();
  report(HealthState::safe, true);
  EXPECT_EQ(snapshot.menuBarSymbol(), "checkmark.seal.fill");
  EXPECT_EQ(snapshot.statusLabel(), "Green Safe");
  EXPECT_EQ(snapshot.tone(), Tone::Good);
  EXPECT_EQ(snapshot.verdict(), "Safe to close now");
  EXPECT_EQ(snapshot.scores(), "Upload Trust 92 · Local 84");
  EXPECT_EQ(snapshot.score(), "92");
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Green Safe. Safe to close now.");
  report(HealthState::danger, false);
  EXPECT_EQ(snapshot.menuBarSymbol(), "xmark.octagon.fill");
  EXPECT_EQ(snapshot.statusLabel(), "Red Unsafe");
}

TEST_F(SnapshotViewModelTest, warning_thatIsSafeToClose_keepsTheWarningSymbol) {
  const SnapshotViewModel& snapshot = open();
  report(HealthState::warning, true);
  EXPECT_EQ(snapshot.menuBarSymbol(), "exclamationmark.triangle.fill");
  EXPECT_EQ(snapshot.verdict(), "Safe to close now");
}

TEST_F(SnapshotViewModelTest, newReport_isToldWithItsOwnValues) {
  const SnapshotViewModel& snapshot = open();
  QString seen;
  QObject::connect(&snapshot, &SnapshotViewModel::reportChanged, [&] { seen = snapshot.statusLabel(); });
  report(HealthState::safe, true);
  EXPECT_EQ(seen, "Green Safe");
}

TEST_F(SnapshotViewModelTest, appearing_asksForARefresh) {
  SnapshotViewModel& snapshot = open();
  snapshot.appeared();
  EXPECT_TRUE(dashboard_->isScanning());
}

TEST_F(SnapshotViewModelTest, appearingTwice_startsTheTimerOnce) {
  SnapshotViewModel& snapshot = open();
  snapshot.appeared();
  executor_.runAll();
  snapshot.appeared();
  EXPECT_TRUE(dashboard_->isScanning());
  EXPECT_EQ(timer_.starts().size(), 1U);
}

TEST_F(SnapshotViewModelTest, noBlockers_noTopBlocker) {
  const SnapshotViewModel& snapshot = open();
  EXPECT_FALSE(snapshot.hasTopBlocker());
  EXPECT_EQ(snapshot.topBlocker(), "");
}

TEST_F(SnapshotViewModelTest, topBlocker_isTheFirstWithItsFilesName) {
  const SnapshotViewModel& snapshot = open();
  EXPECT_EQ(topBlockerAt("/Users/test/Work/invoice.pdf"), "Upload Stalled: invoice.pdf");
  EXPECT_TRUE(snapshot.hasTopBlocker());
}

TEST_F(SnapshotViewModelTest, topBlocker_withoutALastComponent_isTheWholePath) {
  open();
  EXPECT_EQ(topBlockerAt("/"), "Upload Stalled: /");
  EXPECT_EQ(topBlockerAt("/Users/test/Work/"), "Upload Stalled: /Users/test/Work/");
  EXPECT_EQ(topBlockerAt("invoice.pdf"), "Upload Stalled: invoice.pdf");
}

TEST_F(SnapshotViewModelTest, topBlocker_ofAHostileName_isEscapedAndALongOneWhole) {
  open();
  EXPECT_EQ(topBlockerAt("/a\u202eb\nc"), "Upload Stalled: a\\u{202e}b\\nc");
  EXPECT_EQ(topBlockerAt("/" + std::string(255, 'x')).toStdString(), "Upload Stalled: " + std::string(255, 'x'));
}

TEST_F(SnapshotViewModelTest, noFailedScan_noBlock) {
  const SnapshotViewModel& snapshot = open();
  publishHistory({makeSnapshot(true)});
  EXPECT_FALSE(snapshot.hasLastFailed());
  EXPECT_EQ(snapshot.lastFailedTime(), "");
  EXPECT_EQ(snapshot.lastFailedReason(), "");
}

TEST_F(SnapshotViewModelTest, failedScan_beyondTheTwoHundredNewest_isForgotten) {
  const SnapshotViewModel& snapshot = open();
  std::vector<ScanSnapshot> history = makeSnapshots(200);
  history.push_back(makeSnapshot(false));
  publishHistory(history);
  EXPECT_FALSE(snapshot.hasLastFailed());
  history.erase(history.begin());
  publishHistory(history);
  EXPECT_TRUE(snapshot.hasLastFailed());
}

TEST_F(SnapshotViewModelTest, failedScan_isToldByItsTimeAndReason) {
  ScanSnapshot failed = makeSnapshot(false);
  failed.topBlockerReason = BlockerReason::uploadError;
  const SnapshotViewModel& snapshot = open();
  publishHistory({makeSnapshot(true), failed});
  EXPECT_TRUE(snapshot.hasLastFailed());
  EXPECT_EQ(snapshot.lastFailedTime(), "6:21:00 PM");
  EXPECT_EQ(snapshot.lastFailedDate(), "Nov 15, 6:21 PM");
  EXPECT_EQ(snapshot.lastFailedReason(), "Upload Error");
}

TEST_F(SnapshotViewModelTest, failedScan_withoutAReason_isToldByItsTimeAlone) {
  const SnapshotViewModel& snapshot = open();
  publishHistory({makeSnapshot(false)});
  EXPECT_EQ(snapshot.lastFailedTime(), "6:21:00 PM");
  EXPECT_EQ(snapshot.lastFailedReason(), "");
}

TEST_F(SnapshotViewModelTest, failedScan_beforeTheLaunch_isShownFromTheStart) {
  store("history.json", std::vector<ScanSnapshot>{makeSnapshot(false)});
  launch();
  EXPECT_TRUE(open().hasLastFailed());
}

TEST_F(SnapshotViewModelTest, rescan_isUnderWayUntilItIsDone) {
  SnapshotViewModel& snapshot = open();
  const QSignalSpy changes(&snapshot, &SnapshotViewModel::isScanningChanged);
  snapshot.rescan();
  EXPECT_TRUE(snapshot.isScanning());
  executor_.runAll();
  EXPECT_FALSE(snapshot.isScanning());
  EXPECT_EQ(changes.count(), 2);
}

TEST_F(SnapshotViewModelTest, export_notesHowItEnded) {
  SnapshotViewModel& snapshot = open();
  dashboard_->exportProofPacket();
  EXPECT_EQ(snapshot.exportNote(), "");
  panels_.answer = "/Users/test/proof.json";
  dashboard_->exportProofPacket();
  EXPECT_EQ(snapshot.exportNote(), "Proof packet exported to proof.json.");
}

TEST_F(SnapshotViewModelTest, updates_areNamedAndCheckedFor) {
  SnapshotViewModel& snapshot = open();
  EXPECT_EQ(snapshot.buildLabel(), "Build v1.2 (45)");
  snapshot.checkForUpdates();
  EXPECT_THAT(workspace_.opened(), testing::ElementsAre("https://example.com/releases"));
}

}  // namespace
}  // namespace cirrovane::test
