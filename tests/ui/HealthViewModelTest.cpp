#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/HealthViewModel.h"

#include <cstdint>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class HealthViewModelTest : public PageTest {
 protected:
  void publish(const SyncHealthReport& report) {
    publishReport(report);
    catchUp();
  }
  void publishState(HealthState status, bool safeToClose) {
    SyncHealthReport report = makeReport();
    report.status = status;
    report.safeToClose = safeToClose;
    publish(report);
  }
  QString localStateAt(std::int64_t score) {
    SyncHealthReport report = makeReport();
    report.localAvailabilityScore = score;
    publish(report);
    return page_->localState();
  }

  std::unique_ptr<HealthViewModel> page_ = open<HealthViewModel>();
};

TEST_F(HealthViewModelTest, beforeTheFirstScan_isNotSafeAndHasNeitherGoodNorBadSigns) {
  EXPECT_EQ(page_->state(), "");
  EXPECT_EQ(page_->stateSymbol(), "ellipsis.circle");
  EXPECT_EQ(page_->stateLabel(), "Scanning");
  EXPECT_EQ(page_->verdict(), "NO");
  EXPECT_EQ(page_->verdictState(), "");
  EXPECT_EQ(page_->localState(), "");
  EXPECT_EQ(page_->updatedText(), "Not scanned yet");
  EXPECT_EQ(page_->uploadTrust(), 0);
  EXPECT_THAT(texts(*page_->metrics()), ElementsAre("Files|0|", "Pending|0|", "Conflicts|0|", "Errors|0|",
                                                    "Watchlist|1|", "Local Ready|0|", "Cloud-Only|0|"));
}

TEST_F(HealthViewModelTest, eachState_hasItsSymbol) {
  publishState(HealthState::safe, true);
  EXPECT_EQ(page_->state(), "safe");
  EXPECT_EQ(page_->stateSymbol(), "checkmark.seal.fill");
  publishState(HealthState::warning, true);
  EXPECT_EQ(page_->state(), "warning");
  EXPECT_EQ(page_->stateSymbol(), "exclamationmark.triangle.fill");
  publishState(HealthState::danger, false);
  EXPECT_EQ(page_->state(), "danger");
  EXPECT_EQ(page_->stateSymbol(), "xmark.octagon.fill");
}

TEST_F(HealthViewModelTest, verdict_isTheReportsAndNotTheStates) {
  publishState(HealthState::warning, true);
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictState(), "safe");
  publishState(HealthState::safe, false);
  EXPECT_EQ(page_->verdict(), "NO");
  EXPECT_EQ(page_->verdictState(), "danger");
  EXPECT_EQ(page_->state(), "warning");
}

TEST_F(HealthViewModelTest, yesThatIsStale_isDimmedAndSaysSinceWhenAndWhy) {
  publishState(HealthState::safe, true);
  EXPECT_EQ(page_->verdictNote(), "");
  publishStanding(VerdictStanding::slept);
  catchUp();
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictState(), "");
  EXPECT_EQ(page_->verdictNote(), "as of 6:25:00 PM. This Mac slept after the last scan.");
  EXPECT_EQ(page_->state(), "warning");
  EXPECT_EQ(page_->stateSymbol(), "exclamationmark.triangle.fill");
}

TEST_F(HealthViewModelTest, liveness_isToldWithItsReasonOnceThereIsAVerdict) {
  publishLiveness({LivenessState::notLive, "The watch is being set up."});
  catchUp();
  EXPECT_EQ(page_->liveness(), "");
  publishState(HealthState::safe, true);
  EXPECT_EQ(page_->liveness(), "Not live. The watch is being set up.");
  publishLiveness({LivenessState::live, ""});
  catchUp();
  EXPECT_EQ(page_->liveness(), "Live");
  publishLiveness({LivenessState::catchingUp, "The folder /a\nb moved."});
  catchUp();
  EXPECT_EQ(page_->liveness(), "Catching up. The folder /a\\nb moved.");
}

TEST_F(HealthViewModelTest, report_isToldWhole) {
  publish(makeReport());
  EXPECT_EQ(page_->uploadTrust(), 36);
  EXPECT_EQ(page_->localAvailability(), 71);
  EXPECT_EQ(page_->updatedText(), "Updated 6:21:00 PM");
  EXPECT_THAT(texts(*page_->metrics()),
              ElementsAre("Files|12|", "Pending|1|warning", "Conflicts|4|danger", "Errors|5|danger", "Watchlist|1|",
                          "Local Ready|71|", "Cloud-Only|6|"));
}

TEST_F(HealthViewModelTest, largeCounts_arePlainIntegers) {
  SyncHealthReport report = makeReport();
  report.metrics.totalFiles = 1'234'567;
  publish(report);
  EXPECT_EQ(texts(*page_->metrics())[0], "Files|1234567|");
}

TEST_F(HealthViewModelTest, localState_ofItsOwnScore_isNeverADanger) {
  EXPECT_EQ(localStateAt(100), "safe");
  EXPECT_EQ(localStateAt(0), "warning");
  EXPECT_EQ(localStateAt(71), "warning");
}

TEST_F(HealthViewModelTest, watchlist_grown_isCountedBeforeTheNextScan) {
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  catchUp();
  EXPECT_EQ(texts(*page_->metrics())[4], "Watchlist|2|");
}

TEST_F(HealthViewModelTest, sameReportAgain_changesNoPill) {
  publish(makeReport());
  const RowSignals pills(*page_->metrics());
  publish(makeReport());
  EXPECT_EQ(pills.total(), 0);
}

TEST_F(HealthViewModelTest, oneCountChanged_changesThatPillAlone) {
  publish(makeReport());
  const RowSignals pills(*page_->metrics());
  SyncHealthReport report = makeReport();
  report.metrics.totalFiles = 13;
  publish(report);
  EXPECT_EQ(pills.changes(), 1);
  EXPECT_EQ(pills.total(), 1);
}

}  // namespace
}  // namespace cirrovane::test
