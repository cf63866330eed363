#include "coordinator/leaving/LeaveQuestion.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualMonotonicClock.h"

#include <set>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;

class LeaveQuestionTest : public testing::Test {
 protected:
  void expect(QuestionState state, int letGo) {
    EXPECT_EQ(question_.state().value(), state);
    EXPECT_EQ(letGo_, letGo);
  }
  void ask() { question_.take(QuestionEvent::announcedUnsafe); }

  ManualAlarm alarm_;
  int letGo_ = 0;
  ManualMonotonicClock uptime_;
  LeaveQuestion question_{alarm_, uptime_, [this] { ++letGo_; }};
};

TEST_F(LeaveQuestionTest, calm_announcedWhileSafe_letsGo) {
  question_.take(QuestionEvent::announcedSafe);
  expect(QuestionState::calm, 1);
}

TEST_F(LeaveQuestionTest, calm_announcedWhileUnsafe_asks) {
  ask();
  expect(QuestionState::asked, 0);
  EXPECT_EQ(alarm_.after(), 35s);
}

TEST_F(LeaveQuestionTest, machineThatWaitsLess_isAnsweredSooner) {
  question_.announce(/*isSafe=*/false, 5s);
  EXPECT_EQ(alarm_.after(), 5s);
  EXPECT_EQ(question_.patience(), 5s);
  uptime_.advance(5s);
  alarm_.ring();
  question_.announce(/*isSafe=*/false, 40s);
  EXPECT_EQ(alarm_.after(), 35s);
}

TEST_F(LeaveQuestionTest, calm_answers_areNone) {
  for (const QuestionEvent event : {QuestionEvent::wait, QuestionEvent::leaveAnyway, QuestionEvent::silence,
                                    QuestionEvent::safe, QuestionEvent::calledOff}) {
    question_.take(event);
    expect(QuestionState::calm, 0);
  }
}

TEST_F(LeaveQuestionTest, asked_wait_staysWithoutAnAlarm) {
  ask();
  question_.take(QuestionEvent::wait);
  expect(QuestionState::staying, 0);
  EXPECT_EQ(alarm_.after(), std::nullopt);
}

TEST_F(LeaveQuestionTest, asked_leaveAnyway_letsGo) {
  ask();
  question_.take(QuestionEvent::leaveAnyway);
  expect(QuestionState::calm, 1);
}

TEST_F(LeaveQuestionTest, asked_noAnswer_letsGo) {
  ask();
  uptime_.advance(35s);
  alarm_.ring();
  expect(QuestionState::calm, 1);
}

TEST_F(LeaveQuestionTest, asked_alarmThatRingsTooSoon_isNoAnswer) {
  ask();
  uptime_.advance(10s);
  alarm_.ring();
  expect(QuestionState::asked, 0);
  EXPECT_EQ(alarm_.after(), 25s);
}

TEST_F(LeaveQuestionTest, asked_safeByNow_letsGo) {
  ask();
  question_.take(QuestionEvent::safe);
  expect(QuestionState::calm, 1);
}

TEST_F(LeaveQuestionTest, asked_calledOff_isCalm) {
  ask();
  question_.take(QuestionEvent::calledOff);
  expect(QuestionState::calm, 0);
}

TEST_F(LeaveQuestionTest, asked_announcedAgain_asksOn) {
  ask();
  ask();
  question_.take(QuestionEvent::announcedSafe);
  expect(QuestionState::asked, 0);
}

TEST_F(LeaveQuestionTest, staying_safeByNow_letsGo) {
  ask();
  question_.take(QuestionEvent::wait);
  question_.take(QuestionEvent::safe);
  expect(QuestionState::calm, 1);
}

TEST_F(LeaveQuestionTest, staying_leaveAnyway_letsGo) {
  ask();
  question_.take(QuestionEvent::wait);
  question_.take(QuestionEvent::leaveAnyway);
  expect(QuestionState::calm, 1);
}

TEST_F(LeaveQuestionTest, staying_calledOff_isCalm) {
  ask();
  question_.take(QuestionEvent::wait);
  question_.take(QuestionEvent::calledOff);
  expect(QuestionState::calm, 0);
}

TEST(QuestionTable, everyEdge_isThereOnce) {
  std::set<std::pair<QuestionState, QuestionEvent>> seen;
  for (const QuestionEdge& edge : questionTable()) {
    EXPECT_TRUE(seen.emplace(edge.from, edge.event).second);
  }
  EXPECT_EQ(seen.size(), 10U);
}

}  // namespace
}  // namespace cirrovane::test
