#include "coordinator/SafetyCriterion.h"
#include "tests/core/Builders.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

constexpr std::size_t kUploads = 0;
constexpr std::size_t kConflicts = 1;
constexpr std::size_t kErrors = 2;
constexpr std::size_t kCritical = 3;
constexpr std::size_t kCoverage = 4;

SyncHealthReport reportWith(const std::vector<BlockerReason>& reasons) {
  SyncHealthReport report;
  report.blockers = makeBlockers(reasons);
  return report;
}

std::vector<bool> passingOf(const SyncHealthReport& report) {
  std::vector<bool> passing;
  for (const SafetyCriterion& criterion : safetyCriteria(report)) {
    passing.push_back(criterion.isPassing);
  }
  return passing;
}

std::vector<std::string> detailsOf(const SyncHealthReport& report) {
  std::vector<std::string> details;
  for (const SafetyCriterion& criterion : safetyCriteria(report)) {
    details.push_back(criterion.detail);
  }
  return details;
}

TEST(SafetyCriteria, titles_areTheSameFiveInOrderWhateverTheReport) {
  for (const SyncHealthReport& report : {SyncHealthReport::empty(), makeReport()}) {
    std::vector<std::string> titles;
    for (const SafetyCriterion& criterion : safetyCriteria(report)) {
      titles.push_back(criterion.title);
    }
    EXPECT_THAT(titles, ElementsAre("No pending uploads", "No unresolved conflicts", "No upload/download errors",
                                    "No critical blockers", "Watchlist coverage intact"));
  }
}

TEST(SafetyCriteria, emptyReport_passesAllThoughItsVerdictIsUnsafe) {
  const SyncHealthReport& report = SyncHealthReport::empty();
  ASSERT_FALSE(report.safeToClose);
  EXPECT_THAT(passingOf(report), ElementsAre(true, true, true, true, true));
  EXPECT_THAT(detailsOf(report),
              ElementsAre("No pending uploads detected.", "No unresolved conflict states detected.",
                          "No iCloud transfer errors detected.", "No critical blocker category is active.",
                          "All watched folders are reachable and within coverage."));
}

TEST(SafetyCriteria, everythingWrong_failsAllThoughTheVerdictIsSafe) {
  SyncHealthReport report =
      reportWith({BlockerReason::unavailableFolder, BlockerReason::outsideICloud, BlockerReason::notUploaded});
  report.safeToClose = true;
  report.metrics.pendingUploads = 1200;
  report.metrics.unresolvedConflicts = 3;
  report.metrics.errors = 4;
  EXPECT_THAT(passingOf(report), ElementsAre(false, false, false, false, false));
  EXPECT_THAT(detailsOf(report),
              ElementsAre("1200 uploads are still pending.", "3 conflict states remain unresolved.",
                          "4 transfer errors were detected.", "Critical blockers exist in the current watchlist.",
                          "2 watchlist entries are outside iCloud or missing."));
}

TEST(SafetyCriteria, countOfOne_isStillPlural) {
  SyncHealthReport report = reportWith({BlockerReason::unavailableFolder});
  report.metrics.pendingUploads = 1;
  report.metrics.unresolvedConflicts = 1;
  report.metrics.errors = 1;
  EXPECT_THAT(detailsOf(report),
              ElementsAre("1 uploads are still pending.", "1 conflict states remain unresolved.",
                          "1 transfer errors were detected.", "Critical blockers exist in the current watchlist.",
                          "1 watchlist entries are outside iCloud or missing."));
}

TEST(SafetyCriteria, eachCount_failsItsOwnCriterionOnly) {
  SyncHealthReport report;
  report.metrics.pendingUploads = 1;
  EXPECT_THAT(passingOf(report), ElementsAre(false, true, true, true, true));
  report.metrics = {.unresolvedConflicts = 1};
  EXPECT_THAT(passingOf(report), ElementsAre(true, false, true, true, true));
  report.metrics = {.errors = 1};
  EXPECT_THAT(passingOf(report), ElementsAre(true, true, false, true, true));
}

TEST(SafetyCriteria, otherCounts_failNothing) {
  SyncHealthReport report;
  report.metrics = {.totalFiles = 1, .scannedFolders = 1, .notDownloaded = 1};
  report.status = HealthState::danger;
  EXPECT_THAT(passingOf(report), ElementsAre(true, true, true, true, true));
}

TEST(SafetyCriteria, criticalBlocker_isAnyButOutsideICloudAndNotDownloaded) {
  const std::set<BlockerReason> harmless = {BlockerReason::outsideICloud, BlockerReason::notDownloaded};
  for (const BlockerReason reason : kAllBlockerReasons) {
    EXPECT_EQ(safetyCriteria(reportWith({reason}))[kCritical].isPassing, harmless.contains(reason)) << reason;
  }
}

TEST(SafetyCriteria, criticalBlockerBehindHarmlessOnes_isFound) {
  EXPECT_FALSE(safetyCriteria(reportWith(
      {BlockerReason::notDownloaded, BlockerReason::outsideICloud, BlockerReason::stalledUpload}))[kCritical]
                   .isPassing);
}

TEST(SafetyCriteria, onlyNotDownloadedBlockers_passAll) {
  SyncHealthReport report;
  report.blockers = makeBlockers(BlockerReason::notDownloaded, 3);
  EXPECT_THAT(passingOf(report), ElementsAre(true, true, true, true, true));
}

TEST(SafetyCriteria, onlyOutsideICloud_failsCoverageAlone) {
  const SyncHealthReport report = reportWith({BlockerReason::outsideICloud});
  EXPECT_THAT(passingOf(report), ElementsAre(true, true, true, true, false));
  EXPECT_EQ(safetyCriteria(report)[kCoverage].detail, "1 watchlist entries are outside iCloud or missing.");
}

TEST(SafetyCriteria, blockersWithoutCounts_leaveTheCountedCriteriaPassing) {
  const SyncHealthReport report =
      reportWith({BlockerReason::notUploaded, BlockerReason::unresolvedConflict, BlockerReason::uploadError});
  const std::vector<bool> passing = passingOf(report);
  EXPECT_TRUE(passing[kUploads]);
  EXPECT_TRUE(passing[kConflicts]);
  EXPECT_TRUE(passing[kErrors]);
}

TEST(SafetyCriteria, identifiers_areFreshAtEachReading) {
  std::set<UUID> seen;
  for (int reading = 0; reading < 2; ++reading) {
    for (const SafetyCriterion& criterion : safetyCriteria(SyncHealthReport())) {
      EXPECT_TRUE(seen.insert(criterion.id).second);
    }
  }
  EXPECT_EQ(seen.size(), 10U);
}

TEST(SafetyCriteria, writtenForm_isTitlePassingAndDetail) {
  EXPECT_EQ(encodeJSON(safetyCriteria(SyncHealthReport()).front()),
            "{\n"
            "  \"detail\": \"No pending uploads detected.\",\n"
            "  \"isPassing\": true,\n"
            "  \"title\": \"No pending uploads\"\n"
            "}");
}

TEST(CoverageGapCount, countsMissingAndOutsideFoldersOnly) {
  for (const BlockerReason reason : kAllBlockerReasons) {
    const bool isGap = reason == BlockerReason::unavailableFolder || reason == BlockerReason::outsideICloud;
    EXPECT_EQ(coverageGapCount(reportWith({reason})), isGap ? 1 : 0) << reason;
  }
  EXPECT_EQ(coverageGapCount(SyncHealthReport()), 0);
  EXPECT_EQ(coverageGapCount(reportWith({BlockerReason::outsideICloud, BlockerReason::notUploaded,
                                         BlockerReason::unavailableFolder, BlockerReason::outsideICloud})),
            3);
}

}  // namespace
}  // namespace cirrovane::test
