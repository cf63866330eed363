#include "tests/core/ScanLives.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr std::size_t kStepsOfALife = 250;
/// What happens a few times a life may by chance hardly happen in a handful of them, where a real disk takes part.
constexpr std::uint64_t kLivesThatTell = 10;

std::uint64_t numberOr(const char* variable, std::uint64_t usual) {
  const char* text = std::getenv(variable);
  std::uint64_t number = usual;
  if (text != nullptr) {
    std::from_chars(text, text + std::strlen(text), number);
  }
  return number;
}

}  // namespace

void liveLives(std::uint64_t usualSteps, const LiveOne& liveOne) {
  ScanLife::Tally tally;
  if (const std::uint64_t seed = numberOr("CIRROVANE_LIFE_SEED", 0); seed != 0) {
    liveOne(static_cast<std::uint32_t>(seed), kStepsOfALife, tally);
    return;
  }
  const std::uint64_t lives =
      std::max<std::uint64_t>(1, usualSteps * numberOr("CIRROVANE_LIFE_TIMES", 1) / kStepsOfALife);
  ScanLife::Tally sum;
  for (std::uint64_t life = 1; life <= lives; ++life) {
    if (!liveOne(static_cast<std::uint32_t>(life), kStepsOfALife, tally)) {
      return;
    }
    sum.settled += tally.settled;
    sum.safe += tally.safe;
    sum.glancesThatBlock += tally.glancesThatBlock;
    sum.lateStalls += tally.lateStalls;
    sum.unchanged += tally.unchanged;
    sum.blocked += tally.blocked;
  }
  EXPECT_GT(sum.settled, lives * kStepsOfALife / 3);
  EXPECT_GT(sum.safe, lives);
  EXPECT_LT(sum.safe, sum.settled * 9 / 10);
  EXPECT_GT(sum.unchanged, lives);
  if (lives >= kLivesThatTell) {
    EXPECT_GT(sum.glancesThatBlock, lives / 2);
    EXPECT_GT(sum.lateStalls, lives);
    EXPECT_GT(sum.blocked, lives / 2);
  }
}

}  // namespace cirrovane::test
