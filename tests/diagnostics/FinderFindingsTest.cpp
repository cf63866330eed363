#include "tests/diagnostics/MachineFixture.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class FinderFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const { return service().finderFindings(report_, watchFolders_); }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }

  std::vector<WatchFolder> watchFolders_ = {existingFolder()};
};

const Row kFinderScope = {info, "Finder/Files diagnostic scope",
                          "Current checks validate path reachability and blocker visibility. Internal Finder or "
                          "file-provider logs are not parsed yet."};

TEST_F(FinderFindings, healthyMac_givesThreeRowsInOrder) {
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{ok, "Finder process", "Finder is running."},
                          Row{ok, "Watchlist paths", "All watchlist paths are currently reachable."}, kFinderScope));
}

TEST_F(FinderFindings, everythingWrong_givesFourRowsInOrder) {
  system_.facts.runningApplications.clear();
  watchFolders_ = {makeFolder("Gone", "/gone")};
  report_.blockers = {makeBlocker(BlockerReason::unresolvedConflict, "/lost.txt")};
  EXPECT_THAT(
      rowsOf(findings()),
      ElementsAre(
          Row{warning, "Finder process", "Finder is not running; file-state indicators may be stale or unavailable."},
          Row{warning, "Missing watchlist paths", "1 watchlist paths are missing or moved."},
          Row{warning, "Top blocker path", "Top blocker path is no longer available locally: /lost.txt"},
          kFinderScope));
}

TEST_F(FinderFindings, everyFinding_isOfFinderAndOfNow) {
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::finder)));
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::observedAt, clock_.now())));
}

TEST_F(FinderFindings, noCommandIsRun) {
  findings();
  EXPECT_THAT(commands_.ran(), IsEmpty());
}

TEST_F(FinderFindings, otherApplications_doNotStandForFinder) {
  system_.facts.runningApplications = {"com.apple.Finder", "com.apple.finder.helper", "com.apple.mail"};
  EXPECT_EQ(row("Finder process").value_or(Row()).severity, warning);
  system_.facts.runningApplications = {"com.apple.mail", "com.apple.finder"};
  EXPECT_EQ(row("Finder process").value_or(Row()).severity, ok);
}

TEST_F(FinderFindings, watchedPaths_missingOnes_areCounted) {
  watchFolders_ = {makeFolder("A", "/a"), existingFolder(), makeFolder("B", "/b"), makeFolder("C", "/c")};
  EXPECT_EQ(row("Missing watchlist paths"),
            (Row{warning, "Missing watchlist paths", "3 watchlist paths are missing or moved."}));
  EXPECT_EQ(row("Watchlist paths"), std::nullopt);

  for (const char* path : {"/a", "/b", "/c"}) {
    files_.addExisting(path);
  }
  EXPECT_EQ(row("Missing watchlist paths"), std::nullopt);
  EXPECT_EQ(row("Watchlist paths"), (Row{ok, "Watchlist paths", "All watchlist paths are currently reachable."}));
}

TEST_F(FinderFindings, watchedPath_isTakenAsStored) {
  files_.addExisting("/Users/test/Work/");
  watchFolders_ = {makeFolder("Work", "/Users/test/Work/")};
  EXPECT_NE(row("Watchlist paths"), std::nullopt);
  watchFolders_ = {makeFolder("Work", "/Users/test/work")};
  EXPECT_NE(row("Missing watchlist paths"), std::nullopt);
}

TEST_F(FinderFindings, emptyWatchlist_hasItsPathsInOrder) {
  watchFolders_.clear();
  EXPECT_EQ(row("Watchlist paths"), (Row{ok, "Watchlist paths", "All watchlist paths are currently reachable."}));
}

TEST_F(FinderFindings, topBlocker_thatExists_isNamedAsInformation) {
  files_.addExisting("/Users/test/a b.txt");
  report_.blockers = {makeBlocker(BlockerReason::unresolvedConflict, "/Users/test/a b.txt"),
                      makeBlocker(BlockerReason::unresolvedConflict, "/lost.txt")};
  EXPECT_EQ(row("Top blocker path"),
            (Row{info, "Top blocker path", "Top blocker path exists locally: /Users/test/a b.txt"}));
}

TEST_F(FinderFindings, topBlocker_deletedSince_isAWarningWithItsPath) {
  files_.addExisting("/Users/test/second.txt");
  report_.blockers = {makeBlocker(BlockerReason::unresolvedConflict, "/Users/test/first.txt"),
                      makeBlocker(BlockerReason::unresolvedConflict, "/Users/test/second.txt")};
  EXPECT_EQ(row("Top blocker path"), (Row{warning, "Top blocker path",
                                          "Top blocker path is no longer available locally: /Users/test/first.txt"}));
}

TEST_F(FinderFindings, noBlocker_hasNoPath) {
  EXPECT_EQ(row("Top blocker path"), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
