#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/SafetyExplainerViewModel.h"

#include <QAbstractItemModelTester>
#include <memory>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SafetyExplainerViewModelTest : public PageTest {
 protected:
  void publish(SyncHealthReport report) {
    publishReport(std::move(report));
    catchUp();
  }
  static SyncHealthReport reportOf(std::vector<SyncBlocker> blockers) {
    SyncHealthReport report;
    report.generatedAt = at(18, 21);
    report.blockers = std::move(blockers);
    return report;
  }

  static CriterionRow notChecked(const QString& title, const QString& detail) {
    return {.title = title,
            .detail = detail,
            .symbol = "ellipsis.circle",
            .tone = Tone::Neutral,
            .state = "Not checked yet"};
  }
  static CriterionRow notPassed(const QString& title, const QString& detail) {
    return {.title = title,
            .detail = detail,
            .symbol = "xmark.octagon.fill",
            .tone = Tone::Critical,
            .state = "Not passed"};
  }

  std::unique_ptr<SafetyExplainerViewModel> page_ = open<SafetyExplainerViewModel>();
  QAbstractItemModelTester checks_{page_->criteria(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(SafetyExplainerViewModelTest, gaps_areNotedBesideAYesAlone) {
  CoverageReport coverage;
  coverage.gapCounts.excluded = 1;
  publishCoverage(coverage);
  SyncHealthReport report;
  report.safeToClose = true;
  publish(report);
  EXPECT_EQ(page_->coverageNote(), "The verdict does not vouch for 1 item.");
  report.safeToClose = false;
  publish(report);
  EXPECT_EQ(page_->coverageNote(), "");
}

TEST_F(SafetyExplainerViewModelTest, beforeTheFirstScan_isNoAndNothingPasses) {
  EXPECT_EQ(page_->verdict(), "NO");
  EXPECT_EQ(page_->verdictTone(), Tone::Neutral);
  EXPECT_EQ(page_->lastEvaluation(), "Last evaluation: not yet");
  EXPECT_FALSE(page_->hasTopBlocker());
  EXPECT_THAT(
      rowsOf(*page_->criteria()),
      ElementsAre(notChecked("No pending uploads", "No pending uploads detected."),
                  notChecked("No unresolved conflicts", "No unresolved conflict states detected."),
                  notChecked("No upload/download errors", "No iCloud transfer errors detected."),
                  notChecked("No critical blockers", "No critical blocker category is active."),
                  notChecked("Watchlist coverage intact", "All watched folders are reachable and within coverage.")));
}

TEST_F(SafetyExplainerViewModelTest, passingCriteria_areMarked) {
  publish(reportOf({}));
  ASSERT_EQ(page_->criteria()->count(), 5);
  for (const CriterionRow& row : rowsOf(*page_->criteria())) {
    EXPECT_EQ(row.symbol, "checkmark.circle.fill");
    EXPECT_EQ(row.tone, Tone::Good);
    EXPECT_EQ(row.state, "Passed");
  }
}

TEST_F(SafetyExplainerViewModelTest, yesThatIsStale_isDimmedAndSaysSinceWhenAndWhy) {
  SyncHealthReport report = reportOf({});
  report.status = HealthState::safe;
  report.safeToClose = true;
  publish(report);
  EXPECT_EQ(page_->verdictNote(), "");
  publishStanding(VerdictStanding::expired);
  catchUp();
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictTone(), Tone::Neutral);
  EXPECT_EQ(page_->verdictNote(), "as of 6:25:00 PM. The last scan is over 3 minutes old.");
}

TEST_F(SafetyExplainerViewModelTest, failingCriteria_areMarkedAndCounted) {
  SyncHealthReport report = reportOf(makeBlockers({BlockerReason::outsideICloud, BlockerReason::unresolvedConflict}));
  report.metrics.pendingUploads = 1;
  report.metrics.unresolvedConflicts = 2;
  report.metrics.errors = 3;
  publish(report);
  EXPECT_THAT(
      rowsOf(*page_->criteria()),
      ElementsAre(notPassed("No pending uploads", "1 uploads are still pending."),
                  notPassed("No unresolved conflicts", "2 conflict states remain unresolved."),
                  notPassed("No upload/download errors", "3 transfer errors were detected."),
                  notPassed("No critical blockers", "Critical blockers exist in the current watchlist."),
                  notPassed("Watchlist coverage intact", "1 watchlist entries are outside iCloud or missing.")));
}

TEST_F(SafetyExplainerViewModelTest, lastEvaluation_isTheReportsTimeOfDay) {
  publish(reportOf({}));
  EXPECT_EQ(page_->lastEvaluation(), "Last evaluation: 6:21:00 PM");
}

TEST_F(SafetyExplainerViewModelTest, safeReport_withCloudOnlyBlockers_saysYesAndShowsTheFirst) {
  SyncHealthReport report = reportOf(makeBlockers(BlockerReason::notDownloaded, 2));
  report.status = HealthState::safe;
  report.safeToClose = true;
  publish(report);
  EXPECT_EQ(page_->verdict(), "YES");
  EXPECT_EQ(page_->verdictTone(), Tone::Good);
  EXPECT_TRUE(page_->hasTopBlocker());
  EXPECT_EQ(page_->topBlockerReason(), "Cloud-Only (Not Local)");
  EXPECT_EQ(page_->topBlockerPath(), "/notDownloaded0");
  EXPECT_EQ(page_->topBlockerDetails(), "Details.");
}

TEST_F(SafetyExplainerViewModelTest, topBlocker_resolved_isNoLongerShown) {
  publish(reportOf(makeBlockers(BlockerReason::uploadError, 1)));
  EXPECT_TRUE(page_->hasTopBlocker());
  publish(reportOf({}));
  EXPECT_FALSE(page_->hasTopBlocker());
  page_->revealTopBlocker();
  EXPECT_THAT(workspace_.revealed(), IsEmpty());
}

TEST_F(SafetyExplainerViewModelTest, hostilePath_isShownHarmlessAndRevealedAsItIs) {
  const std::string path = "/Users/test/a\n\xe2\x80\xae" + std::string(2'000, 'x') + "\xff";
  files_.addExisting(path);
  publish(reportOf({makeBlocker(BlockerReason::uploadError, path)}));
  EXPECT_EQ(page_->topBlockerPath().toStdString(), "/Users/test/a\\n\\u{202e}" + std::string(2'000, 'x') + "\\xff");
  page_->revealTopBlocker();
  EXPECT_THAT(workspace_.revealed(), ElementsAre(path));
}

TEST_F(SafetyExplainerViewModelTest, refresh_withTheSameReport_changesNoRow) {
  publish(reportOf({}));
  const RowSignals changes(*page_->criteria());
  publish(reportOf({}));
  EXPECT_EQ(changes.total(), 0);
  SyncHealthReport report = reportOf({});
  report.metrics.errors = 1;
  publish(report);
  EXPECT_EQ(changes.total(), 1);
}

}  // namespace
}  // namespace cirrovane::test
