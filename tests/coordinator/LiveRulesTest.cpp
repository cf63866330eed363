#include "coordinator/LiveRules.h"
#include "coordinator/PendingChanges.h"
#include "coordinator/Suspects.h"
#include "coordinator/TurnedVerdict.h"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct ScanDueCase {
  const char* name;
  ScanCause cause;
  Uptime duration;
  /// After the end of the last scan.
  Uptime pause;
};

class ScanDue : public testing::TestWithParam<ScanDueCase> {};

TEST_P(ScanDue, afterTheLastScan_isThePauseOfItsCause) {
  const ScanDueCase& given = GetParam();
  const Uptime end = 1000s;
  EXPECT_EQ(scanDue(given.cause, {end, given.duration}), end + given.pause);
  EXPECT_EQ(scanDue(given.cause, {}), Uptime(0));
}

INSTANTIATE_TEST_SUITE_P(All, ScanDue,
                         testing::Values(ScanDueCase{"turnToYes_fiveTimesItsDuration", ScanCause::turnToYes, 2s, 10s},
                                         ScanDueCase{"loss_itsDuration", ScanCause::loss, 2s, 2s},
                                         ScanDueCase{"waitingLive_quickScan", ScanCause::waitingLive, 1s, 90s},
                                         ScanDueCase{"waitingLive_slowScan", ScanCause::waitingLive, 3s, 150s},
                                         ScanDueCase{"waitingLive_verySlowScan", ScanCause::waitingLive, 100s, 30min},
                                         ScanDueCase{"waitingNotLive_quickScan", ScanCause::waitingNotLive, 10ms, 5s},
                                         ScanDueCase{"waitingNotLive_slowScan", ScanCause::waitingNotLive, 1s, 50s},
                                         ScanDueCase{"cycleWhileLive_slowScan", ScanCause::cycleWhileLive, 1800ms, 90s},
                                         ScanDueCase{"cycleWhileLive_verySlowScan", ScanCause::cycleWhileLive, 100s,
                                                     30min}),
                         [](const auto& given) { return std::string(given.param.name); });

TEST(ScanDueOfACycle, quickScan_isNow) {
  EXPECT_EQ(scanDue(ScanCause::cycleWhileLive, {1000s, 1799ms}), Uptime(0));
}

TEST(TurnedVerdictTest, turnThatHolds_isDueAfterFifteenSeconds_butSixtyAfterTheLastCycleBegan) {
  TurnedVerdict turned;
  turned.cycleBegan(100s);
  turned.cycleEnded(true, 105s);
  turned.show(true, 106s);
  EXPECT_EQ(turned.due(), std::nullopt);
  turned.show(false, 110s);
  EXPECT_EQ(turned.due(), 160s);
  turned.show(false, 170s);
  EXPECT_EQ(turned.due(), 160s);
  turned.cycleBegan(200s);
  turned.cycleEnded(true, 201s);
  turned.show(false, 300s);
  EXPECT_EQ(turned.due(), 260s);
}

TEST(TurnedVerdictTest, turnThatTurnsBack_isForgotten) {
  TurnedVerdict turned;
  turned.cycleBegan(0s);
  turned.cycleEnded(true, 1s);
  turned.show(false, 100s);
  EXPECT_EQ(turned.due(), 115s);
  turned.show(true, 114s);
  EXPECT_EQ(turned.due(), std::nullopt);
  turned.show(false, 120s);
  EXPECT_EQ(turned.due(), 135s);
}

TEST(TurnedVerdictTest, turnDuringACycle_waitsForItsEnd) {
  TurnedVerdict turned;
  turned.cycleBegan(0s);
  turned.cycleEnded(true, 1s);
  turned.cycleBegan(100s);
  turned.show(false, 101s);
  EXPECT_EQ(turned.due(), std::nullopt);
  turned.cycleEnded(true, 130s);
  EXPECT_EQ(turned.due(), 160s);
}

TEST(TurnedVerdictTest, beforeAnyCycle_nothingIsDue) {
  TurnedVerdict turned;
  turned.show(true, 1s);
  turned.show(false, 2s);
  EXPECT_EQ(turned.due(), std::nullopt);
}

TEST(PendingChangesTest, changes_areKeptOnceByFolder) {
  PendingChanges pending;
  pending.add({{"/w", "a", false}, {"/w", "a", false}, {"/w/b", "", true}, {"/w", "c", false}}, 5s);
  pending.add({{"/w/b", "x", false}, {"/v", "", false}}, 7s);
  EXPECT_THAT(pending.list(),
              ElementsAre(FolderChange{"/v", "", false}, FolderChange{"/w", "a", false}, FolderChange{"/w", "c", false},
                          FolderChange{"/w/b", "", true}, FolderChange{"/w/b", "x", false}));
  EXPECT_EQ(pending.oldest(), 5s);
}

TEST(PendingChangesTest, manyItemsOfOneFolder_becomeTheFolder) {
  PendingChanges pending;
  for (int item = 0; item < 1000; ++item) {
    pending.add({{"/w", std::to_string(item), false}}, 1s);
  }
  EXPECT_THAT(pending.list(), ElementsAre(FolderChange{"/w", "", false}));
}

TEST(PendingChangesTest, tells_knowsTheFolderAndWhatLiesBelowADeepChange) {
  PendingChanges pending;
  pending.add({{"/w", "a", false}, {"/w/deep", "", true}}, 1s);
  EXPECT_TRUE(pending.tells("/w"));
  EXPECT_TRUE(pending.tells("/w/deep"));
  EXPECT_TRUE(pending.tells("/w/deep/x/y"));
  EXPECT_FALSE(pending.tells("/w/other"));
  EXPECT_FALSE(pending.tells("/w/deeper"));
  EXPECT_FALSE(pending.tells(""));
}

TEST(PendingChangesTest, sum_hasTheOldestMoment) {
  PendingChanges pending;
  PendingChanges others;
  EXPECT_EQ(pending.oldest(), std::nullopt);
  pending.add({{"/w", "", false}}, 9s);
  others.add({{"/v", "", false}}, 3s);
  pending.add(others);
  EXPECT_EQ(pending.oldest(), 3s);
  pending.add(PendingChanges());
  EXPECT_EQ(pending.oldest(), 3s);
}

TEST(SuspectsTest, folderThatIsToldOfWithinASecond_wasNotMissed) {
  Suspects suspects;
  suspects.suspect({"/w/a", "/w/b"}, 10s);
  EXPECT_EQ(suspects.due(), 11s);
  suspects.told({{"/w/a", "x", false}, {"/w/b", "", false}}, 10500ms);
  EXPECT_EQ(suspects.judge(10900ms), std::nullopt);
  EXPECT_EQ(suspects.judge(11s), false);
  EXPECT_EQ(suspects.due(), std::nullopt);
}

TEST(SuspectsTest, folderThatNobodyTellsOf_wasMissed_once) {
  Suspects suspects;
  suspects.suspect({"/w/a", "/w/b"}, 10s);
  suspects.told({{"/w/a", "x", false}}, 10500ms);
  EXPECT_EQ(suspects.judge(11s), true);
  EXPECT_EQ(suspects.judge(12s), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
