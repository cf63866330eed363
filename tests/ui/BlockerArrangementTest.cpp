#include "tests/core/Builders.h"
#include "ui/viewmodels/BlockerArrangement.h"

#include <atomic>
#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class BlockerArrangementTest : public testing::Test {
 protected:
  ArrangedBlockers arranged(const BlockerQuery& query) const {
    const std::atomic<bool> isUnwanted = false;
    return arrange(query, Shared(report_), uploads_, at(12), isUnwanted).value();
  }
  std::vector<std::string> paths(const BlockerQuery& query) const {
    const ArrangedBlockers blockers = arranged(query);
    std::vector<std::string> paths;
    for (std::size_t row = 0; row < blockers.places.size(); ++row) {
      paths.push_back(blockers.at(row).filePath);
    }
    return paths;
  }
  std::vector<std::string> found(const char* search) const {
    return paths({.search = QString::fromUtf8(search), .reason = {}, .folderPath = {}});
  }
  void add(const std::string& path, BlockerReason reason = BlockerReason::notUploaded) {
    report_.blockers.push_back(makeBlocker(reason, path));
  }
  void addFolder(const std::string& name, const std::string& path) {
    FolderHealth health;
    health.folder = makeFolder(name, path, static_cast<std::uint8_t>(report_.folderHealth.size() + 1));
    health.id = health.folder.id;
    report_.folderHealth.push_back(health);
  }
  void follow(const std::string& path, Time since) { uploads_.files.push_back({path, 1, since, 1}); }

  SyncHealthReport report_;
  UploadRecord uploads_;
};

TEST_F(BlockerArrangementTest, noWish_leavesTheReportAsItIs) {
  add("/b");
  add("/a");
  EXPECT_THAT(paths({}), ElementsAre("/b", "/a"));
}

TEST_F(BlockerArrangementTest, search_findsAnyPartOfPathOrFolder_whateverTheCase) {
  add("/Users/test/Work/Invoice.PDF");
  add("/Users/test/Other/notes.txt");
  report_.blockers[1].folderName = "Archive";
  EXPECT_THAT(found(" invoice.pdf "), ElementsAre("/Users/test/Work/Invoice.PDF"));
  EXPECT_THAT(found("archive"), ElementsAre("/Users/test/Other/notes.txt"));
  EXPECT_THAT(found("USERS/TEST"), SizeIs(2));
  EXPECT_THAT(found("nowhere"), IsEmpty());
  EXPECT_THAT(found("  "), SizeIs(2));
}

TEST_F(BlockerArrangementTest, search_findsAccentsHoweverTheyAreStored) {
  const std::string composed = "/M\u00fcller.txt";
  const std::string apart = "/Mu\u0308ller.txt";
  add(composed);
  add(apart);
  add("/Muller.txt");
  EXPECT_THAT(found("m\u00dcLLER"), ElementsAre(composed, apart));
  EXPECT_THAT(found("mu\u0308ller"), ElementsAre(composed, apart));
  EXPECT_THAT(found("muller"), ElementsAre("/Muller.txt"));
}

TEST_F(BlockerArrangementTest, search_ofNamesThatAreNoUTF8_findsTheRest) {
  add("/odd\xff name.txt");
  EXPECT_THAT(found("NAME"), SizeIs(1));
}

TEST_F(BlockerArrangementTest, reason_keepsThatOnly) {
  add("/a");
  add("/b", BlockerReason::uploadError);
  BlockerQuery query;
  query.reason = BlockerReason::uploadError;
  EXPECT_THAT(paths(query), ElementsAre("/b"));
}

TEST_F(BlockerArrangementTest, folder_keepsWhatLiesInIt_whoseNameEverItGoesUnder) {
  add("/home/Work", BlockerReason::outsideICloud);
  add("/home/Work/a");
  add("/home/Work/Deep/b");
  add("/home/Workshop/c");
  BlockerQuery query;
  query.folderPath = "/home/Work/";
  EXPECT_THAT(paths(query), ElementsAre("/home/Work", "/home/Work/a", "/home/Work/Deep/b"));
  query.folderPath = "/home/Work/Deep";
  EXPECT_THAT(paths(query), ElementsAre("/home/Work/Deep/b"));
}

TEST_F(BlockerArrangementTest, occurrences_areThoseOfTheWholeReport) {
  addFolder("Deep", "/home/Work/Deep");
  addFolder("Empty", "/home/Empty");
  addFolder("Work", "/home/Work/");
  add("/home/Work/Deep/b", BlockerReason::uploadError);
  add("/home/Work/a", BlockerReason::unresolvedConflict);
  BlockerQuery query;
  query.search = "nothing";
  const ArrangedBlockers blockers = arranged(query);
  EXPECT_THAT(blockers.places, IsEmpty());
  EXPECT_THAT(blockers.reasons, ElementsAre(BlockerReason::unresolvedConflict, BlockerReason::uploadError));
  EXPECT_THAT(blockers.folders, ElementsAre(report_.folderHealth[0].folder, report_.folderHealth[2].folder));
}

TEST_F(BlockerArrangementTest, byPath_ignoresTheCaseUnlessAllElseIsAlike) {
  add("/b/A");
  add("/B/a");
  add("/a/z");
  add("/a");
  add("/b/a");
  BlockerQuery query;
  query.order = BlockerOrder::path;
  EXPECT_THAT(paths(query), ElementsAre("/a", "/a/z", "/B/a", "/b/A", "/b/a"));
}

TEST_F(BlockerArrangementTest, byName_comesBeforeTheFolder) {
  add("/a/z");
  add("/z/A");
  add("/b/a");
  add("/a/a");
  BlockerQuery query;
  query.order = BlockerOrder::name;
  EXPECT_THAT(paths(query), ElementsAre("/z/A", "/a/a", "/b/a", "/a/z"));
}

TEST_F(BlockerArrangementTest, bySize_largestComesFirstAndUnknownLast) {
  add("/unknown");
  add("/small");
  add("/large");
  add("/small too");
  report_.blockers[1].fileSize = 1;
  report_.blockers[2].fileSize = 2;
  report_.blockers[3].fileSize = 1;
  BlockerQuery query;
  query.order = BlockerOrder::size;
  EXPECT_THAT(paths(query), ElementsAre("/large", "/small", "/small too", "/unknown"));
}

TEST_F(BlockerArrangementTest, byWait_longestComesFirst_andWhatWaitsForNoUploadLast) {
  add("/none", BlockerReason::unresolvedConflict);
  add("/late");
  add("/unknown");
  add("/early");
  follow("/early", at(9));
  follow("/late", at(10));
  follow("/none", at(8));
  BlockerQuery query;
  query.order = BlockerOrder::waiting;
  EXPECT_THAT(paths(query), ElementsAre("/early", "/late", "/none", "/unknown"));
}

TEST_F(BlockerArrangementTest, wait_isKnownOfFollowedUploadsOnly) {
  add("/a");
  add("/a", BlockerReason::stalledUpload);
  add("/a", BlockerReason::notDownloaded);
  add("/b");
  follow("/a", at(11, 59));
  const ArrangedBlockers blockers = arranged({});
  ASSERT_NE(blockers.waitOf(report_.blockers[0]), nullptr);
  EXPECT_EQ(blockers.waitOf(report_.blockers[0])->pendingSince, at(11, 59));
  EXPECT_FALSE(blockers.waitOf(report_.blockers[0])->isStuck);
  EXPECT_NE(blockers.waitOf(report_.blockers[1]), nullptr);
  EXPECT_EQ(blockers.waitOf(report_.blockers[2]), nullptr);
  EXPECT_EQ(blockers.waitOf(report_.blockers[3]), nullptr);
}

TEST_F(BlockerArrangementTest, manyBlockers_areSortedAcrossAllSlices) {
  std::vector<int> numbers(50'000);
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    numbers[index] = static_cast<int>(index) + 100'000;
  }
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  for (const int number : numbers) {
    add("/" + std::to_string(number));
  }
  BlockerQuery query;
  query.order = BlockerOrder::path;
  const std::vector<std::string> sorted = paths(query);
  EXPECT_THAT(sorted, SizeIs(50'000));
  EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
}

TEST_F(BlockerArrangementTest, unwanted_isGivenUp) {
  add("/a");
  const std::atomic<bool> isUnwanted = true;
  EXPECT_FALSE(arrange({}, Shared(report_), uploads_, at(12), isUnwanted));
}

// Edits

using Keys = std::vector<std::size_t>;

/// What the edits make of the list.
Keys edited(Keys list, const RowEdits& edits, const Keys& wanted) {
  const auto at = [&](std::size_t row) { return list.begin() + static_cast<std::ptrdiff_t>(row); };
  for (const RowRun& run : edits.removals) {
    list.erase(at(run.first), at(run.first + run.count));
  }
  for (const RowRun& run : edits.insertions) {
    const auto from = wanted.begin() + static_cast<std::ptrdiff_t>(run.first);
    list.insert(at(run.first), from, from + static_cast<std::ptrdiff_t>(run.count));
  }
  return list;
}

constexpr std::size_t kManyRuns = 1000;

TEST(RowEditsTest, sameList_takesNone) {
  const RowEdits edits = editsBetween({1, 2, 3}, {1, 2, 3}, kManyRuns).value();
  EXPECT_THAT(edits.removals, IsEmpty());
  EXPECT_THAT(edits.insertions, IsEmpty());
}

TEST(RowEditsTest, neighbours_goAndComeTogether) {
  const RowEdits edits = editsBetween({1, 2, 3, 4, 5}, {1, 4, 7, 8, 5}, kManyRuns).value();
  EXPECT_THAT(edits.removals, ElementsAre(RowRun{1, 2}));
  EXPECT_THAT(edits.insertions, ElementsAre(RowRun{2, 2}));
}

TEST(RowEditsTest, movedRow_goesAndComes_andTheOthersStay) {
  const RowEdits edits = editsBetween({1, 2, 3, 4, 5}, {2, 3, 4, 1, 5}, kManyRuns).value();
  EXPECT_THAT(edits.removals, ElementsAre(RowRun{0, 1}));
  EXPECT_THAT(edits.insertions, ElementsAre(RowRun{3, 1}));
}

TEST(RowEditsTest, moreRunsThanWanted_areNone) {
  EXPECT_FALSE(editsBetween({1, 2, 3}, {2}, 1));
  EXPECT_TRUE(editsBetween({1, 2, 3}, {2}, 2));
}

TEST(RowEditsTest, anyTwoLists_areMadeOneOfTheOther) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::size_t> length(0, 12);
  std::uniform_int_distribution<std::size_t> key(0, 9);
  for (int round = 0; round < 2000; ++round) {
    Keys before(length(random));
    Keys after(length(random));
    for (std::size_t& one : before) {
      one = key(random);
    }
    for (std::size_t& one : after) {
      one = key(random);
    }
    const RowEdits edits = editsBetween(before, after, kManyRuns).value();
    ASSERT_EQ(edited(before, edits, after), after) << testing::PrintToString(before);
  }
}

}  // namespace
}  // namespace cirrovane::test
