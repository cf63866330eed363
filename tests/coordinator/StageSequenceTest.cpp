#include "coordinator/StageSequence.h"
#include "tests/support/ManualExecutor.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StageSequenceTest : public testing::Test {
 protected:
  std::function<void()> note(const std::string& name) {
    return [this, name] { ran_.push_back(name); };
  }

  ManualExecutor first_;
  ManualExecutor second_;
  std::vector<std::string> ran_;
  std::shared_ptr<const int> owner_ = std::make_shared<const int>();
};

TEST_F(StageSequenceTest, stages_runOneAfterAnotherEachOnItsExecutor) {
  runStages({{first_, note("a")}, {second_, note("b")}, {first_, note("c")}}, owner_);
  EXPECT_THAT(ran_, IsEmpty());
  EXPECT_EQ(second_.size(), 0U);
  first_.runAll();
  EXPECT_THAT(ran_, ElementsAre("a"));
  EXPECT_EQ(first_.size(), 0U);
  second_.runAll();
  EXPECT_THAT(ran_, ElementsAre("a", "b"));
  first_.runAll();
  EXPECT_THAT(ran_, ElementsAre("a", "b", "c"));
}

TEST_F(StageSequenceTest, twoStagesOnOneExecutor_areTwoTasks) {
  runStages({{first_, note("a")}, {first_, note("b")}}, owner_);
  first_.runOne();
  EXPECT_THAT(ran_, ElementsAre("a"));
  EXPECT_EQ(first_.size(), 1U);
}

TEST_F(StageSequenceTest, noStages_postNothing) {
  runStages({}, owner_);
  EXPECT_EQ(first_.size(), 0U);
}

TEST_F(StageSequenceTest, ownerGone_dropsWhatIsLeft) {
  runStages({{first_, note("a")}, {second_, note("b")}, {first_, note("c")}}, owner_);
  first_.runOne();
  owner_.reset();
  second_.runAll();
  EXPECT_THAT(ran_, ElementsAre("a"));
  EXPECT_EQ(first_.size(), 0U);
}

TEST_F(StageSequenceTest, ownerThatGoesWhileAStageRuns_letsItEndAndDropsTheNext) {
  runStages({{first_,
              [this] {
                owner_.reset();
                ran_.emplace_back("a");
              }},
             {first_, note("b")}},
            owner_);
  first_.runAll();
  EXPECT_THAT(ran_, ElementsAre("a"));
}

TEST_F(StageSequenceTest, whatAStageHolds_isReleasedWhereItRan) {
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> watch = held;
  runStages({{first_, [held = std::move(held)] {}}, {second_, note("b")}}, owner_);
  EXPECT_FALSE(watch.expired());
  first_.runOne();
  EXPECT_TRUE(watch.expired());
}

TEST_F(StageSequenceTest, droppedTasks_releaseEverything) {
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> watch = held;
  runStages({{first_, note("a")}, {second_, [held = std::move(held)] {}}}, owner_);
  first_.dropAll();
  EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace cirrovane::test
