#pragma once

#include "core/CoverageScan.h"
#include "tests/support/FakeTree.h"

namespace cirrovane::test {

/// What a look at the coverage should find, by plain recursion over whole paths; the time is left out.
CoverageLook naiveCoverage(const FakeTree& tree, const CoverageRequest& request);

}  // namespace cirrovane::test
