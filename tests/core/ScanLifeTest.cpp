#include "tests/core/ScanLife.h"
#include "tests/core/ScanLives.h"
#include "tests/support/FakeTree.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

// Whatever happens to watched folders, an index that is told of it says what a full scan says.

namespace cirrovane::test {
namespace {

TEST(ScanLifeInMemory, toldByTheTree_agreesWithAFullScan) {
  liveLives(/*usualSteps=*/5'000, [](std::uint32_t seed, std::size_t steps, ScanLife::Tally& tally) {
    FakeTree tree;
    tree.setBatchSize(1 + seed % 5);
    std::string home;
    // Every fifth outside iCloud Drive.
    const char* drive = seed % 5 == 0 ? "Desktop" : "com~apple~CloudDocs";
    for (const char* name : {"Users", "test", "Library", "Mobile Documents", drive, "Documents"}) {
      home.append("/").append(name);
      tree.makeFolder(home);
    }
    FakeTreeWatch watch(tree);
    ScanLife life({tree, tree, watch, home, false, [&] { return watch.held(); }}, seed);
    const bool hasLived = life.live(steps);
    tally = life.tally();
    return hasLived;
  });
}

}  // namespace
}  // namespace cirrovane::test
