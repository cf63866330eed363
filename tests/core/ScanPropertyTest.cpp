#include "base/Path.h"
#include "core/BlockerList.h"
#include "core/FolderNaming.h"
#include "core/ICloudScanEngine.h"
#include "core/TrustScoring.h"
#include "tests/core/Builders.h"
#include "tests/core/NaiveScan.h"
#include "tests/core/Random.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/ManualClock.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// Whatever the tree, the engine must agree with a scan written a second time in the most simple-minded way, and a file
// more must never make things look better.

namespace cirrovane::test {
namespace {

using FakeItem = FakeFileSystem::FakeItem;
using std::chrono::microseconds;
using std::chrono::seconds;

constexpr Time kNow = Time(seconds(1'763'231'000));

/// Ages around the one at which an upload counts as stalled, and far from it, on both sides of now.
constexpr std::array kAges = {
    microseconds(seconds(-86'400)), microseconds(0),
    microseconds(seconds(1)),       microseconds(1'199'999'999),
    microseconds(seconds(1200)),    microseconds(1'200'000'001),
    microseconds(1'200'001'000),    microseconds(seconds(100'000'000)),
};

FakeFileSystem fileSystemOf(const NaiveWorld& world, std::size_t batchSize) {
  FakeFileSystem fileSystem;
  fileSystem.setBatchSize(batchSize);
  for (const auto& [path, items] : world.folders) {
    fileSystem.addFolder(path, items);
  }
  for (const std::string& path : world.unlistable) {
    fileSystem.addExisting(path);
  }
  for (const std::string& path : world.brokenOff) {
    fileSystem.breakOff(path);
  }
  return fileSystem;
}

SyncHealthReport engineScan(const NaiveWorld& world, const std::vector<WatchFolder>& watched,
                            std::size_t batchSize = 3) {
  const FakeFileSystem fileSystem = fileSystemOf(world, batchSize);
  const ManualClock clock(world.now);
  return ICloudScanEngine(fileSystem, clock).scan(watched);
}

/// Whether every blocker and action has an identifier of its own.
bool hasFreshIdentifiers(const SyncHealthReport& report) {
  std::set<UUID> seen = {UUID()};
  return std::all_of(report.blockers.begin(), report.blockers.end(),
                     [&](const SyncBlocker& blocker) { return seen.insert(blocker.id).second; }) &&
         std::all_of(report.actions.begin(), report.actions.end(),
                     [&](const RecommendedAction& action) { return seen.insert(action.id).second; });
}

/// What the files of a tree are like on the whole.
enum class Mood { clean, cloudOnly, troubled, wild };

std::optional<bool> anyFlag(Random& random) {
  static constexpr std::array<std::optional<bool>, 3> kFlags = {std::nullopt, false, true};
  return random.pick(kFlags);
}

std::optional<std::string> anyError(Random& random, std::size_t chances) {
  static const std::array<std::string, 4> kErrors = {"The network connection was lost.", "", "Quota \"exceeded\"\n",
                                                     "\xF0\x9F\x92\xA5 \xFF"};
  return random.oneIn(chances) ? std::optional(random.pick(kErrors)) : std::nullopt;
}

std::optional<Time> anyDate(Random& random) {
  if (random.oneIn(5)) {
    return std::nullopt;
  }
  // Few dates for many files: equal dates show whether the order is stable.
  return random.oneIn(8) ? kNow - microseconds(random.below(2'400'000'000)) : kNow - random.pick(kAges);
}

std::optional<FakeValues> anyValues(Random& random, Mood mood) {
  static constexpr std::array<std::optional<DownloadingStatus>, 4> kStatuses = {
      std::nullopt, DownloadingStatus::current, DownloadingStatus::downloaded, DownloadingStatus::notDownloaded};
  if (mood == Mood::troubled) {
    mood = random.oneIn(6) ? Mood::wild : random.oneIn(3) ? Mood::cloudOnly : Mood::clean;
  }
  FakeValues values;
  values.contentModificationDate = anyDate(random);
  values.isDirectory = random.oneIn(10);
  values.isUbiquitousItem = !random.oneIn(8);
  if (mood == Mood::wild) {
    if (random.oneIn(12)) {
      return std::nullopt;
    }
    values.isUploaded = anyFlag(random);
    values.isUploading = anyFlag(random);
    values.hasUnresolvedConflicts = anyFlag(random);
    values.downloadingStatus = random.pick(kStatuses);
    values.uploadingError = anyError(random, 4);
    values.downloadingError = anyError(random, 4);
    return values;
  }
  values.isUploaded = random.oneIn(2) ? std::optional(true) : std::nullopt;
  values.isUploading = random.oneIn(2) ? std::optional(false) : std::nullopt;
  values.hasUnresolvedConflicts = random.oneIn(2) ? std::optional(false) : std::nullopt;
  values.downloadingStatus = random.pick(kStatuses);
  if (mood == Mood::clean && values.downloadingStatus) {
    values.downloadingStatus = DownloadingStatus::current;
  }
  return values;
}

struct Tree {
  NaiveWorld world;
  std::vector<WatchFolder> watched;
  Mood mood = Mood::wild;
};

/// Folders that lie in one another, beside one another under names that begin alike, in and out of iCloud Drive.
const std::array<std::string, 9> kFolderPaths = {
    std::string(kDrive),
    std::string(kDrive) + "/Work",
    std::string(kDrive) + "/Work/Deep",
    std::string(kDrive) + "/Work 2",
    "/Volumes/Disk/Library/Mobile Documents/com~apple~CloudDocs/Old",
    "/Users/test/Desktop",
    "/Users/test/Desktop/Work",
    "/Users/test/library/mobile documents/com~apple~clouddocs",
    "/Users/test/Library/Mobile Documents/com~other~App",
};

std::vector<FakeItem> itemsBelow(const std::vector<FakeItem>& items, const std::string& folder) {
  std::vector<FakeItem> below;
  std::copy_if(items.begin(), items.end(), std::back_inserter(below),
               [&](const FakeItem& item) { return item.path.starts_with(folder + "/"); });
  return below;
}

FakeItem anyItem(Random& random, Mood mood) {
  static const std::array<std::string, 9> kNames = {
      "a.txt", "b.txt", "Z", "\xC3\xA9", "x\ny", "Work/Deep/c", "Deep/\xFF", "d|e", "Users/test/Desktop/f"};
  return {random.pick(kFolderPaths) + "/" + random.pick(kNames) + std::to_string(random.below(4)),
          anyValues(random, mood)};
}

Tree anyTree(std::uint32_t seed) {
  static const std::array<std::string, 7> kFolderNames = {"Work", "work", "Archive", "\xC3\x84rger", "", "Work", "Z"};
  static constexpr std::array kMoods = {Mood::clean, Mood::cloudOnly, Mood::troubled, Mood::wild};
  Random random(seed);
  Tree tree;
  tree.world.now = kNow;
  tree.mood = random.pick(kMoods);

  std::vector<FakeItem> items;
  const std::size_t itemCount = random.oneIn(5) ? random.below(80) : random.below(12);
  for (std::size_t index = 0; index < itemCount; ++index) {
    items.push_back(anyItem(random, tree.mood));
  }
  for (const std::string& path : kFolderPaths) {
    if (random.oneIn(10)) {
      tree.world.unlistable.insert(path);
    } else if (!random.oneIn(10)) {
      std::vector<FakeItem> below = itemsBelow(items, path);
      if (random.oneIn(10) && !below.empty()) {
        // A file whose state changed between the walks of two folders that both hold it.
        below[random.below(below.size())].values = anyValues(random, tree.mood);
      }
      tree.world.folders[path] = std::move(below);
      if (random.oneIn(12)) {
        tree.world.brokenOff.insert(path);
      }
    }
  }
  const bool isAllInDrive = random.oneIn(2);
  const std::size_t folderCount = random.below(6);
  for (std::size_t index = 0; index < folderCount; ++index) {
    const std::string& path = isAllInDrive ? kFolderPaths.at(random.below(5)) : random.pick(kFolderPaths);
    tree.watched.push_back(
        makeFolder(random.pick(kFolderNames), random.oneIn(5) ? path + "/" : path, static_cast<std::uint8_t>(index)));
  }
  return tree;
}

void expectAgreement(const NaiveWorld& world, const std::vector<WatchFolder>& watched, std::size_t batchSize) {
  const SyncHealthReport report = engineScan(world, watched, batchSize);
  ASSERT_TRUE(hasFreshIdentifiers(report)) << report;
  ASSERT_EQ(withoutFreshIdentifiers(report), naiveScan(world, watched));
}

/// What kinds of report a run met, to show that it tried what it claims to try.
struct Coverage {
  std::set<HealthState> states;
  std::set<bool> verdicts;
  std::set<BlockerReason> reasons;
  std::set<std::string> actions;
  std::set<std::int64_t> scores;
  std::set<std::string> unavailabilities;

  void add(const SyncHealthReport& report) {
    states.insert(report.status);
    verdicts.insert(report.safeToClose);
    scores.insert(report.score);
    for (const SyncBlocker& blocker : report.blockers) {
      reasons.insert(blocker.reason);
      if (blocker.reason == BlockerReason::unavailableFolder) {
        unavailabilities.insert(blocker.details);
      }
    }
    for (const RecommendedAction& action : report.actions) {
      actions.insert(action.title);
    }
  }
};

TEST(ScanProperty, randomTrees_agreeWithTheNaiveScan) {
  Coverage coverage;
  for (std::uint32_t seed = 1; seed <= 8000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Tree tree = anyTree(seed);
    expectAgreement(tree.world, tree.watched, 1 + seed % 7);
    if (HasFatalFailure()) {
      return;
    }
    coverage.add(naiveScan(tree.world, tree.watched));
  }
  EXPECT_EQ(coverage.states.size(), 3U);
  EXPECT_EQ(coverage.verdicts.size(), 2U);
  EXPECT_EQ(coverage.reasons.size(), kAllBlockerReasons.size());
  EXPECT_EQ(coverage.unavailabilities.size(), 2U);
  EXPECT_EQ(coverage.actions.size(), 8U) << "the six next steps, the all-clear and the empty watchlist's";
  EXPECT_GT(coverage.scores.size(), 20U);
}

TEST(ScanProperty, oneFileMore_neverRaisesTheScoreNorMakesSafe) {
  std::size_t loweredScores = 0;
  std::size_t lostVerdicts = 0;
  for (std::uint32_t seed = 1; seed <= 6000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Tree tree = anyTree(seed);
    const SyncHealthReport before = engineScan(tree.world, tree.watched);
    Random random(seed + 1'000'000);
    FakeItem added = anyItem(random, random.oneIn(2) ? tree.mood : Mood::wild);
    for (auto& [path, items] : tree.world.folders) {
      if (added.path.starts_with(path + "/")) {
        items.insert(items.begin() + static_cast<std::ptrdiff_t>(random.below(items.size() + 1)), added);
      }
    }
    const SyncHealthReport after = engineScan(tree.world, tree.watched);
    ASSERT_LE(after.score, before.score) << added.path << "\n" << before << "\n" << after;
    ASSERT_LE(after.safeToClose, before.safeToClose) << added.path << "\n" << before << "\n" << after;
    for (std::size_t index = 0; index < before.folderHealth.size(); ++index) {
      if (tree.world.brokenOff.contains(std::string(withoutTrailingSlash(before.folderHealth[index].folder.path)))) {
        // With nothing seen, its score is that of a missing folder; with one file, that of what was seen.
        continue;
      }
      ASSERT_LE(after.folderHealth[index].score, before.folderHealth[index].score) << added.path;
    }
    loweredScores += after.score < before.score ? 1U : 0U;
    lostVerdicts += after.safeToClose < before.safeToClose ? 1U : 0U;
  }
  EXPECT_GT(loweredScores, 100U) << "hardly any added file mattered: the property was not put to the test";
  EXPECT_GT(lostVerdicts, 20U) << "hardly any added file mattered: the property was not put to the test";
}

TEST(ScanProperty, oneFileOfEveryStateThereIs_agreesWithTheNaiveScan) {
  static constexpr std::array<std::optional<bool>, 3> kFlags = {std::nullopt, false, true};
  static constexpr std::array<std::optional<DownloadingStatus>, 4> kStatuses = {
      std::nullopt, DownloadingStatus::current, DownloadingStatus::downloaded, DownloadingStatus::notDownloaded};
  static const std::array<std::optional<std::string>, 3> kErrors = {std::nullopt, "", "It failed."};
  std::vector<std::optional<Time>> dates = {std::nullopt};
  for (const microseconds age : kAges) {
    dates.emplace_back(kNow - age);
  }

  std::vector<std::optional<FakeValues>> states = {std::nullopt};
  for (const bool isDirectory : {false, true}) {
    for (const bool isUbiquitous : {false, true}) {
      for (const auto& isUploaded : kFlags) {
        for (const auto& isUploading : kFlags) {
          for (const auto& hasConflicts : kFlags) {
            for (const auto& status : kStatuses) {
              for (const auto& uploadingError : kErrors) {
                for (const auto& downloadingError : kErrors) {
                  for (const auto& date : dates) {
                    states.push_back(FakeValues{.isDirectory = isDirectory,
                                                .isUbiquitousItem = isUbiquitous,
                                                .isUploaded = isUploaded,
                                                .isUploading = isUploading,
                                                .hasUnresolvedConflicts = hasConflicts,
                                                .downloadingStatus = status,
                                                .uploadingError = uploadingError,
                                                .downloadingError = downloadingError,
                                                .contentModificationDate = date});
                  }
                }
              }
            }
          }
        }
      }
    }
  }
  ASSERT_EQ(states.size(), 1U + 2 * 2 * 3 * 3 * 3 * 4 * 3 * 3 * 9);

  const std::string inside = std::string(kDrive) + "/Work";
  const std::string outside = "/Users/test/Desktop";
  for (std::size_t index = 0; index < states.size(); ++index) {
    SCOPED_TRACE("state " + std::to_string(index));
    // Every state in iCloud Drive; outside, where one more blocker joins, every third.
    const std::string& folder = index % 3 == 2 ? outside : inside;
    NaiveWorld world;
    world.now = kNow;
    world.folders[folder] = {FakeItem{folder + "/a.txt", states[index]}};
    expectAgreement(world, {makeFolder("Work", folder)}, 1);
    if (index % 3 == 2 && !HasFatalFailure()) {
      world.folders[inside] = {FakeItem{inside + "/a.txt", states[index]}};
      expectAgreement(world, {makeFolder("Work", inside)}, 1);
    }
    if (HasFatalFailure()) {
      return;
    }
  }
}

TEST(ScanProperty, randomBlockersAndCounters_scoreAsInTheNaiveRules) {
  static const std::array<std::string, 6> kPaths = {"/a", "/b", "/a/b", "/\xC3\xA9", "/\xFF", "/|"};
  static constexpr std::array kStates = {HealthState::safe, HealthState::warning, HealthState::danger};
  for (std::uint32_t seed = 1; seed <= 20'000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    std::vector<SyncBlocker> blockers;
    const std::size_t blockerCount = random.below(random.oneIn(10) ? 60 : 8);
    const bool hasOneReason = random.oneIn(4);
    const BlockerReason only = random.pick(kAllBlockerReasons);
    for (std::size_t index = 0; index < blockerCount; ++index) {
      blockers.push_back(makeBlocker(hasOneReason ? only : random.pick(kAllBlockerReasons),
                                     random.pick(kPaths) + std::to_string(random.below(3)), anyDate(random)));
      blockers.back().details = std::to_string(index);
    }
    ScanMetrics metrics;
    metrics.totalFiles = static_cast<std::int64_t>(random.below(400)) - 2;
    metrics.pendingUploads = static_cast<std::int64_t>(random.below(3));
    metrics.unresolvedConflicts = static_cast<std::int64_t>(random.below(2));
    metrics.errors = static_cast<std::int64_t>(random.below(2));
    metrics.notDownloaded = static_cast<std::int64_t>(random.below(400));
    const std::int64_t score = static_cast<std::int64_t>(random.below(101));
    const HealthState status = random.pick(kStates);

    ASSERT_EQ(deduplicate(blockers), naiveWithoutDuplicates(blockers));
    ASSERT_EQ(penalty(blockers), naivePenalty(blockers));
    ASSERT_EQ(uploadTrustScore(blockers), std::max<std::int64_t>(0, 100 - naivePenalty(blockers)));
    ASSERT_EQ(healthState(score, blockers), naiveState(score, blockers));
    ASSERT_EQ(localReadinessScore(metrics), naiveLocalScore(metrics.totalFiles, metrics.notDownloaded));
    ASSERT_EQ(summaryText(status, blockers, metrics), naiveSummary(status, blockers, metrics));
    ASSERT_EQ(isSafeToClose(status, blockers, metrics), naiveVerdict(status, blockers, metrics));
    std::vector<RecommendedAction> actions = recommendedActions(blockers, metrics);
    for (RecommendedAction& action : actions) {
      action.id = UUID();
    }
    ASSERT_EQ(actions, naiveActions(blockers, metrics.pendingUploads));
    const std::vector<SyncBlocker> expectedOrder = naiveSorted(blockers);
    sortBlockers(blockers);
    ASSERT_EQ(blockers, expectedOrder);
  }
}

}  // namespace
}  // namespace cirrovane::test
