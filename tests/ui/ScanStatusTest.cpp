#include "tests/support/ManualTimer.h"
#include "tests/ui/PageFixture.h"
#include "ui/viewmodels/ScanStatus.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class ScanStatusTest : public PageTest {
 protected:
  /// Begins a scan, which waits in the executor, and lets so much time go that it is told.
  void scanForAWhile() {
    dashboard_->refresh();
    timer_.tick();
    timer_.tick();
  }

  ScanProgress progress_;
  ManualTimer timer_;
  ScanStatus status_{*dashboard_, progress_, timer_};
};

TEST_F(ScanStatusTest, noScan_tellsNothing) {
  EXPECT_EQ(status_.text(), "");
  EXPECT_LT(status_.share(), 0);
  EXPECT_FALSE(timer_.isRunning());
}

TEST_F(ScanStatusTest, scanThatIsSoonOver_isNotTold) {
  const QSignalSpy told(&status_, &ScanStatus::changed);
  dashboard_->refresh();
  progress_.enterFolder("/Users/test/Documents");
  timer_.tick();
  executor_.runAll();
  EXPECT_EQ(told.size(), 0);
  EXPECT_FALSE(timer_.isRunning());
}

TEST_F(ScanStatusTest, firstScan_tellsFolderAndFilesWithoutAShare) {
  progress_.enterFolder("/Users/test/Documents");
  progress_.addFiles(12345);
  scanForAWhile();
  EXPECT_EQ(status_.text(), "Scanning Documents: 0 files");
  EXPECT_LT(status_.share(), 0);
  progress_.enterFolder("/Users/test/Pictures");
  progress_.addFiles(1);
  timer_.tick();
  EXPECT_EQ(status_.text(), "Scanning Pictures: 1 file");
  executor_.runAll();
  EXPECT_EQ(status_.text(), "");
}

TEST_F(ScanStatusTest, laterScan_tellsItsShareOfTheLast) {
  SyncHealthReport report = dashboard_->report();
  report.metrics.totalFiles = 200;
  publishReport(report);
  progress_.enterFolder("/Users/test/Documents");
  scanForAWhile();
  EXPECT_EQ(status_.share(), 0);
  progress_.addFiles(50);
  timer_.tick();
  EXPECT_EQ(status_.share(), 0.25);
  // There are more than last time.
  progress_.addFiles(500);
  timer_.tick();
  EXPECT_EQ(status_.share(), 1);
  executor_.runAll();
  EXPECT_LT(status_.share(), 0);
}

TEST_F(ScanStatusTest, reportThatIsThere_endsItBeforeTheMachineIsLookedAt) {
  progress_.enterFolder("/Users/test/Documents");
  scanForAWhile();
  EXPECT_NE(status_.text(), "");
  publishReport(dashboard_->report());
  EXPECT_TRUE(dashboard_->isScanning());
  EXPECT_EQ(status_.text(), "");
  EXPECT_FALSE(timer_.isRunning());
}

TEST_F(ScanStatusTest, nameThatIsNoText_isShownHarmless) {
  progress_.enterFolder("/a/b\nc");
  scanForAWhile();
  EXPECT_FALSE(status_.text().contains('\n'));
}

}  // namespace
}  // namespace cirrovane::test
