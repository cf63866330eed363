#include "tests/coordinator/DashboardFixture.h"
#include "tests/support/ManualExecutor.h"
#include "ui/viewmodels/SnapshotViewModel.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class SnapshotViewModelTest : public DashboardMachine {
 protected:
  SnapshotViewModelTest() : DashboardMachine({executor_, executor_, executor_, executor_}) { launch(); }

  /// Publishes a report of this state and verdict.
  void report(HealthState status, bool safeToClose) {
    SyncHealthReport report;
    report.status = status;
    report.safeToClose = safeToClose;
    report.score = 92;
    report.localAvailabilityScore = 84;
    dashboard_->publishedReport().set(Shared<SyncHealthReport>(report));
  }

  ManualExecutor executor_;
};

TEST_F(SnapshotViewModelTest, beforeTheFirstScan_isAWarning) {
  const SnapshotViewModel snapshot(*dashboard_);
  EXPECT_EQ(snapshot.menuBarSymbol(), "exclamationmark.triangle.fill");
  EXPECT_EQ(snapshot.statusLabel(), "Yellow Needs Attention");
  EXPECT_EQ(snapshot.verdict(), "Do not close yet");
}

TEST_F(SnapshotViewModelTest, eachState_hasItsSymbolAndItsWords) {
  const SnapshotViewModel snapshot(*dashboard_);
  report(HealthState::safe, true);
  EXPECT_EQ(snapshot.menuBarSymbol(), "checkmark.seal.fill");
  EXPECT_EQ(snapshot.statusLabel(), "Green Safe");
  EXPECT_EQ(snapshot.state(), "safe");
  EXPECT_EQ(snapshot.verdict(), "Safe to close now");
  EXPECT_EQ(snapshot.scores(), "Upload Trust 92 · Local 84");
  EXPECT_EQ(snapshot.score(), "92");
  EXPECT_EQ(snapshot.toolTip(), "Cirrovane: Green Safe. Safe to close now.");
  report(HealthState::danger, false);
  EXPECT_EQ(snapshot.menuBarSymbol(), "xmark.octagon.fill");
  EXPECT_EQ(snapshot.statusLabel(), "Red Unsafe");
}

TEST_F(SnapshotViewModelTest, warning_thatIsSafeToClose_keepsTheWarningSymbol) {
  const SnapshotViewModel snapshot(*dashboard_);
  report(HealthState::warning, true);
  EXPECT_EQ(snapshot.menuBarSymbol(), "exclamationmark.triangle.fill");
  EXPECT_EQ(snapshot.verdict(), "Safe to close now");
}

TEST_F(SnapshotViewModelTest, newReport_isToldWithItsOwnValues) {
  const SnapshotViewModel snapshot(*dashboard_);
  QString seen;
  QObject::connect(&snapshot, &SnapshotViewModel::reportChanged, [&] { seen = snapshot.statusLabel(); });
  report(HealthState::safe, true);
  EXPECT_EQ(seen, "Green Safe");
}

TEST_F(SnapshotViewModelTest, appearing_asksForARefresh) {
  SnapshotViewModel snapshot(*dashboard_);
  snapshot.appeared();
  EXPECT_TRUE(dashboard_->isScanning());
}

}  // namespace
}  // namespace cirrovane::test
