#pragma once

#include "tests/core/ScanLife.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace cirrovane::test {

/// Lives one life of so many steps in a place of its own, and tells what happened in it; false where it failed.
using LiveOne = std::function<bool(std::uint32_t seed, std::size_t steps, ScanLife::Tally& tally)>;

/// Lives as many lives as the steps allow, each from another seed, and expects them to have met what matters.
/// CIRROVANE_LIFE_TIMES=N makes it N times as many, and CIRROVANE_LIFE_SEED=N lives the one life of that seed alone.
void liveLives(std::uint64_t usualSteps, const LiveOne& liveOne);

}  // namespace cirrovane::test
