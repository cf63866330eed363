#include "core/TrustScoring.h"
#include "tests/core/Builders.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum BlockerReason;
using testing::ElementsAre;

std::vector<std::string> titlesOf(const std::vector<RecommendedAction>& actions) {
  std::vector<std::string> titles;
  for (const RecommendedAction& action : actions) {
    titles.push_back(action.title);
  }
  return titles;
}

ScanMetrics withPending(std::int64_t pendingUploads) {
  ScanMetrics metrics;
  metrics.pendingUploads = pendingUploads;
  return metrics;
}

ScanMetrics withFiles(std::int64_t totalFiles, std::int64_t notDownloaded) {
  ScanMetrics metrics;
  metrics.totalFiles = totalFiles;
  metrics.notDownloaded = notDownloaded;
  return metrics;
}

struct RuleRow {
  BlockerReason reason;
  std::int64_t weight;
  std::int64_t cap;
  bool forbidsSafeToClose;
};

const std::vector<RuleRow>& ruleRows() {
  static const std::vector<RuleRow> rows = {
      {unavailableFolder, 24, 40, true}, {outsideICloud, 16, 40, false}, {unresolvedConflict, 30, 60, true},
      {uploadError, 24, 60, true},       {downloadError, 24, 60, true},  {stalledUpload, 16, 40, true},
      {notUploaded, 10, 40, true},       {notDownloaded, 0, 0, false},
  };
  return rows;
}

TEST(ReasonRules, eachReason_hasItsWeightCapAndVeto) {
  ASSERT_EQ(ruleRows().size(), kAllBlockerReasons.size());
  for (const RuleRow& row : ruleRows()) {
    EXPECT_EQ(penaltyWeight(row.reason), row.weight) << row.reason;
    EXPECT_EQ(penaltyCap(row.reason), row.cap) << row.reason;
    EXPECT_EQ(forbidsSafeToClose(row.reason), row.forbidsSafeToClose) << row.reason;
  }
}

TEST(Penalty, eachReasonAtEachCount_isWeightTimesCountUpToTheCap) {
  for (const RuleRow& row : ruleRows()) {
    for (int count = 0; count <= 12; ++count) {
      EXPECT_EQ(penalty(makeBlockers(row.reason, count)), std::min(row.weight * count, row.cap))
          << row.reason << " x " << count;
    }
  }
}

TEST(Penalty, twoPendingAndOneStalled_is36) {
  std::vector<SyncBlocker> blockers = makeBlockers(notUploaded, 2);
  blockers.push_back(makeBlocker(stalledUpload, "/s"));
  EXPECT_EQ(penalty(blockers), 36);
  EXPECT_EQ(uploadTrustScore(blockers), 64);
}

TEST(Penalty, fiveConflicts_isTheCap) {
  EXPECT_EQ(penalty(makeBlockers(unresolvedConflict, 5)), 60);
  EXPECT_EQ(uploadTrustScore(makeBlockers(unresolvedConflict, 5)), 40);
}

TEST(Penalty, tenPending_is40AndDanger) {
  const std::vector<SyncBlocker> blockers = makeBlockers(notUploaded, 10);
  EXPECT_EQ(penalty(blockers), 40);
  EXPECT_EQ(uploadTrustScore(blockers), 60);
  EXPECT_EQ(healthState(uploadTrustScore(blockers), blockers), HealthState::danger);
}

TEST(Penalty, everyReasonAtItsCap_is340AndScoreZero) {
  std::vector<SyncBlocker> blockers;
  for (const BlockerReason reason : kAllBlockerReasons) {
    const std::vector<SyncBlocker> some = makeBlockers(reason, 10);
    blockers.insert(blockers.end(), some.begin(), some.end());
  }
  EXPECT_EQ(penalty(blockers), 340);
  EXPECT_EQ(uploadTrustScore(blockers), 0);
}

TEST(Penalty, cloudOnlyFilesAlone_costNothing) {
  EXPECT_EQ(penalty(makeBlockers(notDownloaded, 3)), 0);
  EXPECT_EQ(uploadTrustScore(makeBlockers(notDownloaded, 3)), 100);
}

TEST(Penalty, noBlockers_isZero) {
  EXPECT_EQ(penalty({}), 0);
  EXPECT_EQ(uploadTrustScore({}), 100);
}

TEST(Penalty, exactlyOneHundred_isScoreZeroAndOneReasonLessIsNot) {
  std::vector<SyncBlocker> blockers = makeBlockers(unresolvedConflict, 2);
  for (const SyncBlocker& blocker : makeBlockers(notUploaded, 4)) {
    blockers.push_back(blocker);
  }
  EXPECT_EQ(penalty(blockers), 100);
  EXPECT_EQ(uploadTrustScore(blockers), 0);
  blockers.pop_back();
  EXPECT_EQ(uploadTrustScore(blockers), 10);
}

TEST(HealthStateOfScore, noBlockers_isSafeOnlyFrom95) {
  for (std::int64_t score = 0; score <= 100; ++score) {
    const HealthState expected = score >= 95   ? HealthState::safe
                                 : score >= 70 ? HealthState::warning
                                               : HealthState::danger;
    EXPECT_EQ(healthState(score, {}), expected) << score;
  }
}

TEST(HealthStateOfScore, onlyCloudOnlyFiles_isSafeOnlyFrom95) {
  const std::vector<SyncBlocker> blockers = makeBlockers(notDownloaded, 2);
  EXPECT_EQ(healthState(100, blockers), HealthState::safe);
  EXPECT_EQ(healthState(95, blockers), HealthState::safe);
  EXPECT_EQ(healthState(94, blockers), HealthState::warning);
  EXPECT_EQ(healthState(70, blockers), HealthState::warning);
  EXPECT_EQ(healthState(69, blockers), HealthState::danger);
}

TEST(HealthStateOfScore, anyOtherBlocker_isNeverSafe) {
  for (const BlockerReason reason : kAllBlockerReasons) {
    if (reason == notDownloaded) {
      continue;
    }
    for (std::int64_t score = 0; score <= 100; ++score) {
      const HealthState expected = score >= 70 ? HealthState::warning : HealthState::danger;
      EXPECT_EQ(healthState(score, makeBlockers({reason})), expected) << reason << " " << score;
      EXPECT_EQ(healthState(score, makeBlockers({notDownloaded, reason, notDownloaded})), expected)
          << reason << " " << score;
    }
  }
}

TEST(HealthStateOfScore, oneFolderOutside_is84AndWarning) {
  const std::vector<SyncBlocker> blockers = makeBlockers({outsideICloud});
  EXPECT_EQ(uploadTrustScore(blockers), 84);
  EXPECT_EQ(healthState(84, blockers), HealthState::warning);
  EXPECT_FALSE(isSafeToClose(HealthState::warning, blockers, {}));
}

TEST(LocalReadinessScore, noFiles_is100) {
  EXPECT_EQ(localReadinessScore(withFiles(0, 0)), 100);
  EXPECT_EQ(localReadinessScore(withFiles(0, 5)), 100);
  EXPECT_EQ(localReadinessScore(withFiles(-1, 0)), 100);
}

TEST(LocalReadinessScore, knownShares_areRounded) {
  EXPECT_EQ(localReadinessScore(withFiles(7, 2)), 71);
  EXPECT_EQ(localReadinessScore(withFiles(3, 1)), 67);
  EXPECT_EQ(localReadinessScore(withFiles(1, 0)), 100);
  EXPECT_EQ(localReadinessScore(withFiles(3, 3)), 0);
  EXPECT_EQ(localReadinessScore(withFiles(1000, 1)), 100);
  EXPECT_EQ(localReadinessScore(withFiles(1000, 6)), 99);
  EXPECT_EQ(localReadinessScore(withFiles(1000, 999)), 0);
}

TEST(LocalReadinessScore, halves_areRoundedUp) {
  EXPECT_EQ(localReadinessScore(withFiles(8, 1)), 88);
  EXPECT_EQ(localReadinessScore(withFiles(8, 3)), 63);
  EXPECT_EQ(localReadinessScore(withFiles(200, 1)), 100);
  EXPECT_EQ(localReadinessScore(withFiles(200, 199)), 1);
}

TEST(LocalReadinessScore, halvesThatFloatingPointMisses_areRoundedAsComputed) {
  // 23 / 40 x 100 is 57.49999999999999 in floating point, in which the score is defined.
  EXPECT_EQ(localReadinessScore(withFiles(40, 17)), 57);
  EXPECT_EQ(localReadinessScore(withFiles(200, 143)), 28);
}

TEST(LocalReadinessScore, moreCloudOnlyThanFiles_isZero) {
  EXPECT_EQ(localReadinessScore(withFiles(3, 4)), 0);
}

TEST(LocalReadinessScore, otherCounters_playNoPart) {
  ScanMetrics metrics = withFiles(10, 1);
  metrics.scannedFolders = 3;
  metrics.pendingUploads = 4;
  metrics.unresolvedConflicts = 5;
  metrics.errors = 6;
  EXPECT_EQ(localReadinessScore(metrics), 90);
}

TEST(RecommendedActions, noBlockers_isTheAllClearAlone) {
  for (const std::int64_t pendingUploads : {0, 5}) {
    const std::vector<RecommendedAction> actions = recommendedActions({}, withPending(pendingUploads));
    ASSERT_EQ(actions.size(), 1U);
    EXPECT_EQ(actions[0].rank, 1);
    EXPECT_EQ(actions[0].title, "You are clear");
    EXPECT_EQ(actions[0].detail,
              "No blockers were detected. Keep scans running before major travel or shutdown events.");
  }
}

struct ActionRow {
  BlockerReason reason;
  std::string title;
  std::string detail;
};

TEST(RecommendedActions, eachReasonAlone_givesItsOneAction) {
  const ActionRow network = {uploadError, "Stabilize network and re-check",
                             "Confirm reliable internet, then run scan again before trying deeper troubleshooting."};
  const ActionRow again = {notUploaded, "Run another scan in 2-3 minutes",
                           "If blockers persist across scans, export a proof packet for support."};
  const std::vector<ActionRow> rows = {
      {unavailableFolder, "Reconnect missing watchlist folders",
       "Open Watchlist and remove/re-add any folder paths that no longer exist on this Mac."},
      {unresolvedConflict, "Resolve file conflicts first",
       "Open conflicted files and decide which version is canonical before more edits happen."},
      network,
      {downloadError, network.title, network.detail},
      {stalledUpload, "Keep Mac awake until pending uploads clear",
       "Avoid shutdown or travel until pending files drop to zero in the next scan cycle."},
      {outsideICloud, "Move critical folders into iCloud Drive",
       "Folders outside iCloud cannot be covered by upload trust checks."},
      again,
      {notDownloaded, again.title, again.detail},
  };
  for (const ActionRow& row : rows) {
    const std::vector<RecommendedAction> actions = recommendedActions(makeBlockers({row.reason}), withPending(0));
    ASSERT_EQ(actions.size(), 1U) << row.reason;
    EXPECT_EQ(actions[0].rank, 1) << row.reason;
    EXPECT_EQ(actions[0].title, row.title) << row.reason;
    EXPECT_EQ(actions[0].detail, row.detail) << row.reason;
  }
}

TEST(RecommendedActions, pendingUploads_askToStayAwake) {
  EXPECT_THAT(titlesOf(recommendedActions(makeBlockers({notUploaded}), withPending(1))),
              ElementsAre("Keep Mac awake until pending uploads clear"));
  EXPECT_THAT(titlesOf(recommendedActions(makeBlockers({notDownloaded}), withPending(1))),
              ElementsAre("Keep Mac awake until pending uploads clear"));
  EXPECT_THAT(titlesOf(recommendedActions(makeBlockers({stalledUpload}), withPending(2))),
              ElementsAre("Keep Mac awake until pending uploads clear"))
      << "both conditions of one action give it once";
}

TEST(RecommendedActions, bothKindsOfError_giveOneAction) {
  EXPECT_THAT(titlesOf(recommendedActions(makeBlockers({uploadError, downloadError}), withPending(0))),
              ElementsAre("Stabilize network and re-check"));
}

TEST(RecommendedActions, manyConditions_giveTheFirstThreeRanked) {
  const std::vector<RecommendedAction> actions = recommendedActions(
      makeBlockers({outsideICloud, stalledUpload, downloadError, unresolvedConflict, unavailableFolder}),
      withPending(3));
  EXPECT_THAT(titlesOf(actions), ElementsAre("Reconnect missing watchlist folders", "Resolve file conflicts first",
                                             "Stabilize network and re-check"));
  for (std::size_t index = 0; index < actions.size(); ++index) {
    EXPECT_EQ(actions[index].rank, static_cast<std::int64_t>(index) + 1);
  }
}

TEST(RecommendedActions, lastThreeConditions_giveThemInTableOrderRankedFromOne) {
  const std::vector<RecommendedAction> actions =
      recommendedActions(makeBlockers({outsideICloud, stalledUpload, uploadError}), withPending(0));
  EXPECT_THAT(titlesOf(actions),
              ElementsAre("Stabilize network and re-check", "Keep Mac awake until pending uploads clear",
                          "Move critical folders into iCloud Drive"));
  EXPECT_EQ(actions[0].rank, 1);
  EXPECT_EQ(actions[1].rank, 2);
  EXPECT_EQ(actions[2].rank, 3);
}

TEST(RecommendedActions, anyOtherAction_leavesNoRoomForAnotherScan) {
  EXPECT_THAT(titlesOf(recommendedActions(makeBlockers({notDownloaded, notUploaded, outsideICloud}), withPending(0))),
              ElementsAre("Move critical folders into iCloud Drive"));
}

TEST(RecommendedActions, eachCall_makesNewIdentifiers) {
  std::set<UUID> seen = {UUID()};
  for (int call = 0; call < 3; ++call) {
    for (const RecommendedAction& action :
         recommendedActions(makeBlockers({outsideICloud, stalledUpload, uploadError}), withPending(0))) {
      EXPECT_TRUE(seen.insert(action.id).second);
    }
    EXPECT_TRUE(seen.insert(recommendedActions({}, {}).at(0).id).second);
  }
}

TEST(SummaryText, noBlockers_saysSoInEveryState) {
  ScanMetrics metrics;
  metrics.pendingUploads = 1;
  metrics.errors = 2;
  metrics.notDownloaded = 3;
  for (const HealthState status : {HealthState::safe, HealthState::warning, HealthState::danger}) {
    EXPECT_EQ(summaryText(status, {}, metrics), "No blockers detected in your watchlist.");
  }
}

TEST(SummaryText, onlyCloudOnlyFiles_countsThemInEveryState) {
  ScanMetrics metrics;
  metrics.notDownloaded = 1234567;
  for (const HealthState status : {HealthState::safe, HealthState::warning, HealthState::danger}) {
    EXPECT_EQ(summaryText(status, makeBlockers({notDownloaded}), metrics),
              "Upload trust is strong. 1234567 files are cloud-only on this Mac.");
  }
  metrics.notDownloaded = 1;
  EXPECT_EQ(summaryText(HealthState::safe, makeBlockers({notDownloaded}), metrics),
            "Upload trust is strong. 1 files are cloud-only on this Mac.");
}

TEST(SummaryText, cloudOnlyBlockersThatNobodyCounted_goByTheState) {
  EXPECT_EQ(summaryText(HealthState::safe, makeBlockers({notDownloaded}), {}),
            "Minor issues found, but critical upload risk appears clear.");
}

TEST(SummaryText, safeWithOtherBlockers_speaksOfMinorIssues) {
  ScanMetrics metrics;
  metrics.notDownloaded = 1;
  EXPECT_EQ(summaryText(HealthState::safe, makeBlockers({outsideICloud, notDownloaded}), metrics),
            "Minor issues found, but critical upload risk appears clear.");
}

TEST(SummaryText, warning_countsAllBlockers) {
  EXPECT_EQ(summaryText(HealthState::warning, makeBlockers({outsideICloud}), {}),
            "1 issues found. Review blockers before leaving or shutting down.");
  ScanMetrics metrics;
  metrics.notDownloaded = 1000;
  std::vector<SyncBlocker> blockers = makeBlockers(notDownloaded, 1000);
  blockers.push_back(makeBlocker(notUploaded, "/a"));
  EXPECT_EQ(summaryText(HealthState::warning, blockers, metrics),
            "1001 issues found. Review blockers before leaving or shutting down.");
}

TEST(SummaryText, danger_countsPendingUploadsAndErrors) {
  ScanMetrics metrics;
  metrics.pendingUploads = 12345;
  metrics.errors = 67890;
  EXPECT_EQ(summaryText(HealthState::danger, makeBlockers({notUploaded}), metrics),
            "Sync trust is low: 12345 pending uploads and 67890 errors need attention.");
  EXPECT_EQ(summaryText(HealthState::danger, makeBlockers({unresolvedConflict}), {}),
            "Sync trust is low: 0 pending uploads and 0 errors need attention.");
}

TEST(IsSafeToClose, safeWithNothingFound_isYes) {
  EXPECT_TRUE(isSafeToClose(HealthState::safe, {}, {}));
}

TEST(IsSafeToClose, anyOtherStatus_isNo) {
  EXPECT_FALSE(isSafeToClose(HealthState::warning, {}, {}));
  EXPECT_FALSE(isSafeToClose(HealthState::danger, {}, {}));
}

TEST(IsSafeToClose, eachReasonBesideASafeStatus_isNoWhereTheReasonForbids) {
  for (const RuleRow& row : ruleRows()) {
    EXPECT_EQ(isSafeToClose(HealthState::safe, makeBlockers({row.reason}), {}), !row.forbidsSafeToClose) << row.reason;
    EXPECT_EQ(isSafeToClose(HealthState::safe, makeBlockers({notDownloaded, row.reason, outsideICloud}), {}),
              !row.forbidsSafeToClose)
        << row.reason;
  }
}

TEST(IsSafeToClose, anyRiskyCounter_isNo) {
  ScanMetrics metrics;
  metrics.pendingUploads = 1;
  EXPECT_FALSE(isSafeToClose(HealthState::safe, {}, metrics));
  metrics = {};
  metrics.unresolvedConflicts = 1;
  EXPECT_FALSE(isSafeToClose(HealthState::safe, {}, metrics));
  metrics = {};
  metrics.errors = 1;
  EXPECT_FALSE(isSafeToClose(HealthState::safe, {}, metrics));
}

TEST(IsSafeToClose, harmlessCounters_areNoObstacle) {
  ScanMetrics metrics;
  metrics.totalFiles = 100;
  metrics.scannedFolders = 3;
  metrics.notDownloaded = 50;
  EXPECT_TRUE(isSafeToClose(HealthState::safe, makeBlockers(notDownloaded, 50), metrics));
}

}  // namespace
}  // namespace cirrovane::test
