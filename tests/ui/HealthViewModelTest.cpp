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
  Tone localToneAt(std::int64_t score) {
    SyncHealthReport report = makeReport();
    report.localAvailabilityScore = score;
    publish(report);
    return page_->localTone();
  }

  static MetricRow row(const QString& title, const QString& value, Tone tone = Tone::Plain) {
    return {.title = title, .value = value, .tone = tone};
  }

  std::unique_ptr<HealthViewModel> page_ = open<HealthViewModel>();
};

TEST_F(HealthViewModelTest, beforeTheFirstScan_isNotSafeAndHasNeitherGoodNorBadSigns) {
  EXPECT_EQ(page_->tone(), Tone::Neutral);
  EXPECT_EQ(page_->stateSymbol(), "ellipsis.circle");
  EXPECT_EQ(page_->stateLabel(), "Scanning");
  EXPECT_EQ(page_->verdict(), "NO");
  EXPECT_EQ(page_->verdictTone(), Tone::Neutral);
  EXPECT_EQ(page_->localTone(), Tone::Neutral);
  EXPECT_EQ(page_->updatedText(), "Not scanned yet");
  EXPECT_EQ(page_->uploadTrust(), 0);
  EXPECT_THAT(rowsOf(*page_->metrics()),
              ElementsAre(row("Files", "0"), row("Pending", "0"), row("Conflicts", "0"), row("Errors", "0"),
                          row("Watchlist", "1"), row("Local Ready", "0"), row("Cloud-Only", "0")));
}

TEST_F(HealthViewModelTest, gaps_areNotedBesideAYesAlone) {
  CoverageReport coverage;
  coverage.gapCounts.excluded = 1;
  publishCoverage(coverage);
  catchUp();
  EXPECT_EQ(page_->coverageNote(), "");
  publishState(HealthState::safe, true);
  EXPECT_EQ(page_->coverageNote(), "The verdict does not vouch for 1 item.");
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictTone(), Tone::Good);
  EXPECT_EQ(page_->tone(), Tone::Good);
  publishState(HealthState::danger, false);
  EXPECT_EQ(page_->coverageNote(), "");
}

TEST_F(HealthViewModelTest, eachState_hasItsSymbolAndItsTone) {
  publishState(HealthState::safe, true);
  EXPECT_EQ(page_->tone(), Tone::Good);
  EXPECT_EQ(page_->stateSymbol(), "checkmark.seal.fill");
  publishState(HealthState::warning, true);
  EXPECT_EQ(page_->tone(), Tone::Caution);
  EXPECT_EQ(page_->stateSymbol(), "exclamationmark.triangle.fill");
  publishState(HealthState::danger, false);
  EXPECT_EQ(page_->tone(), Tone::Critical);
  EXPECT_EQ(page_->stateSymbol(), "xmark.octagon.fill");
}

TEST_F(HealthViewModelTest, verdict_isTheReportsAndNotTheStates) {
  publishState(HealthState::warning, true);
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictTone(), Tone::Good);
  publishState(HealthState::safe, false);
  EXPECT_EQ(page_->verdict(), "NO");
  EXPECT_EQ(page_->verdictTone(), Tone::Critical);
  EXPECT_EQ(page_->tone(), Tone::Caution);
}

TEST_F(HealthViewModelTest, yesThatIsStale_isDimmedAndSaysSinceWhenAndWhy) {
  publishState(HealthState::safe, true);
  EXPECT_EQ(page_->verdictNote(), "");
  publishStanding(VerdictStanding::slept);
  catchUp();
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictTone(), Tone::Neutral);
  EXPECT_EQ(page_->verdictNote(), "as of 6:25:00 PM. This Mac slept after the last scan.");
  EXPECT_EQ(page_->tone(), Tone::Caution);
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
  EXPECT_THAT(rowsOf(*page_->metrics()),
              ElementsAre(row("Files", "12"), row("Pending", "1", Tone::Caution), row("Conflicts", "4", Tone::Critical),
                          row("Errors", "5", Tone::Critical), row("Watchlist", "1"), row("Local Ready", "71"),
                          row("Cloud-Only", "6")));
}

TEST_F(HealthViewModelTest, largeCounts_arePlainIntegers) {
  SyncHealthReport report = makeReport();
  report.metrics.totalFiles = 1'234'567;
  publish(report);
  EXPECT_EQ(page_->metrics()->row(0), row("Files", "1234567"));
}

TEST_F(HealthViewModelTest, localTone_ofItsOwnScore_isNeverADanger) {
  EXPECT_EQ(localToneAt(100), Tone::Good);
  EXPECT_EQ(localToneAt(0), Tone::Caution);
  EXPECT_EQ(localToneAt(71), Tone::Caution);
}

TEST_F(HealthViewModelTest, watchlist_grown_isCountedBeforeTheNextScan) {
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  catchUp();
  EXPECT_EQ(page_->metrics()->row(4), row("Watchlist", "2"));
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
