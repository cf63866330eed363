#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/CoverageViewModel.h"

#include <QAbstractItemModelTester>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CoverageViewModelTest : public PageTest {
 protected:
  static CoverageGap gap(GapKind kind, const std::string& path, std::optional<std::string> rule = std::nullopt) {
    return {kind, path, "Drive", false, std::move(rule)};
  }
  static CoverageReport reportOf(std::vector<CoverageGap> gaps) {
    CoverageReport report;
    report.generatedAt = at(18, 21);
    for (const CoverageGap& gap : gaps) {
      report.gapCounts.add(gap.kind);
    }
    report.gaps = std::move(gaps);
    return report;
  }
  void publish(const CoverageReport& report) {
    publishCoverage(report);
    catchUp();
  }
  void publishAcknowledged(const std::vector<Acknowledgement>& acknowledged) {
    setPublished(coverage_->acknowledgements(), acknowledged);
    catchUp();
  }
  std::string acknowledgedFile() const {
    const auto found = storage_.files().find(storePath("acknowledged.json"));
    return found == storage_.files().end() ? "" : found->second;
  }
  CoverageRow row(int number) const { return page_->rows()->row(number); }

  std::unique_ptr<CoverageViewModel> page_ = open<CoverageViewModel>();
  QAbstractItemModelTester checks_{page_->rows(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(CoverageViewModelTest, beforeTheFirstLook_saysSo) {
  EXPECT_EQ(page_->summary(), "Nobody has looked yet.");
  EXPECT_EQ(page_->lookedAt(), "");
  EXPECT_FALSE(page_->isLooking());
  EXPECT_THAT(rowsOf(*page_->rows()), IsEmpty());
}

TEST_F(CoverageViewModelTest, lookWithoutGaps_saysWhatWasLookedAt) {
  CoverageReport report = reportOf({});
  report.complete = true;
  report.examined = {.hidden = 3, .inPackages = 12, .packages = 1};
  publish(report);
  EXPECT_EQ(page_->summary(), "The verdict vouches for everything in your watched folders.");
  EXPECT_EQ(page_->lookedAt(), "Looked at 6:21:00 PM: 3 hidden items, 1 package and 12 items in them.");
}

TEST_F(CoverageViewModelTest, gaps_standByTheirKindsWithReasonAndAdvice) {
  publish(reportOf({gap(GapKind::syncPaused, "/d/a"), gap(GapKind::syncPaused, "/d/b"),
                    gap(GapKind::excluded, "/d/c.nosync", "*.nosync")}));
  ASSERT_EQ(page_->rows()->count(), 3);
  EXPECT_EQ(row(0).heading, "Sync Paused (2)");
  EXPECT_EQ(row(0).note,
            "Changes to this item stay on this Mac while its sync is paused. Close the document in the app that paused "
            "it.");
  EXPECT_EQ(row(0).path, "/d/a");
  EXPECT_EQ(row(0).detail, "In Drive");
  EXPECT_TRUE(row(0).canReveal);
  EXPECT_TRUE(row(0).canAcknowledge);
  EXPECT_FALSE(row(0).canForget);
  EXPECT_EQ(row(1).heading, "");
  EXPECT_EQ(row(1).note, "");
  EXPECT_EQ(row(2).heading, "Left Out of iCloud (1)");
  EXPECT_EQ(row(2).detail, "In Drive · *.nosync");
  for (int number = 0; number < 3; ++number) {
    EXPECT_EQ(row(number).more, "");
  }
}

TEST_F(CoverageViewModelTest, gapsBeyondTheList_areCounted) {
  CoverageReport report = reportOf({gap(GapKind::syncPaused, "/d/a")});
  report.gapCounts.syncPaused = 3;
  report.gapCounts.filesLost = 2;
  publish(report);
  ASSERT_EQ(page_->rows()->count(), 2);
  EXPECT_EQ(row(0).heading, "Sync Paused (3)");
  EXPECT_EQ(row(0).more, "and 2 more");
  EXPECT_EQ(row(1).heading, "Files Gone (2)");
  EXPECT_EQ(row(1).path, "");
  EXPECT_EQ(row(1).more, "and 2 more");
  EXPECT_FALSE(row(1).canReveal);
  EXPECT_FALSE(row(1).canAcknowledge);
}

TEST_F(CoverageViewModelTest, foldersThatWereNotLookedAt_standAfterTheGaps) {
  CoverageReport report = reportOf({gap(GapKind::syncPaused, "/d/a")});
  report.notExamined = {"/gone", "/else\nwhere"};
  publish(report);
  ASSERT_EQ(page_->rows()->count(), 3);
  EXPECT_EQ(row(1).heading, "Not Looked At (2)");
  EXPECT_EQ(row(1).path, "/gone");
  EXPECT_TRUE(row(1).canReveal);
  EXPECT_FALSE(row(1).canAcknowledge);
  EXPECT_FALSE(row(2).path.contains('\n'));
}

TEST_F(CoverageViewModelTest, acknowledgements_standLastWithTheirTime) {
  publish(reportOf({gap(GapKind::syncPaused, "/d/a")}));
  publishAcknowledged({{"/d/x", at(18, 20), std::nullopt}, {"/d/y", at(18, 21), at(18, 21) + std::chrono::days(7)}});
  ASSERT_EQ(page_->rows()->count(), 3);
  EXPECT_EQ(row(1).heading, "Acknowledged (2)");
  EXPECT_EQ(row(1).path, "/d/x");
  EXPECT_EQ(row(1).detail, "Since Nov 15, 6:20 PM, for good");
  EXPECT_EQ(row(2).detail, "Since Nov 15, 6:21 PM, until Nov 22, 6:21 PM");
  EXPECT_TRUE(row(1).canForget);
  EXPECT_FALSE(row(1).canAcknowledge);
}

TEST_F(CoverageViewModelTest, acknowledgedForAWeek_isKeptAndGoesFromTheGaps) {
  coverage_->follow({});
  executor_.runAll();
  publish(reportOf({gap(GapKind::syncPaused, "/d/a"), gap(GapKind::syncPaused, "/d/b")}));
  page_->acknowledgeForAWeek(1);
  EXPECT_TRUE(page_->isChanging());
  executor_.runAll();
  catchUp();
  EXPECT_FALSE(page_->isChanging());
  EXPECT_THAT(acknowledgedFile(), HasSubstr("\"path\": \"/d/b\""));
  EXPECT_THAT(acknowledgedFile(), HasSubstr("\"expiresAt\""));
}

TEST_F(CoverageViewModelTest, acknowledgedForGood_hasNoEnd) {
  publish(reportOf({gap(GapKind::syncPaused, "/d/a")}));
  page_->acknowledgeForGood(0);
  executor_.runAll();
  EXPECT_THAT(acknowledgedFile(), HasSubstr("\"path\": \"/d/a\""));
  EXPECT_THAT(acknowledgedFile(), testing::Not(HasSubstr("\"expiresAt\"")));
}

TEST_F(CoverageViewModelTest, rowsWithoutThatCommand_ignoreIt) {
  publishAcknowledged({{"/d/x", at(18, 20), std::nullopt}});
  page_->acknowledgeForGood(0);
  page_->acknowledgeForGood(7);
  page_->forget(-1);
  EXPECT_EQ(executor_.size(), 0U);
  publish(reportOf({gap(GapKind::syncPaused, "/d/a")}));
  page_->forget(0);
  EXPECT_EQ(executor_.size(), 0U);
}

TEST_F(CoverageViewModelTest, changeThatFails_isSaidInWords) {
  storage_.lockFailure = Failure{"somebody else changes it"};
  publish(reportOf({gap(GapKind::syncPaused, "/d/a")}));
  page_->acknowledgeForGood(0);
  executor_.runAll();
  catchUp();
  EXPECT_EQ(page_->failure(), "It could not be acknowledged: somebody else changes it");
  EXPECT_EQ(row(0).path, "/d/a");
  page_->opened();
  EXPECT_EQ(page_->failure(), "");
}

TEST_F(CoverageViewModelTest, forgottenRow_isTakenBack) {
  files_.addExisting(storePath("acknowledged.json"));
  publish(reportOf({gap(GapKind::syncPaused, "/d/a")}));
  page_->acknowledgeForGood(0);
  executor_.runAll();
  catchUp();
  ASSERT_EQ(row(page_->rows()->count() - 1).path, "/d/a");
  page_->forget(page_->rows()->count() - 1);
  executor_.runAll();
  catchUp();
  EXPECT_EQ(page_->failure(), "");
  EXPECT_THAT(acknowledgedFile(), testing::Not(HasSubstr("/d/a")));
}

TEST_F(CoverageViewModelTest, lookAgain_isUnderWayUntilItIsOver) {
  coverage_->follow(dashboard_->watchlist().folders());
  executor_.runAll();
  page_->lookAgain();
  EXPECT_TRUE(page_->isLooking());
  executor_.runAll();
  EXPECT_FALSE(page_->isLooking());
}

TEST_F(CoverageViewModelTest, reveal_showsTheItemAsItIsOnTheDisk) {
  files_.addExisting("/d/a\nb");
  publish(reportOf({gap(GapKind::syncPaused, "/d/a\nb")}));
  page_->reveal(0);
  EXPECT_THAT(workspace_.revealed(), ElementsAre("/d/a\nb"));
}

TEST_F(CoverageViewModelTest, anotherGap_leavesTheRowsThatStay) {
  publish(reportOf({gap(GapKind::syncPaused, "/d/b")}));
  const RowSignals told(*page_->rows());
  publish(reportOf({gap(GapKind::syncPaused, "/d/a"), gap(GapKind::syncPaused, "/d/b")}));
  EXPECT_EQ(told.insertions(), 1);
  // It has no longer the heading.
  EXPECT_EQ(told.changedRow(), 1);
  EXPECT_EQ(told.total(), 2);
}

}  // namespace
}  // namespace cirrovane::test
