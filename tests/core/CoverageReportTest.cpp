#include "core/CoverageReport.h"
#include "tests/core/Builders.h"

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;

CoverageReport reportOf(const std::vector<std::pair<GapKind, std::string>>& gaps) {
  CoverageReport report;
  for (const auto& [kind, path] : gaps) {
    report.gaps.push_back({kind, path, "Drive", false, std::nullopt});
    report.gapCounts.add(kind);
  }
  return report;
}

TEST(WithAcknowledged, gap_isLeftOutWithAllBelow) {
  const CoverageReport before = reportOf({{GapKind::syncPaused, "/d/a"},
                                          {GapKind::syncPaused, "/d/ab"},
                                          {GapKind::excluded, "/d/a/x"},
                                          {GapKind::excluded, "/d/a/y"}});
  const CoverageReport after = withAcknowledged(before, before.gaps[0]);
  EXPECT_EQ(after.gaps, std::vector{before.gaps[1]});
  EXPECT_EQ(after.gapCounts.syncPaused, 1);
  EXPECT_EQ(after.gapCounts.excluded, std::nullopt);
  EXPECT_EQ(after.acknowledged, 3);
  EXPECT_FALSE(after.complete);
}

TEST(WithAcknowledged, lastGap_makesTheCoverageComplete) {
  CoverageReport report = reportOf({{GapKind::notInICloud, "/d/a"}});
  const CoverageGap gap = report.gaps.front();
  EXPECT_TRUE(withAcknowledged(report, gap).complete);
  report.notExamined = {"/elsewhere"};
  EXPECT_FALSE(withAcknowledged(report, gap).complete);
}

TEST(WithAcknowledged, lostFiles_goAlone) {
  const CoverageReport before = reportOf({{GapKind::notInICloud, "/d/a"}, {GapKind::filesLost, "/d"}});
  const CoverageReport after = withAcknowledged(before, before.gaps[1]);
  EXPECT_EQ(after.gaps, std::vector{before.gaps[0]});
  EXPECT_EQ(after.acknowledged, 0);
}

TEST(WithAcknowledged, gapsThatAreCountedOnly_stayCounted) {
  CoverageReport report = reportOf({{GapKind::syncPaused, "/d/a"}});
  report.gapCounts.syncPaused = 501;
  const CoverageReport after = withAcknowledged(report, report.gaps.front());
  EXPECT_THAT(after.gaps, IsEmpty());
  EXPECT_EQ(after.gapCounts.syncPaused, 500);
  EXPECT_FALSE(after.complete);
}

}  // namespace
}  // namespace cirrovane::test
