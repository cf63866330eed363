#include "coordinator/FleetMetrics.h"
#include "tests/coordinator/Builders.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class FleetMetricsTest : public testing::Test {
 protected:
  FleetMetricsTest() {
    report_.generatedAt = Time(std::chrono::seconds(1794767100));
    report_.status = HealthState::danger;
    report_.score = 62;
    report_.localAvailabilityScore = 100;
  }
  std::string metrics() const {
    return fleetMetrics({.report = report_,
                         .coverage = isCoverageKnown_ ? &coverage_ : nullptr,
                         .uploads = uploads_,
                         .history = history_,
                         .incidents = incidents_,
                         .version = version_,
                         .probeFailures = probeFailures_,
                         .liveness = liveness_});
  }
  void addBlocker(BlockerReason reason, const std::string& path) {
    SyncBlocker blocker;
    blocker.reason = reason;
    blocker.filePath = path;
    report_.blockers.push_back(blocker);
  }

  SyncHealthReport report_;
  CoverageReport coverage_;
  PendingUploads uploads_;
  std::vector<ScanSnapshot> history_;
  std::vector<IncidentRecord> incidents_;
  std::string version_ = "v1.2 (45)";
  bool isCoverageKnown_ = true;
  std::optional<ProbeFailures> probeFailures_;
  std::optional<Liveness> liveness_;
};

TEST_F(FleetMetricsTest, verdict_isTold) {
  EXPECT_THAT(metrics(), HasSubstr("# HELP cirrovane_safe_to_close 1 when closing now loses no work that is not in "
                                   "iCloud Drive, else 0.\n# TYPE cirrovane_safe_to_close gauge\n"
                                   "cirrovane_safe_to_close 0\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_upload_trust_ratio 0.62\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_local_availability_ratio 1\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_health_state{state=\"danger\"} 1\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_health_state{state=\"safe\"} 0\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_last_scan_timestamp_seconds 1794767100.000\n"));
}

TEST_F(FleetMetricsTest, blockers_areCountedByReasonWithoutTheirNames) {
  addBlocker(BlockerReason::notUploaded, "/Users/anna/Secret plans.pages");
  addBlocker(BlockerReason::notUploaded, "/Users/anna/b");
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_blockers{reason=\"notUploaded\"} 2\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_blockers{reason=\"uploadError\"} 0\n"));
  EXPECT_THAT(metrics(), Not(HasSubstr("anna")));
}

TEST_F(FleetMetricsTest, lastSafeScan_thatNobodyKnowsOf_isAbsent) {
  EXPECT_THAT(metrics(), Not(HasSubstr("last_safe_timestamp")));
  history_ = {makeSnapshot(false, 40), makeSnapshot(true, 97)};
  history_[1].timestamp = Time(std::chrono::seconds(1794760000));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_last_safe_timestamp_seconds 1794760000.000\n"));
}

TEST_F(FleetMetricsTest, safeScan_isTheLastSafeOne) {
  history_ = {makeSnapshot(true, 97)};
  report_.safeToClose = true;
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_safe_to_close 1\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_last_safe_timestamp_seconds 1794767100.000\n"));
}

TEST_F(FleetMetricsTest, gaps_areCountedByKind) {
  coverage_.gapCounts.add(GapKind::excluded);
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_coverage_gaps{kind=\"excluded\"} 1\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_coverage_gaps{kind=\"filesLost\"} 0\n"));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_coverage_complete 0\n"));
}

TEST_F(FleetMetricsTest, coverage_thatNobodyLookedAt_isAbsent) {
  coverage_.generatedAt = Time(std::chrono::seconds(1794767000));
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_last_coverage_timestamp_seconds 1794767000.000\n"));
  isCoverageKnown_ = false;
  EXPECT_THAT(metrics(), Not(HasSubstr("coverage")));
}

TEST_F(FleetMetricsTest, probes_areToldByWhatBecameOfThem) {
  EXPECT_THAT(metrics(), Not(HasSubstr("probes")));
  probeFailures_ = {.notStarted = 1, .outOfTime = 2, .notReached = 3};
  EXPECT_THAT(metrics(), HasSubstr("# TYPE cirrovane_failed_probes gauge\n"
                                   "cirrovane_failed_probes{outcome=\"notStarted\"} 1\n"
                                   "cirrovane_failed_probes{outcome=\"outOfTime\"} 2\n"
                                   "cirrovane_failed_probes{outcome=\"notReached\"} 3\n"));
}

TEST_F(FleetMetricsTest, liveness_isToldByWhoFollowsTheFiles) {
  EXPECT_THAT(metrics(), Not(HasSubstr("live")));
  liveness_ = {.state = LivenessState::catchingUp, .reason = "/Users/anna changed", .disagreements = 2};
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_liveness{state=\"live\"} 0\n"
                                   "cirrovane_liveness{state=\"catchingUp\"} 1\n"
                                   "cirrovane_liveness{state=\"notLive\"} 0\n"));
  EXPECT_THAT(metrics(), HasSubstr("# TYPE cirrovane_live_disagreements_total counter\n"
                                   "cirrovane_live_disagreements_total 2\n"));
  EXPECT_THAT(metrics(), Not(HasSubstr("anna")));
}

TEST_F(FleetMetricsTest, version_isEscaped) {
  version_ = "v\"1\\\n";
  EXPECT_THAT(metrics(), HasSubstr("\ncirrovane_build_info{version=\"v\\\"1\\\\\\n\"} 1\n"));
}

TEST_F(FleetMetricsTest, sameFacts_giveTheSameText) {
  EXPECT_EQ(metrics(), metrics());
}

}  // namespace
}  // namespace cirrovane::test
