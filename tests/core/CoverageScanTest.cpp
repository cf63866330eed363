#include "core/CoverageScan.h"
#include "tests/core/Builders.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualClock.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

const std::string kWork = std::string(kDrive) + "/Work";

FakeValues uploaded(bool isUploaded = true) {
  FakeValues values;
  values.isUploaded = isUploaded;
  return values;
}

FakeValues notUbiquitous() {
  FakeValues values;
  values.isUbiquitousItem = false;
  return values;
}

class CoverageScanTest : public testing::Test {
 protected:
  CoverageScanTest() {
    std::string path;
    for (const std::string name :
         {"/Users", "/test", "/Library", "/Mobile Documents", "/com~apple~CloudDocs", "/Work"}) {
      tree_.makeFolder(path += name);
    }
    request_.folders = {makeFolder("Work", kWork)};
  }

  CoverageReport report() const { return CoverageScan(tree_, clock_).look(request_)->report; }
  /// The only gap, with its kind and rule; empty unless there is exactly one.
  std::string onlyGap() const {
    const CoverageReport found = report();
    if (found.gaps.size() != 1) {
      return "";
    }
    const CoverageGap& gap = found.gaps.front();
    return std::string(rawValue(gap.kind)) + " " + gap.path.substr(kWork.size()) + (gap.isFolder ? "/" : "") +
           (gap.rule ? " " + *gap.rule : "");
  }

  FakeTree tree_;
  ManualClock clock_{at(18)};
  CoverageRequest request_;
};

TEST_F(CoverageScanTest, everythingUploaded_isComplete) {
  tree_.makeFile(kWork + "/a.txt", uploaded());
  tree_.makeFile(kWork + "/.env", uploaded());
  tree_.makeFolder(kWork + "/Song.pages");
  tree_.makeFile(kWork + "/Song.pages/Data", uploaded());
  const CoverageReport found = report();
  EXPECT_TRUE(found.complete);
  EXPECT_EQ(found.generatedAt, at(18));
  EXPECT_EQ(found.examined, (CoverageExamined{.hidden = 1, .inPackages = 1, .packages = 1}));
  EXPECT_EQ(encodeJSON(found.gapCounts), "{}");
}

TEST_F(CoverageScanTest, pendingVisibleFile_isNoGap) {
  tree_.makeFile(kWork + "/a.txt", uploaded(false));
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageScanTest, pendingFileDeepInPackage_isThePackages) {
  tree_.makeFolder(kWork + "/Song.pages");
  tree_.makeFolder(kWork + "/Song.pages/.media");
  tree_.makeFile(kWork + "/Song.pages/.media/take", uploaded(false));
  EXPECT_EQ(onlyGap(), "pendingPackage /Song.pages/");
}

TEST_F(CoverageScanTest, pendingPackageInHiddenFolder_isTheHiddenFolders) {
  tree_.makeFolder(kWork + "/.drafts");
  tree_.makeFolder(kWork + "/.drafts/Song.pages");
  tree_.makeFile(kWork + "/.drafts/Song.pages/take", uploaded(false));
  EXPECT_EQ(onlyGap(), "pendingHidden /.drafts/");
  EXPECT_EQ(report().examined, (CoverageExamined{.hidden = 3, .inPackages = 0, .packages = 0}));
}

TEST_F(CoverageScanTest, hiddenFolderNamedLikeAPackage_isHidden) {
  tree_.makeFolder(kWork + "/.Song.pages");
  tree_.setFolderValues(kWork + "/.Song.pages", uploaded(false));
  EXPECT_EQ(onlyGap(), "pendingHidden /.Song.pages/");
}

TEST_F(CoverageScanTest, environmentFileOutsideICloud_isNotInICloud) {
  tree_.makeFile(kWork + "/.env", notUbiquitous());
  EXPECT_EQ(onlyGap(), "notInICloud /.env");
}

TEST_F(CoverageScanTest, fileInPackage_needNotBeInICloudByItself) {
  tree_.makeFolder(kWork + "/Song.pages");
  tree_.makeFile(kWork + "/Song.pages/take", notUbiquitous());
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageScanTest, packageOutsideICloud_isNotInICloud) {
  tree_.makeFolder(kWork + "/Song.pages");
  tree_.setFolderValues(kWork + "/Song.pages", notUbiquitous());
  EXPECT_EQ(onlyGap(), "notInICloud /Song.pages/");
}

TEST_F(CoverageScanTest, folderByARule_standsForWhatItHolds) {
  tree_.makeFolder(kWork + "/build.nosync");
  tree_.setFolderValues(kWork + "/build.nosync", notUbiquitous());
  tree_.makeFile(kWork + "/build.nosync/a.o", notUbiquitous());
  tree_.makeFolder(kWork + "/build.nosync/.cache");
  tree_.makeFile(kWork + "/build.nosync/.cache/b", notUbiquitous());
  EXPECT_EQ(onlyGap(), "excluded /build.nosync/ *.nosync");
}

TEST_F(CoverageScanTest, ubiquitousItemByARule_isNoGap) {
  tree_.makeFolder(kWork + "/build.nosync");
  tree_.makeFile(kWork + "/build.nosync/a.o", uploaded());
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageScanTest, itemMarkedAsExcluded_hasNoRule) {
  FakeValues values = uploaded();
  values.isExcludedFromSync = true;
  tree_.makeFile(kWork + "/a.txt", values);
  EXPECT_EQ(onlyGap(), "excluded /a.txt");
}

TEST_F(CoverageScanTest, pausedPendingItem_isPausedWhereItIsSeen) {
  FakeValues values = uploaded(false);
  values.isSyncPaused = true;
  tree_.makeFile(kWork + "/a.txt", values);
  EXPECT_EQ(onlyGap(), "syncPaused /a.txt");
}

TEST_F(CoverageScanTest, fileWithoutItsState_isUnknown) {
  tree_.makeFile(kWork + "/a.txt", FakeValues());
  EXPECT_EQ(onlyGap(), "stateUnknown /a.txt");
  tree_.makeFile(kWork + "/a.txt", std::nullopt);
  EXPECT_EQ(onlyGap(), "stateUnknown /a.txt");
}

TEST_F(CoverageScanTest, folderThatCannotBeListed_isUnreadable) {
  tree_.makeFolder(kWork + "/Locked");
  tree_.setListable(kWork + "/Locked", false);
  EXPECT_EQ(onlyGap(), "unreadableFolder /Locked/");
}

TEST_F(CoverageScanTest, filesThatPass_areCountedNowhere) {
  tree_.makeFolder(kWork + "/Song.pages");
  for (const std::string name :
       {"~$a.docx", ".~lock.a#", "a.tmp", ".DS_Store", ".localized", "._a", "Icon\r", ".a.icloud"}) {
    tree_.makeFile(kWork + "/" + name, notUbiquitous());
    tree_.makeFile(kWork + "/Song.pages/" + name, uploaded(false));
  }
  tree_.makeFolder(kWork + "/.Trash");
  tree_.makeFile(kWork + "/.Trash/old", uploaded(false));
  const CoverageReport found = report();
  EXPECT_TRUE(found.complete) << encodeJSON(found);
  EXPECT_EQ(found.examined, (CoverageExamined{.hidden = 0, .inPackages = 0, .packages = 1}));
}

TEST_F(CoverageScanTest, folderNamedLikeAPassingFile_counts) {
  tree_.makeFolder(kWork + "/.DS_Store");
  tree_.makeFile(kWork + "/.DS_Store/a", uploaded(false));
  EXPECT_EQ(onlyGap(), "pendingHidden /.DS_Store/");
}

TEST_F(CoverageScanTest, hiddenLink_leadsNowhere) {
  tree_.makeLink(kWork + "/.root", "/");
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageScanTest, overlappingFolders_yieldAGapOnceUnderTheFirstName) {
  tree_.makeFolder(kWork + "/Deep");
  tree_.makeFile(kWork + "/Deep/.env", notUbiquitous());
  request_.folders = {makeFolder("Deep", kWork + "/Deep"), makeFolder("Work", kWork), makeFolder("Again", kWork)};
  const CoverageReport found = report();
  ASSERT_EQ(found.gaps.size(), 1U);
  EXPECT_EQ(found.gaps.front().folderName, "Deep");
  EXPECT_EQ(found.gapCounts.notInICloud, 1);
  EXPECT_EQ(found.examined.hidden, 1);
}

TEST_F(CoverageScanTest, foldersNotToBeLookedAt_areNamed) {
  tree_.makeFolder(kWork + "/Locked");
  tree_.setListable(kWork + "/Locked", false);
  request_.folders = {makeFolder("Gone", kWork + "/Gone/"), makeFolder("Desk", "/Users/test"),
                      makeFolder("Locked", kWork + "/Locked")};
  const CoverageReport found = report();
  EXPECT_FALSE(found.complete);
  EXPECT_EQ(found.notExamined, (std::vector<std::string>{kWork + "/Gone", "/Users/test", kWork + "/Locked"}));
  EXPECT_TRUE(found.gaps.empty());
}

TEST_F(CoverageScanTest, acknowledgedPath_coversAllBelow) {
  tree_.makeFile(kWork + "/.env", notUbiquitous());
  tree_.makeFolder(kWork + "/.e");
  tree_.makeFile(kWork + "/.e/x", notUbiquitous());
  request_.acknowledged = {kWork + "/.e"};
  EXPECT_EQ(onlyGap(), "notInICloud /.env");
  EXPECT_EQ(report().acknowledged, 1);
  request_.acknowledged = {std::string(kDrive)};
  EXPECT_TRUE(report().complete);
  EXPECT_EQ(report().acknowledged, 2);
  request_.acknowledged = {"/"};
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageScanTest, gapsBeyondTheMost_areCountedOnly) {
  for (int number = 0; number < 600; ++number) {
    tree_.makeFile(kWork + "/" + std::to_string(1000 + number), notUbiquitous());
  }
  tree_.makeFolder(kWork + "/Zoo.pages");
  tree_.makeFile(kWork + "/Zoo.pages/x", uploaded(false));
  const CoverageReport found = report();
  ASSERT_EQ(found.gaps.size(), 500U);
  EXPECT_EQ(found.gaps.front().path, kWork + "/Zoo.pages");
  EXPECT_EQ(found.gaps.back().path, kWork + "/1498");
  EXPECT_EQ(found.gapCounts.notInICloud, 600);
}

TEST_F(CoverageScanTest, farFewerFilesThanOnce_areLost) {
  for (int number = 0; number < 9; ++number) {
    tree_.makeFile(kWork + "/" + std::to_string(number), uploaded());
  }
  request_.mostFiles = {{kWork, 20}};
  EXPECT_EQ(onlyGap(), "filesLost / from 20 files to 9");
  tree_.makeFile(kWork + "/one more", uploaded());
  EXPECT_TRUE(report().complete);
  request_.mostFiles = {{kWork, 19}};
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageScanTest, lostFiles_standBesideOtherGaps) {
  tree_.makeFile(kWork + "/.env", notUbiquitous());
  request_.mostFiles = {{kWork, 40}};
  EXPECT_EQ(report().gaps.size(), 2U);
  EXPECT_EQ(report().gaps.back().kind, GapKind::filesLost);
}

TEST_F(CoverageScanTest, stopAskedFor_givesNothing) {
  CoverageStop stop;
  tree_.setOnListing([&] { stop.ask(); });
  EXPECT_EQ(CoverageScan(tree_, clock_).look(request_, stop).has_value(), false);
}

TEST(CoverageReport, gapsThatTimeDoesNotClose_lastOnceNoOtherIsLeft) {
  CoverageReport report;
  report.gapCounts.add(GapKind::pendingHidden);
  EXPECT_FALSE(hasLastingGapsOnly(report));
  report.gapCounts.add(GapKind::notInICloud);
  EXPECT_FALSE(hasLastingGapsOnly(report));
  report.gapCounts.remove(GapKind::pendingHidden);
  EXPECT_TRUE(hasLastingGapsOnly(report));
  report.gapCounts = {};
  report.notExamined = {"/x"};
  EXPECT_TRUE(hasLastingGapsOnly(report));
  report.notExamined = {};
  report.complete = true;
  EXPECT_FALSE(hasLastingGapsOnly(report));
}

TEST(CoverageReport, json_hasItsKeysSorted) {
  CoverageReport report;
  report.gaps = {{GapKind::excluded, "/x/a.nosync", "x", true, "*.nosync"},
                 {GapKind::stateUnknown, "/x/b", "x", false, std::nullopt}};
  report.gapCounts.add(GapKind::excluded);
  report.gapCounts.add(GapKind::stateUnknown);
  EXPECT_EQ(encodeJSON(report), R"({
  "acknowledged": 0,
  "complete": false,
  "examined": {
    "hidden": 0,
    "inPackages": 0,
    "packages": 0
  },
  "gapCounts": {
    "excluded": 1,
    "stateUnknown": 1
  },
  "gaps": [
    {
      "folderName": "x",
      "isFolder": true,
      "kind": "excluded",
      "path": "/x/a.nosync",
      "rule": "*.nosync"
    },
    {
      "folderName": "x",
      "isFolder": false,
      "kind": "stateUnknown",
      "path": "/x/b"
    }
  ],
  "generatedAt": "1970-01-01T00:00:00Z",
  "notExamined": []
})");
}

}  // namespace
}  // namespace cirrovane::test
