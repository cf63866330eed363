#include "core/BlockerList.h"
#include "core/TrustScoring.h"
#include "tests/core/Builders.h"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum BlockerReason;
using testing::ElementsAre;

std::vector<std::string> pathsInOrder(std::vector<SyncBlocker> blockers) {
  sortBlockers(blockers);
  std::vector<std::string> paths;
  for (const SyncBlocker& blocker : blockers) {
    paths.push_back(blocker.filePath);
  }
  return paths;
}

TEST(Deduplicate, sameFileAndReasonTwice_keepsTheFirst) {
  SyncBlocker first = makeBlocker(notUploaded, "/p", at(9));
  SyncBlocker second = makeBlocker(notUploaded, "/p", at(10));
  second.id = idOf(2);
  second.folderName = "Other";
  second.details = "Other details.";
  const SyncBlocker third = makeBlocker(stalledUpload, "/p");
  EXPECT_THAT(deduplicate({first, second, third}), ElementsAre(first, third));
  EXPECT_THAT(deduplicate({second, first, third}), ElementsAre(second, third));
}

TEST(Deduplicate, repeatsFarApart_keepsTheOrderOfTheRest) {
  const SyncBlocker a = makeBlocker(notUploaded, "/a");
  const SyncBlocker b = makeBlocker(notUploaded, "/b");
  const SyncBlocker c = makeBlocker(uploadError, "/a");
  EXPECT_THAT(deduplicate({b, a, c, a, b, c, a}), ElementsAre(b, a, c));
}

TEST(Deduplicate, sameFileWithEveryReason_keepsAll) {
  std::vector<SyncBlocker> blockers;
  for (const BlockerReason reason : kAllBlockerReasons) {
    blockers.push_back(makeBlocker(reason, "/p"));
  }
  EXPECT_EQ(deduplicate(blockers), blockers);
}

TEST(Deduplicate, pathsThatDifferInCaseFormOrABarOnly_areDifferentFiles) {
  const std::vector<SyncBlocker> blockers = {
      makeBlocker(notUploaded, "/p"),         makeBlocker(notUploaded, "/P"),
      makeBlocker(notUploaded, "/p/"),        makeBlocker(notUploaded, "|/p"),
      makeBlocker(notUploaded, ""),           makeBlocker(notUploaded, "/\xC3\xA9"),
      makeBlocker(notUploaded, "/e\xCC\x81"), makeBlocker(notUploaded, std::string("/p\0", 3)),
  };
  EXPECT_EQ(deduplicate(blockers), blockers);
}

TEST(Deduplicate, noBlockers_givesNone) {
  EXPECT_TRUE(deduplicate({}).empty());
}

TEST(Deduplicate, manyBlockersEachTwice_keepsEachOnce) {
  const std::vector<SyncBlocker> once = makeBlockers(notUploaded, 5000);
  std::vector<SyncBlocker> twice = once;
  twice.insert(twice.end(), once.rbegin(), once.rend());
  EXPECT_EQ(deduplicate(twice), once);
}

TEST(BlockerSort, differentWeights_heavierGoesFirstWhateverTheDates) {
  for (const BlockerReason lhs : kAllBlockerReasons) {
    for (const BlockerReason rhs : kAllBlockerReasons) {
      if (penaltyWeight(lhs) > penaltyWeight(rhs)) {
        EXPECT_TRUE(blockerSort(makeBlocker(lhs, "/z"), makeBlocker(rhs, "/a", at(1))));
        EXPECT_FALSE(blockerSort(makeBlocker(rhs, "/a", at(1)), makeBlocker(lhs, "/z")));
      }
    }
  }
}

TEST(BlockerSort, equalWeights_olderGoesFirstAndDatedBeforeUndated) {
  const SyncBlocker nine = makeBlocker(uploadError, "/z", at(9));
  const SyncBlocker ten = makeBlocker(uploadError, "/y", at(10));
  const SyncBlocker undated = makeBlocker(uploadError, "/a");
  EXPECT_TRUE(blockerSort(nine, ten));
  EXPECT_FALSE(blockerSort(ten, nine));
  EXPECT_TRUE(blockerSort(nine, undated));
  EXPECT_TRUE(blockerSort(ten, undated));
  EXPECT_FALSE(blockerSort(undated, nine));
  EXPECT_FALSE(blockerSort(undated, ten));
  EXPECT_THAT(pathsInOrder({undated, ten, nine}), ElementsAre("/z", "/y", "/a"));
}

TEST(BlockerSort, datesOneMicrosecondApart_areToldApart) {
  const SyncBlocker earlier = makeBlocker(notUploaded, "/b", at(9));
  const SyncBlocker later = makeBlocker(notUploaded, "/a", at(9) + std::chrono::microseconds(1));
  EXPECT_TRUE(blockerSort(earlier, later));
  EXPECT_FALSE(blockerSort(later, earlier));
}

TEST(BlockerSort, differentReasonsOfEqualWeight_mixByDate) {
  EXPECT_THAT(pathsInOrder({makeBlocker(uploadError, "/11", at(11)), makeBlocker(downloadError, "/9", at(9)),
                            makeBlocker(unavailableFolder, "/undated"), makeBlocker(downloadError, "/12", at(12)),
                            makeBlocker(uploadError, "/10", at(10))}),
              ElementsAre("/9", "/10", "/11", "/12", "/undated"));
  EXPECT_THAT(pathsInOrder({makeBlocker(outsideICloud, "/b"), makeBlocker(stalledUpload, "/c"),
                            makeBlocker(outsideICloud, "/d"), makeBlocker(stalledUpload, "/a")}),
              ElementsAre("/a", "/b", "/c", "/d"));
}

TEST(BlockerSort, undated_goByPathBytes) {
  EXPECT_THAT(
      pathsInOrder({makeBlocker(notUploaded, "/\xC3\xA9"), makeBlocker(notUploaded, "/a/b"),
                    makeBlocker(notUploaded, "/a"), makeBlocker(notUploaded, "/Z"), makeBlocker(notUploaded, "/a b")}),
      ElementsAre("/Z", "/a", "/a b", "/a/b", "/\xC3\xA9"));
}

TEST(BlockerSort, equalDates_goByNothingElse) {
  const SyncBlocker z = makeBlocker(notUploaded, "/z", at(9));
  const SyncBlocker a = makeBlocker(notUploaded, "/a", at(9));
  EXPECT_FALSE(blockerSort(z, a));
  EXPECT_FALSE(blockerSort(a, z));
  EXPECT_THAT(pathsInOrder({z, a}), ElementsAre("/z", "/a"));
  EXPECT_THAT(pathsInOrder({a, z}), ElementsAre("/a", "/z"));
}

TEST(BlockerSort, blockerAndItself_isNotBefore) {
  for (const BlockerReason reason : kAllBlockerReasons) {
    EXPECT_FALSE(blockerSort(makeBlocker(reason, "/a"), makeBlocker(reason, "/a")));
    EXPECT_FALSE(blockerSort(makeBlocker(reason, "/a", at(9)), makeBlocker(reason, "/a", at(9))));
  }
}

TEST(SortBlockers, oneOfEachReason_standByWeight) {
  std::vector<SyncBlocker> blockers =
      makeBlockers(std::vector<BlockerReason>(kAllBlockerReasons.rbegin(), kAllBlockerReasons.rend()));
  EXPECT_THAT(pathsInOrder(blockers),
              ElementsAre("/unresolvedConflict", "/downloadError", "/unavailableFolder", "/uploadError",
                          "/outsideICloud", "/stalledUpload", "/notUploaded", "/notDownloaded"));
}

TEST(SortBlockers, manyOfEqualRank_keepTheirOrder) {
  std::vector<SyncBlocker> blockers;
  for (int index = 0; index < 3000; ++index) {
    blockers.push_back(
        makeBlocker(index % 2 == 0 ? uploadError : downloadError, "/" + std::to_string(9999 - index), at(index % 3)));
  }
  std::vector<SyncBlocker> expected;
  for (int hour = 0; hour < 3; ++hour) {
    for (const SyncBlocker& blocker : blockers) {
      if (blocker.lastModified == at(hour)) {
        expected.push_back(blocker);
      }
    }
  }
  sortBlockers(blockers);
  EXPECT_EQ(blockers, expected);
}

}  // namespace
}  // namespace cirrovane::test
