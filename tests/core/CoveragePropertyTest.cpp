#include "core/CoverageScan.h"
#include "core/ICloudScanEngine.h"
#include "tests/core/Builders.h"
#include "tests/core/NaiveCoverage.h"
#include "tests/core/Random.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualClock.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

// Whatever the tree, a look at the coverage must find what one written a second time finds, and nothing that it alone
// looks at may touch the verdict.

namespace cirrovane::test {
namespace {

constexpr Time kLookTime = Time(std::chrono::seconds(1'763'231'000));

std::uint32_t treeCount() {
  const char* count = std::getenv("CIRROVANE_COVERAGE_TREES");
  return count != nullptr ? static_cast<std::uint32_t>(std::stoul(count)) : 200;
}

const std::vector<std::string> kFileNames = {
    "a.txt", "b",         "c.nosync",   "C.NoSync", "m.tmp",   "~$a.docx",       ".env", ".h",
    ".x",    ".DS_Store", ".localized", "._a.txt",  "Icon\r",  ".~lock.a#",      ".tmp", ".b.icloud",
    "tmp",   "\xFF\n",    ".Trash",     "P.pages",  "z\\\x01", "L.photoslibrary"};
const std::vector<std::string> kFolderNames = {"Work",   "Deep",      "tmp",     "build.nosync",   ".git",
                                               ".cache", "P.pages",   "Q.pages", ".r.pages",       ".Trash",
                                               "m.tmp",  ".DS_Store", "Work 2",  "L.photoslibrary"};

/// Mostly as it should be, so that gaps of every kind have a chance to be the worst.
std::optional<FakeValues> anyItemValues(Random& random, std::size_t trouble) {
  FakeValues values;
  values.isUploaded = true;
  if (!random.oneIn(trouble)) {
    return values;
  }
  static constexpr std::array<std::optional<bool>, 3> kFlags = {std::nullopt, false, true};
  switch (random.below(8)) {
    case 0:
      return std::nullopt;
    case 1:
      values.isUploaded = random.pick(kFlags);
      break;
    case 2:
      values.uploadingError = "No room.";
      break;
    case 3:
      values.hasUnresolvedConflicts = random.pick(kFlags);
      break;
    case 4:
      values.isSyncPaused = random.pick(kFlags);
      break;
    case 5:
      values.isExcludedFromSync = random.pick(kFlags);
      break;
    case 6:
      values.isUbiquitousItem = false;
      break;
    default:
      values.isUbiquitousItem = random.oneIn(2);
      values.isUploaded = random.pick(kFlags);
      values.hasUnresolvedConflicts = random.pick(kFlags);
      values.isSyncPaused = random.pick(kFlags);
      values.isExcludedFromSync = random.pick(kFlags);
  }
  return values;
}

void fillTree(FakeTree& tree, const std::string& folder, Random& random, int depth, std::size_t trouble) {
  for (std::size_t count = random.below(7); count > 0; --count) {
    tree.makeFile(folder + "/" + random.pick(kFileNames), anyItemValues(random, trouble));
  }
  if (random.oneIn(8)) {
    tree.makeLink(folder + "/" + (random.oneIn(2) ? ".link" : "link"), random.oneIn(2) ? "/" : std::string(kDrive));
  }
  for (std::size_t count = depth > 0 ? random.below(4) : 0; count > 0; --count) {
    const std::string path = folder + "/" + random.pick(kFolderNames);
    if (!tree.makeFolder(path)) {
      continue;
    }
    tree.setFolderValues(path, anyItemValues(random, trouble * 2));
    fillTree(tree, path, random, depth - 1, trouble);
    if (random.oneIn(12)) {
      tree.setListable(path, false);
    } else if (random.oneIn(20)) {
      tree.setBreaksOff(path, true);
    } else if (random.oneIn(25)) {
      tree.setExhausted(path, true);
    }
  }
}

struct CoverageWorld {
  std::unique_ptr<FakeTree> tree = std::make_unique<FakeTree>();
  CoverageRequest request;
};

CoverageWorld coverageWorldOf(std::uint32_t seed) {
  Random random(seed);
  CoverageWorld world;
  std::string made;
  for (const std::string name : {"/Users", "/test", "/Library", "/Mobile Documents", "/com~apple~CloudDocs"}) {
    made += name;
    world.tree->makeFolder(made);
  }
  world.tree->makeFolder("/Users/test/Desktop");
  world.tree->setBatchSize(1 + random.below(5));
  fillTree(*world.tree, made, random, 4, 2 + random.below(12));

  std::vector<std::string> folders = {made};
  for (const std::string& path : world.tree->allPaths()) {
    if (world.tree->isFolder(path) && path.starts_with(made)) {
      folders.push_back(path);
    }
  }
  for (std::size_t count = 1 + random.below(4); count > 0; --count) {
    std::string path = random.oneIn(3) ? made : random.pick(folders);
    if (random.oneIn(12)) {
      path = random.oneIn(2) ? made + "/Missing" : "/Users/test/Desktop";
    } else if (random.oneIn(12)) {
      path += "/";
    }
    world.request.folders.push_back(makeFolder("Folder " + std::to_string(count), path));
  }
  for (const std::string& path : world.tree->allPaths()) {
    if (random.oneIn(40) && path.starts_with(made)) {
      world.request.acknowledged.push_back(path);
    }
  }
  for (const std::string& path : folders) {
    if (random.oneIn(3)) {
      world.request.mostFiles.push_back({path, static_cast<std::int64_t>(random.below(60))});
    }
  }
  return world;
}

TEST(CoverageProperty, randomTrees_giveWhatTheNaiveLookFinds) {
  GapCounts all;
  const std::uint32_t count = treeCount();
  for (std::uint32_t seed = 1; seed <= count; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CoverageWorld world = coverageWorldOf(seed);
    const ManualClock clock(kLookTime);
    const std::optional<CoverageLook> look = CoverageScan(*world.tree, clock).look(world.request);
    ASSERT_TRUE(look);
    CoverageLook expected = naiveCoverage(*world.tree, world.request);
    expected.report.generatedAt = kLookTime;
    ASSERT_EQ(look->report, expected.report);
    ASSERT_EQ(look->fileCounts, expected.fileCounts);
    for (const CoverageGap& gap : look->report.gaps) {
      all.add(gap.kind);
    }
  }
  for (const GapKind kind : kAllGapKinds) {
    EXPECT_GT(all.of(kind), 0) << rawValue(kind);
  }
}

/// A tree without anything that a scan does not look at.
void copyShown(const FakeTree& from, FakeTree& to, const std::string& folder) {
  for (const std::string& path : from.allPaths()) {
    const std::string name = path.substr(path.rfind('/') + 1);
    if (path.substr(0, path.rfind('/')) != folder || name.starts_with('.')) {
      continue;
    }
    if (from.isFolder(path)) {
      to.makeFolder(path);
      if (!name.ends_with(".pages")) {
        copyShown(from, to, path);
      }
    } else if (from.isFile(path)) {
      std::optional<FakeValues> values = from.valuesOf(path);
      if (values) {
        values->isExcludedFromSync = std::nullopt;
        values->isSyncPaused = std::nullopt;
      }
      to.makeFile(path, values);
    } else {
      to.makeLink(path, "/");
    }
  }
}

SyncHealthReport shownScan(const FakeTree& tree, const std::vector<WatchFolder>& folders) {
  const ManualClock clock(kLookTime);
  SyncHealthReport report = ICloudScanEngine(tree, clock).scan(folders);
  for (SyncBlocker& blocker : report.blockers) {
    blocker.id = UUID();
  }
  for (RecommendedAction& action : report.actions) {
    action.id = UUID();
  }
  return report;
}

TEST(CoverageProperty, whatOnlyTheCoverageLooksAt_changesNoFieldOfTheReport) {
  for (std::uint32_t seed = 1; seed <= treeCount() / 2; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    FakeTree tree;
    FakeTree bare;
    tree.makeFolder("/w");
    bare.makeFolder("/w");
    fillTree(tree, "/w", random, 4, 2 + random.below(12));
    for (const std::string& path : tree.allPaths()) {
      tree.setListable(path, true);
      tree.setBreaksOff(path, false);
      tree.setExhausted(path, false);
    }
    copyShown(tree, bare, "/w");
    ASSERT_EQ(shownScan(tree, {makeFolder("w", "/w")}), shownScan(bare, {makeFolder("w", "/w")}));
  }
}

}  // namespace
}  // namespace cirrovane::test
