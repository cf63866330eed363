#include "core/ICloudScanEngine.h"
#include "core/ScanIndex.h"
#include "tests/core/Builders.h"
#include "tests/core/NaiveScan.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualClock.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

FakeValues clean() {
  FakeValues values;
  values.isUploaded = true;
  return values;
}

FakeValues pending() {
  FakeValues values;
  values.isUploaded = false;
  return values;
}

class NotedListings final : public ListingObserver {
 public:
  void beforeListing(const std::string& folder, int) override { folders.push_back(folder); }
  std::vector<std::string> folders;
};

class ScanIndexOverATree : public testing::Test {
 protected:
  ScanIndexOverATree() {
    std::string path;
    for (const char* name : {"Users", "test", "Library", "Mobile Documents", "com~apple~CloudDocs", "Work"}) {
      path.append("/").append(name);
      tree.makeFolder(path);
    }
    for (const char* name : {"A", "A/Deep", "B"}) {
      tree.makeFolder(work + "/" + name);
      tree.makeFile(work + "/" + name + "/one.txt", clean());
      tree.makeFile(work + "/" + name + "/two.txt", clean());
    }
  }

  ScanIndex scan() { return ScanIndex::scan(folders, tree, clock); }
  void expectAgreement(const ScanIndex& index) const {
    SyncHealthReport told = withoutFreshIdentifiers(index.report());
    EXPECT_EQ(told, withoutFreshIdentifiers(ICloudScanEngine(tree, clock).scan(folders)));
  }

  const std::string work = std::string(kDrive) + "/Work";
  FakeTree tree;
  ManualClock clock{at(12)};
  std::vector<WatchFolder> folders = {makeFolder("Work", work + "/")};
};

TEST_F(ScanIndexOverATree, scan_tellsProgressAndObserverOfEveryFolder) {
  ScanProgress progress;
  NotedListings listings;
  const ScanIndex index =
      ScanIndex::scan(folders, tree, clock, ICloudScanEngine::kDefaultStaleUploadThreshold, &progress, &listings);
  EXPECT_EQ(progress.files(), 6);
  EXPECT_EQ(progress.folder(), work);
  EXPECT_THAT(listings.folders, UnorderedElementsAre(work, work + "/A", work + "/A/Deep", work + "/B"));
  EXPECT_TRUE(index.report().safeToClose);
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, scan_ofNoFolders_isTheUnconfiguredReport) {
  folders.clear();
  expectAgreement(scan());
}

TEST_F(ScanIndexOverATree, glance_atAFileThatBlocks_saysNoWithoutAListing) {
  ScanIndex index = scan();
  tree.setValues(work + "/A/one.txt", pending());
  const std::size_t listings = tree.listingCount();
  const auto report = index.glance(std::vector<FolderChange>{{work + "/A", "one.txt"}});
  ASSERT_TRUE(report);
  EXPECT_FALSE(report->safeToClose);
  EXPECT_EQ(report->metrics.pendingUploads, 1);
  EXPECT_EQ(report->metrics.totalFiles, 6);
  EXPECT_EQ(report->blockers.at(0).filePath, work + "/A/one.txt");
  EXPECT_EQ(tree.listingCount(), listings);
}

TEST_F(ScanIndexOverATree, glance_atAFileThatCannotBeRead_saysNo) {
  ScanIndex index = scan();
  tree.setValues(work + "/A/one.txt", std::nullopt);
  const auto report = index.glance(std::vector<FolderChange>{{work + "/A", "one.txt"}});
  ASSERT_TRUE(report);
  EXPECT_FALSE(report->safeToClose);
  EXPECT_EQ(report->metrics.errors, 1);
}

TEST_F(ScanIndexOverATree, glance_atWhatIsKnown_hasNothingToSay) {
  tree.setValues(work + "/A/one.txt", pending());
  ScanIndex index = scan();
  const std::vector<FolderChange> changes = {
      {work + "/A", "one.txt"}, {work + "/A", "one.txt"}, {work + "/B", "two.txt"}};
  EXPECT_EQ(index.glance(changes), std::nullopt);
  tree.setValues(work + "/B/two.txt", pending());
  EXPECT_NE(index.glance(changes), std::nullopt);
  EXPECT_EQ(index.glance(changes), std::nullopt);
}

TEST_F(ScanIndexOverATree, updateAfterAGlanceThatTookABlockerAway_tellsOfTheChange) {
  tree.makeFile(work + "/A/one.txt", pending());
  ScanIndex index = scan();
  tree.makeFile(work + "/A/one.txt", clean());
  const std::vector<FolderChange> changes{{work + "/A", "one.txt"}};
  EXPECT_EQ(index.glance(changes), std::nullopt);
  EXPECT_TRUE(index.update(changes).isChanged);
  EXPECT_FALSE(index.update(changes).isChanged);
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, glance_atWhatNoScanShows_hasNothingToSay) {
  tree.makeFolder(work + "/Book.pages");
  ScanIndex index = scan();
  tree.makeFile(work + "/.hidden", pending());
  tree.makeFile(work + "/Book.pages/chapter", pending());
  tree.makeFolder(work + "/New");
  tree.makeFile(work + "/New/file", pending());
  EXPECT_EQ(index.glance(std::vector<FolderChange>{{work, ".hidden"},
                                                   {work, "Book.pages"},
                                                   {work + "/Book.pages", "chapter"},
                                                   {work, "New"},
                                                   {work + "/New", "file"},
                                                   {"/elsewhere", "file"},
                                                   {work, "gone"}}),
            std::nullopt);
}

TEST_F(ScanIndexOverATree, update_ofAFile_listsItsFolderAlone) {
  ScanIndex index = scan();
  tree.setValues(work + "/A/one.txt", pending());
  const std::size_t listings = tree.listingCount();
  const UpdateResult result = index.update(std::vector<FolderChange>{{work + "/A", "one.txt"}});
  EXPECT_EQ(tree.listingCount(), listings + 1);
  EXPECT_TRUE(result.isChanged);
  EXPECT_THAT(result.gone, IsEmpty());
  EXPECT_FALSE(index.report().safeToClose);
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, update_ofAFileThatIsStillClean_changesNothing) {
  ScanIndex index = scan();
  EXPECT_FALSE(index.update(std::vector<FolderChange>{{work + "/A", "one.txt"}, {work, ""}}).isChanged);
  EXPECT_FALSE(index.update({}).isChanged);
}

TEST_F(ScanIndexOverATree, update_ofAFolderThatCameInPlaceOfAnother_readsItWhole) {
  tree.makeFolder(work + "/C");
  tree.makeFolder(work + "/C/Deep");
  tree.makeFile(work + "/C/Deep/one.txt", pending());
  ScanIndex index = scan();
  tree.move(work + "/A", work + "/D");
  tree.move(work + "/C", work + "/A");
  index.update(std::vector<FolderChange>{{work, "A"}, {work, "C"}, {work, "D"}});
  expectAgreement(index);
  EXPECT_FALSE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, update_ofAFolderThatBecameALink_dropsAllBelow) {
  ScanIndex index = scan();
  tree.remove(work + "/A");
  tree.makeLink(work + "/A", work + "/B");
  EXPECT_THAT(index.update(std::vector<FolderChange>{{work, "A"}}).gone, ElementsAre(work + "/A"));
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, update_ofAFolderBelow_tellsThatItWent) {
  ScanIndex index = scan();
  tree.remove(work + "/A/Deep");
  EXPECT_THAT(index.update(std::vector<FolderChange>{{work, "", true}}).gone, ElementsAre(work + "/A/Deep"));
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, update_ofWhatAnotherWatchedFolderHolds_doesNotTellItAsGone) {
  folders.push_back(makeFolder("Deep", work + "/A/Deep", 2));
  ScanIndex index = scan();
  tree.remove(work + "/A");
  EXPECT_THAT(index.update(std::vector<FolderChange>{{work, "A"}, {work + "/A/Deep", "", true}}).gone, IsEmpty());
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, update_aboveAWatchedFolder_readsItWhole) {
  const std::string drive(kDrive);
  ScanIndex index = scan();
  tree.move(work, drive + "/Elsewhere");
  index.update(std::vector<FolderChange>{{drive, "Work"}});
  expectAgreement(index);
  EXPECT_EQ(index.report().metrics.errors, 1);
  tree.move(drive + "/Elsewhere", work);
  index.update(std::vector<FolderChange>{{"/Users", "", true}});
  expectAgreement(index);
  EXPECT_TRUE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, update_aboveAWatchedFolderWithoutAName_noticesThatItWentAndCame) {
  const std::string drive(kDrive);
  ScanIndex index = scan();
  tree.move(work, drive + "/Elsewhere");
  index.update(std::vector<FolderChange>{{drive, ""}});
  expectAgreement(index);
  tree.move(drive + "/Elsewhere", work);
  index.update(std::vector<FolderChange>{{drive, ""}});
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, update_ofAWatchedFolderThatIsKeptFromUs_isABlocker) {
  ScanIndex index = scan();
  tree.setListable(work, false);
  index.update(std::vector<FolderChange>{{work, ""}});
  expectAgreement(index);
  EXPECT_FALSE(index.report().safeToClose);
  tree.setListable(work, true);
  index.update(std::vector<FolderChange>{{work, ""}});
  expectAgreement(index);
  EXPECT_TRUE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, update_ofAWatchedFolderWhoseListingBreaksOff_isABlockerBesideWhatWasSeen) {
  ScanIndex index = scan();
  tree.setBreaksOff(work, true);
  index.update(std::vector<FolderChange>{{work, ""}});
  expectAgreement(index);
  EXPECT_GT(index.report().metrics.totalFiles, 0);
  EXPECT_FALSE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, update_ofAFolderThatIsKeptFromUs_passesOverIt) {
  ScanIndex index = scan();
  tree.setListable(work + "/A", false);
  index.update(std::vector<FolderChange>{{work + "/A", ""}});
  expectAgreement(index);
  EXPECT_TRUE(index.report().safeToClose);
  EXPECT_EQ(index.report().metrics.totalFiles, 2);
}

TEST_F(ScanIndexOverATree, update_ofAFolderWithoutMeansToOpenIt_isNotSafe) {
  ScanIndex index = scan();
  tree.setExhausted(work + "/A", true);
  index.update(std::vector<FolderChange>{{work + "/A", "one.txt"}});
  expectAgreement(index);
  EXPECT_FALSE(index.report().safeToClose);
  EXPECT_THAT(index.blockedItems(9), ElementsAre(FolderChange{work + "/A", "", true}));
  tree.setExhausted(work + "/A", false);
  EXPECT_TRUE(index.readBlockedAgain(9).isChanged);
  expectAgreement(index);
  EXPECT_TRUE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, update_ofMostFilesOfALargeTree_walksItOnce) {
  tree.makeFolder(work + "/C");
  for (int file = 0; file < 3'000; ++file) {
    tree.makeFile(work + "/C/" + std::to_string(file), clean());
  }
  ScanIndex index = scan();
  tree.setValues(work + "/C/7", pending());
  std::size_t listings = tree.listingCount();
  index.update(std::vector<FolderChange>{{work + "/C", "7"}});
  EXPECT_EQ(tree.listingCount(), listings + 5);
  expectAgreement(index);
  listings = tree.listingCount();
  index.update(std::vector<FolderChange>{{work + "/A", "one.txt"}});
  EXPECT_EQ(tree.listingCount(), listings + 1);
}

TEST_F(ScanIndexOverATree, update_tellsTheObserverOfWhatItLists) {
  ScanIndex index = scan();
  tree.makeFolder(work + "/New");
  tree.makeFolder(work + "/New/Below");
  NotedListings listings;
  index.update(std::vector<FolderChange>{{work, "New"}}, &listings);
  EXPECT_THAT(listings.folders, ElementsAre(work, work + "/New", work + "/New/Below"));
}

TEST_F(ScanIndexOverATree, report_overOverlappingFolders_tellsAProblemOnce) {
  folders.push_back(makeFolder("A", work + "/A", 2));
  ScanIndex index = scan();
  tree.setValues(work + "/A/Deep/one.txt", pending());
  index.update(std::vector<FolderChange>{{work + "/A/Deep", "one.txt"}});
  expectAgreement(index);
  EXPECT_EQ(index.report().blockers.size(), 1U);
  EXPECT_EQ(index.report().metrics.pendingUploads, 2);
}

TEST_F(ScanIndexOverATree, nextStall_isJustAfterTheThreshold) {
  FakeValues uploading = clean();
  uploading.isUploading = true;
  uploading.contentModificationDate = clock.now() - seconds(200);
  ScanIndex index = scan();
  EXPECT_EQ(index.nextStall(clock.now()), std::nullopt);
  tree.setValues(work + "/A/one.txt", uploading);
  index.update(std::vector<FolderChange>{{work + "/A", "one.txt"}});
  EXPECT_TRUE(index.report().safeToClose);
  const Time stall = clock.now() + seconds(1'000) + microseconds(1);
  EXPECT_EQ(index.nextStall(clock.now()), stall);
  // A moment that has passed since the report was made still counts.
  const Time generatedAt = clock.now();
  clock.set(stall + seconds(5));
  EXPECT_EQ(index.nextStall(generatedAt), stall);
  EXPECT_EQ(index.nextStall(clock.now()), std::nullopt);
  EXPECT_FALSE(index.report().safeToClose);
  expectAgreement(index);
  clock.set(generatedAt);
  EXPECT_TRUE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, nextStall_ofADateThatNoClockReaches_isNone) {
  FakeValues uploading = clean();
  uploading.isUploading = true;
  uploading.contentModificationDate = Time::max();
  tree.setValues(work + "/A/one.txt", uploading);
  EXPECT_EQ(scan().nextStall(clock.now()), std::nullopt);
}

TEST_F(ScanIndexOverATree, blockedItems_comeInTurns) {
  for (const char* name : {"A/one.txt", "A/two.txt", "B/one.txt", "B/two.txt", "A/Deep/one.txt"}) {
    tree.setValues(work + "/" + name, pending());
  }
  FakeValues inTheCloud = clean();
  inTheCloud.downloadingStatus = DownloadingStatus::notDownloaded;
  tree.setValues(work + "/A/Deep/two.txt", inTheCloud);
  ScanIndex index = scan();
  std::multiset<std::string> told;
  for (int call = 0; call < 5; ++call) {
    const std::vector<FolderChange> items = index.blockedItems(2);
    EXPECT_EQ(items.size(), 2U);
    for (const FolderChange& item : items) {
      told.insert(item.folder + "/" + item.item);
    }
  }
  EXPECT_EQ(told.size(), 10U);
  for (const std::string& path : told) {
    EXPECT_EQ(told.count(path), 2U) << path;
  }
  EXPECT_EQ(index.blockedItems(100).size(), 5U);
  EXPECT_THAT(index.blockedItems(0), IsEmpty());
}

TEST_F(ScanIndexOverATree, readBlockedAgain_readsBlockedFilesByThemselves) {
  tree.setValues(work + "/A/one.txt", pending());
  ScanIndex index = scan();
  EXPECT_FALSE(index.readBlockedAgain(100).isChanged);
  tree.setValues(work + "/A/one.txt", clean());
  const std::size_t listings = tree.listingCount();
  EXPECT_TRUE(index.readBlockedAgain(100).isChanged);
  EXPECT_EQ(tree.listingCount(), listings);
  expectAgreement(index);
  EXPECT_TRUE(index.report().safeToClose);
}

TEST_F(ScanIndexOverATree, readBlockedAgain_ofAFileThatWent_listsItsFolder) {
  tree.setValues(work + "/A/one.txt", pending());
  ScanIndex index = scan();
  tree.remove(work + "/A/one.txt");
  tree.makeFolder(work + "/A/one.txt");
  EXPECT_TRUE(index.readBlockedAgain(100).isChanged);
  expectAgreement(index);
}

TEST_F(ScanIndexOverATree, differences_nameTheFolders) {
  const ScanIndex before = scan();
  tree.setValues(work + "/A/one.txt", pending());
  tree.makeFile(work + "/B/three.txt", clean());
  tree.makeFolder(work + "/A/Deep/New");
  const ScanIndex after = scan();
  EXPECT_THAT(before.differences(after, {}), ElementsAre(work + "/A", work + "/A/Deep", work + "/B"));
  EXPECT_THAT(before.differences(after, std::vector<FolderChange>{{work + "/B", "three.txt"}}),
              ElementsAre(work + "/A", work + "/A/Deep"));
  EXPECT_THAT(before.differences(after, std::vector<FolderChange>{{work + "/A", "", true}}), ElementsAre(work + "/B"));
  EXPECT_THAT(before.differences(after, std::vector<FolderChange>{{work, "A"}}), ElementsAre(work + "/B"));
  EXPECT_THAT(after.differences(after, {}), IsEmpty());
}

TEST_F(ScanIndexOverATree, differences_ofAWatchedFolderThatWent_nameIt) {
  const ScanIndex before = scan();
  tree.setListable(work, false);
  EXPECT_THAT(before.differences(scan(), {}), ElementsAre(work));
  tree.remove(work);
  EXPECT_THAT(before.differences(scan(), {}), ElementsAre(work));
}

}  // namespace
}  // namespace cirrovane::test
