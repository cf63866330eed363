#include "coordinator/Explanation.h"
#include "tests/coordinator/Builders.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> keysOf(const Explanation& explanation) {
  std::vector<std::string> keys;
  const auto json = nlohmann::ordered_json::parse(encodeJSON(explanation));
  for (const auto& entry : json.items()) {
    keys.push_back(entry.key());
  }
  return keys;
}

TEST(Explanation, everything_isTakenFromReportHistoryAndIncidents) {
  const SyncHealthReport report = makeReport();
  const std::vector<ScanSnapshot> snapshots = {makeSnapshot(false, 1), makeSnapshot(true, 2), makeSnapshot(true, 3)};
  const std::vector<IncidentRecord> incidents = {makeIncident(false, 1), makeIncident(false, 2), makeIncident(false, 3),
                                                 makeIncident(true, 4)};
  const Explanation explanation = explain(report, snapshots, incidents);
  EXPECT_TRUE(explanation.safeToClose);
  EXPECT_EQ(explanation.topBlocker, report.blockers.front());
  ASSERT_EQ(explanation.criteria.size(), 5U);
  EXPECT_EQ(explanation.criteria[0].detail, "1 uploads are still pending.");
  EXPECT_EQ(explanation.criteria[4].detail, "1 watchlist entries are outside iCloud or missing.");
  EXPECT_EQ(explanation.recentStabilityText, "66% safe in last 3 scans");
  EXPECT_EQ(explanation.coverageGapCount, 1);
  EXPECT_EQ(explanation.activeIncidentCount, 3);
  EXPECT_EQ(explanation.resolvedIncidentCount, 1);
  EXPECT_EQ(explanation.recurringIncidentCount, 2);
  EXPECT_EQ(explanation.lastSafeSnapshot, snapshots[1]);
  EXPECT_EQ(explanation.lastFailedSnapshot, snapshots[0]);
}

TEST(Explanation, nothingKnown_lacksBlockerAndSnapshots) {
  const Explanation explanation = explain(SyncHealthReport::empty(), {}, {});
  EXPECT_FALSE(explanation.safeToClose);
  EXPECT_EQ(explanation.topBlocker, std::nullopt);
  EXPECT_EQ(explanation.recentStabilityText, "Not enough scans yet.");
  EXPECT_EQ(explanation.lastSafeSnapshot, std::nullopt);
  EXPECT_EQ(explanation.lastFailedSnapshot, std::nullopt);
}

TEST(Explanation, failedSnapshotBeyondTheTwoHundredNewest_isAbsent) {
  std::vector<ScanSnapshot> snapshots = makeSnapshots(200);
  snapshots.push_back(makeSnapshot(false));
  EXPECT_EQ(explain(SyncHealthReport(), snapshots, {}).lastFailedSnapshot, std::nullopt);
}

TEST(Explanation, writtenForm_hasSortedKeysAndNoneForWhatIsAbsent) {
  EXPECT_THAT(keysOf(explain(makeReport(), {makeSnapshot(true), makeSnapshot(false)}, {})),
              ElementsAre("activeIncidentCount", "coverageGapCount", "criteria", "lastFailedSnapshot",
                          "lastSafeSnapshot", "recentStabilityText", "recurringIncidentCount", "resolvedIncidentCount",
                          "safeToClose", "topBlocker"));
  EXPECT_THAT(keysOf(explain(SyncHealthReport(), {}, {})),
              ElementsAre("activeIncidentCount", "coverageGapCount", "criteria", "recentStabilityText",
                          "recurringIncidentCount", "resolvedIncidentCount", "safeToClose"));
}

}  // namespace
}  // namespace cirrovane::test
