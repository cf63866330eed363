#include "tests/ui_items/Application.h"
#include "tests/ui_items/ManualFrames.h"
#include "ui/items/Spring.h"

#include <cmath>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// The same by following the forces in small steps.
SpringState integrated(const SpringShape& shape, SpringState state, double target, double seconds) {
  const double frequency = 2 * std::numbers::pi / shape.response;
  const auto pull = [&](const SpringState& at) {
    return -frequency * frequency * (at.value - target) - 2 * shape.dampingFraction * frequency * at.velocity;
  };
  constexpr int kSteps = 20000;
  const double step = seconds / kSteps;
  for (int number = 0; number < kSteps; ++number) {
    // The midpoint method.
    const SpringState middle{state.value + state.velocity * step / 2, state.velocity + pull(state) * step / 2};
    state = {state.value + middle.velocity * step, state.velocity + pull(middle) * step};
  }
  return state;
}

TEST(Spring, step_isWhatTheForcesDo) {
  for (const double damping : {0.2, 0.82, 1.0, 1.0 - 1e-12, 1.7, 4.0}) {
    for (const double seconds : {0.004, 0.05, 0.3, 1.2}) {
      for (const SpringState& start : {SpringState{0, 0}, SpringState{12, 300}, SpringState{100, -250}}) {
        const SpringShape shape{0.55, damping};
        const SpringState exact = springAfter(shape, start, 80, seconds);
        const SpringState reference = integrated(shape, start, 80, seconds);
        EXPECT_NEAR(exact.value, reference.value, 1e-3) << damping << " after " << seconds;
        EXPECT_NEAR(exact.velocity, reference.velocity, 1e-2) << damping << " after " << seconds;
      }
    }
  }
}

TEST(Spring, manySteps_leadWhereOneDoes) {
  const SpringShape shape;
  SpringState stepped{10, 50};
  for (int number = 0; number < 100; ++number) {
    stepped = springAfter(shape, stepped, 90, 0.007);
  }
  const SpringState once = springAfter(shape, {10, 50}, 90, 0.7);
  EXPECT_NEAR(stepped.value, once.value, 1e-9);
  EXPECT_NEAR(stepped.velocity, once.velocity, 1e-8);
}

TEST(Spring, longTime_endsAtTheTarget) {
  for (const double damping : {0.2, 1.0, 30.0}) {
    const SpringState end = springAfter({0.55, damping}, {0, 1000}, 42, 100'000);
    EXPECT_DOUBLE_EQ(end.value, 42) << damping;
    EXPECT_NEAR(end.velocity, 0, 1e-12) << damping;
  }
}

TEST(Spring, rest_needsPlaceAndVelocity) {
  EXPECT_TRUE(isSpringAtRest({50, 0}, 50));
  EXPECT_FALSE(isSpringAtRest({50, 40}, 50));
  EXPECT_FALSE(isSpringAtRest({49, 0}, 50));
}

class SpringItemTest : public ApplicationTest {
 protected:
  SpringItemTest() {
    QObject::connect(&spring_, &Spring::valueChanged, [this] { values_.push_back(spring_.value()); });
  }

  ManualFrames frames_;
  Spring spring_;
  std::vector<double> values_;
};

TEST_F(SpringItemTest, newTarget_isReachedFrameByFrameAndThenAllIsQuiet) {
  spring_.setTarget(100);
  EXPECT_TRUE(spring_.isMoving());
  EXPECT_EQ(spring_.value(), 0);
  int frames = 0;
  while (spring_.isMoving() && frames < 1000) {
    frames_.pass(16);
    ++frames;
  }
  EXPECT_GT(frames, 20);
  EXPECT_LT(frames, 100);
  EXPECT_EQ(spring_.value(), 100);

  const std::size_t changes = values_.size();
  for (int frame = 0; frame < 10; ++frame) {
    frames_.pass(16);
  }
  EXPECT_EQ(values_.size(), changes);
}

TEST_F(SpringItemTest, frames_followTheFormula) {
  spring_.setTarget(100);
  frames_.pass(0);
  frames_.pass(40);
  frames_.pass(60);
  EXPECT_NEAR(spring_.value(), springAfter({}, {}, 100, 0.1).value, 1e-9);
}

TEST_F(SpringItemTest, longFrame_arrivesAndSaysSo) {
  spring_.setTarget(100);
  frames_.pass(0);
  frames_.pass(5000);
  EXPECT_FALSE(spring_.isMoving());
  EXPECT_EQ(values_, std::vector<double>{100});
}

TEST_F(SpringItemTest, newTargetOnTheWay_keepsTheVelocity) {
  spring_.setTarget(100);
  frames_.pass(0);
  frames_.pass(100);
  const SpringState there = springAfter({}, {}, 100, 0.1);
  spring_.setTarget(0);
  EXPECT_NEAR(spring_.value(), there.value, 1e-9);
  frames_.pass(10);
  EXPECT_GT(spring_.value(), there.value);
  EXPECT_NEAR(spring_.value(), springAfter({}, there, 0, 0.01).value, 1e-9);
}

TEST_F(SpringItemTest, motionOff_jumps) {
  spring_.setEnabled(false);
  spring_.setTarget(73);
  EXPECT_EQ(spring_.value(), 73);
  EXPECT_FALSE(spring_.isMoving());
  EXPECT_EQ(values_, std::vector<double>{73});
}

TEST_F(SpringItemTest, motionOffOnTheWay_jumps) {
  spring_.setTarget(73);
  frames_.pass(16);
  frames_.pass(16);
  spring_.setEnabled(false);
  EXPECT_EQ(spring_.value(), 73);
  EXPECT_FALSE(spring_.isMoving());
}

TEST_F(SpringItemTest, firstTarget_isWhereItBegins) {
  spring_.classBegin();
  spring_.setTarget(92);
  spring_.componentComplete();
  EXPECT_EQ(spring_.value(), 92);
  EXPECT_FALSE(spring_.isMoving());
}

TEST_F(SpringItemTest, noDamping_jumpsRatherThanSwingForEver) {
  spring_.setProperty("dampingFraction", 0.0);
  spring_.setTarget(30);
  EXPECT_EQ(spring_.value(), 30);
}

TEST_F(SpringItemTest, targetThatIsNoNumber_isLeftAlone) {
  spring_.setTarget(std::nan(""));
  EXPECT_EQ(spring_.value(), 0);
  EXPECT_FALSE(spring_.isMoving());
}

}  // namespace
}  // namespace cirrovane::test
