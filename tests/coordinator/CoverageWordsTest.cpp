#include "coordinator/CoverageWords.h"

#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(CoverageWords, completeCoverage_hasNothingToSay) {
  EXPECT_EQ(unvouchedSentence(CoverageReport()), "");
  EXPECT_EQ(gapSummary(CoverageReport()), "");
  EXPECT_EQ(acknowledgedText(0), "");
}

TEST(CoverageWords, gapsAndFolders_areCountedByTheirKinds) {
  CoverageReport report;
  report.notExamined = {"/gone"};
  EXPECT_EQ(unvouchedSentence(report), "The verdict does not vouch for 1 item.");
  report.gapCounts.add(GapKind::filesLost);
  report.gapCounts.add(GapKind::syncPaused);
  report.gapCounts.add(GapKind::syncPaused);
  EXPECT_EQ(unvouchedSentence(report), "The verdict does not vouch for 4 items.");
  EXPECT_EQ(gapSummary(report), "2 Sync Paused, 1 Files Gone, 1 Not Looked At");
}

TEST(CoverageWords, gapsBeyondTheList_areTold) {
  CoverageReport report;
  report.gaps.push_back({GapKind::syncPaused, "/a", "Drive", false, std::nullopt});
  report.gapCounts.syncPaused = 1;
  EXPECT_EQ(notListedText(report, GapKind::syncPaused), "");
  report.gapCounts.syncPaused = 4;
  EXPECT_EQ(notListedText(report, GapKind::syncPaused), "and 3 more");
}

TEST(CoverageWords, counts_haveTheirNumber) {
  EXPECT_EQ(examinedText({1, 12, 0}), "1 hidden item, 0 packages and 12 items in them");
  EXPECT_EQ(acknowledgedText(1), "1 gap is acknowledged");
  EXPECT_EQ(acknowledgedText(2), "2 gaps are acknowledged");
}

}  // namespace
}  // namespace cirrovane::test
