#include "coordinator/HistorySummary.h"
#include "tests/coordinator/Builders.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// The newest snapshots first, "+" for a safe one.
std::vector<ScanSnapshot> historyOf(const std::string& verdicts) {
  std::vector<ScanSnapshot> snapshots;
  for (const char verdict : verdicts) {
    snapshots.push_back(makeSnapshot(verdict == '+', static_cast<std::int64_t>(snapshots.size())));
  }
  return snapshots;
}

/// The scores of the snapshots, which are their places in the history.
std::vector<std::int64_t> placesOf(Snapshots snapshots) {
  std::vector<std::int64_t> places;
  for (const ScanSnapshot& snapshot : snapshots) {
    places.push_back(snapshot.score);
  }
  return places;
}

std::vector<std::int64_t> firstPlaces(std::size_t count) {
  std::vector<std::int64_t> places;
  while (places.size() < count) {
    places.push_back(static_cast<std::int64_t>(places.size()));
  }
  return places;
}

TEST(HistorySummary, recentHistoryOfEight_isAllAndOfNineTheEightNewest) {
  EXPECT_EQ(placesOf(recentHistory(makeSnapshots(0))), firstPlaces(0));
  EXPECT_EQ(placesOf(recentHistory(makeSnapshots(7))), firstPlaces(7));
  EXPECT_EQ(placesOf(recentHistory(makeSnapshots(8))), firstPlaces(8));
  EXPECT_EQ(placesOf(recentHistory(makeSnapshots(9))), firstPlaces(8));
}

TEST(HistorySummary, fullHistoryOfTwoHundred_isAllAndOfOneMoreTheTwoHundredNewest) {
  EXPECT_EQ(placesOf(fullHistory(makeSnapshots(0))), firstPlaces(0));
  EXPECT_EQ(placesOf(fullHistory(makeSnapshots(199))), firstPlaces(199));
  EXPECT_EQ(placesOf(fullHistory(makeSnapshots(200))), firstPlaces(200));
  EXPECT_EQ(placesOf(fullHistory(makeSnapshots(201))), firstPlaces(200));
}

TEST(HistorySummary, lastSnapshot_isTheNewestOfItsVerdict) {
  const std::vector<ScanSnapshot> snapshots = historyOf("++-+-");
  EXPECT_EQ(lastSnapshot(snapshots, true), snapshots[0]);
  EXPECT_EQ(lastSnapshot(snapshots, false), snapshots[2]);
}

TEST(HistorySummary, lastSnapshotOfAVerdictNeverSeen_isAbsent) {
  EXPECT_EQ(lastSnapshot(historyOf("+++"), false), std::nullopt);
  EXPECT_EQ(lastSnapshot(historyOf("---"), true), std::nullopt);
  EXPECT_EQ(lastSnapshot({}, true), std::nullopt);
  EXPECT_EQ(lastSnapshot({}, false), std::nullopt);
}

TEST(HistorySummary, lastSnapshotBeyondTheTwoHundredNewest_isAbsent) {
  std::vector<ScanSnapshot> snapshots = makeSnapshots(200);
  snapshots.push_back(makeSnapshot(false));
  EXPECT_EQ(lastSnapshot(snapshots, false), std::nullopt);
  snapshots[199].safeToClose = false;
  EXPECT_EQ(lastSnapshot(snapshots, false), snapshots[199]);
}

TEST(HistorySummary, stabilityOfNoScans_isNotEnough) {
  EXPECT_EQ(recentStabilityText({}), "Not enough scans yet.");
}

TEST(HistorySummary, stabilityOfOneUnsafeScan_isZero) {
  EXPECT_EQ(recentStabilityText(historyOf("-")), "0% safe in last 1 scans");
}

TEST(HistorySummary, stabilityPercentage_isCutOffAndNotRounded) {
  EXPECT_EQ(recentStabilityText(historyOf("+")), "100% safe in last 1 scans");
  EXPECT_EQ(recentStabilityText(historyOf("++-")), "66% safe in last 3 scans");
  EXPECT_EQ(recentStabilityText(historyOf("-+-")), "33% safe in last 3 scans");
  EXPECT_EQ(recentStabilityText(historyOf("++++++-")), "85% safe in last 7 scans");
}

TEST(HistorySummary, stabilityInTenths_isExact) {
  for (std::size_t safe = 0; safe <= 10; ++safe) {
    const std::vector<ScanSnapshot> snapshots = historyOf(std::string(safe, '+') + std::string(10 - safe, '-'));
    EXPECT_EQ(recentStabilityText(snapshots), std::to_string(safe * 10) + "% safe in last 10 scans");
  }
}

TEST(HistorySummary, stabilityOfFifteenScans_countsTheTenNewest) {
  EXPECT_EQ(recentStabilityText(historyOf("+++++++---+++++")), "70% safe in last 10 scans");
  EXPECT_EQ(recentStabilityText(historyOf("----------+++++")), "0% safe in last 10 scans");
  EXPECT_EQ(recentStabilityText(historyOf("++++++++++-")), "100% safe in last 10 scans");
}

TEST(HistorySummary, incidents_areActiveOrResolved) {
  const std::vector<IncidentRecord> incidents = {makeIncident(false, 1), makeIncident(true, 1), makeIncident(false, 3)};
  EXPECT_EQ(activeIncidentCount(incidents), 2);
  EXPECT_EQ(resolvedIncidentCount(incidents), 1);
  EXPECT_EQ(activeIncidentCount({}), 0);
  EXPECT_EQ(resolvedIncidentCount({}), 0);
}

TEST(HistorySummary, recurringIncident_isAnActiveOneSeenTwiceOrMore) {
  const auto countOf = [](bool isResolved, std::int64_t occurrences) {
    return recurringIncidentCount(std::vector{makeIncident(isResolved, occurrences)});
  };
  EXPECT_EQ(countOf(false, 1), 0);
  EXPECT_EQ(countOf(false, 2), 1);
  EXPECT_EQ(countOf(false, 5), 1);
}

TEST(HistorySummary, resolvedIncidentSeenFiveTimes_isResolvedAndNotRecurring) {
  const std::vector<IncidentRecord> incidents = {makeIncident(true, 5)};
  EXPECT_EQ(resolvedIncidentCount(incidents), 1);
  EXPECT_EQ(recurringIncidentCount(incidents), 0);
  EXPECT_EQ(activeIncidentCount(incidents), 0);
}

}  // namespace
}  // namespace cirrovane::test
