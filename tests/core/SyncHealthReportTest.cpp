#include "base/JSONReader.h"
#include "core/SyncHealthReport.h"
#include "platform/Clock.h"
#include "tests/core/Builders.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

TEST(EmptyReport, everyField_saysThatNothingWasScanned) {
  const SyncHealthReport& report = SyncHealthReport::empty();
  EXPECT_EQ(report.status, HealthState::warning);
  EXPECT_EQ(report.score, 0);
  EXPECT_EQ(report.localAvailabilityScore, 0);
  EXPECT_FALSE(report.safeToClose);
  EXPECT_TRUE(report.blockers.empty());
  EXPECT_TRUE(report.folderHealth.empty());
  EXPECT_TRUE(report.actions.empty());
  EXPECT_EQ(report.metrics, ScanMetrics());
  EXPECT_EQ(report.summary, "Add a critical folder and run your first scan.");
}

TEST(EmptyReport, usedAgain_isTheSameOneWithTheSameTime) {
  const Time first = SyncHealthReport::empty().generatedAt;
  EXPECT_EQ(&SyncHealthReport::empty(), &SyncHealthReport::empty());
  EXPECT_EQ(SyncHealthReport::empty().generatedAt, first);
}

TEST(EmptyReport, generatedAt_isNotInTheFutureAndNotUnset) {
  // Made at its first use, which must not be after the look at the clock.
  const Time generatedAt = SyncHealthReport::empty().generatedAt;
  EXPECT_LE(generatedAt, SystemClock().now());
  EXPECT_GT(generatedAt, SystemClock().now() - std::chrono::hours(1));
}

TEST(EmptyReport, inJSON_saysWarningAndItsSummary) {
  const auto json = parseJSON(encodeJSON(SyncHealthReport::empty()));
  ASSERT_TRUE(json);
  EXPECT_EQ(json->at("status"), "warning");
  EXPECT_EQ(json->at("summary"), "Add a critical folder and run your first scan.");
  EXPECT_EQ(json->at("blockers"), nlohmann::json::array());
}

TEST(ScanMetrics, fresh_areAllZero) {
  const ScanMetrics metrics;
  EXPECT_EQ(metrics.totalFiles, 0);
  EXPECT_EQ(metrics.scannedFolders, 0);
  EXPECT_EQ(metrics.pendingUploads, 0);
  EXPECT_EQ(metrics.unresolvedConflicts, 0);
  EXPECT_EQ(metrics.errors, 0);
  EXPECT_EQ(metrics.notDownloaded, 0);
}

}  // namespace
}  // namespace cirrovane::test
