#include "core/ICloudScanEngine.h"
#include "tests/core/Builders.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/ManualClock.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum BlockerReason;
using std::chrono::microseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kWork = std::string(kDrive) + "/Work";
const std::string kDesktop = "/Users/test/Desktop";

/// A file in iCloud Drive, uploaded and on this machine.
FakeValues cleanFile() {
  FakeValues values;
  values.isUploaded = true;
  values.isUploading = false;
  values.hasUnresolvedConflicts = false;
  values.downloadingStatus = DownloadingStatus::current;
  values.contentModificationDate = at(9);
  return values;
}

FakeValues folderValues() {
  FakeValues values;
  values.isDirectory = true;
  return values;
}

FakeValues localFile() {
  FakeValues values;
  values.isUbiquitousItem = false;
  return values;
}

class ICloudScan : public testing::Test {
 protected:
  SyncHealthReport scan(const std::vector<WatchFolder>& folders) const {
    return ICloudScanEngine(fileSystem, clock).scan(folders);
  }

  /// The report over the folder Work in iCloud Drive with the one file a.txt.
  SyncHealthReport scanFile(const std::optional<FakeValues>& values) {
    fileSystem.addFolder(kWork, {{kWork + "/a.txt", values}});
    return scan({makeFolder("Work", kWork)});
  }

  FakeFileSystem fileSystem;
  ManualClock clock{at(12)};
};

std::vector<BlockerReason> reasonsOf(const SyncHealthReport& report) {
  std::vector<BlockerReason> reasons;
  for (const SyncBlocker& blocker : report.blockers) {
    reasons.push_back(blocker.reason);
  }
  return reasons;
}

std::vector<std::string> folderNamesOf(const SyncHealthReport& report) {
  std::vector<std::string> names;
  for (const FolderHealth& result : report.folderHealth) {
    names.push_back(result.folder.name);
  }
  return names;
}

// Folders

TEST_F(ICloudScan, noFolders_givesTheUnconfiguredReport) {
  const SyncHealthReport report = scan({});
  EXPECT_EQ(report.status, HealthState::warning);
  EXPECT_EQ(report.score, 0);
  EXPECT_EQ(report.localAvailabilityScore, 0);
  EXPECT_FALSE(report.safeToClose);
  EXPECT_EQ(report.generatedAt, at(12));
  EXPECT_THAT(report.blockers, IsEmpty());
  EXPECT_THAT(report.folderHealth, IsEmpty());
  EXPECT_EQ(report.metrics, ScanMetrics());
  ASSERT_EQ(report.actions.size(), 1U);
  EXPECT_NE(report.actions[0].id, UUID());
  EXPECT_EQ(report.actions[0].rank, 1);
  EXPECT_EQ(report.actions[0].title, "Add a critical folder");
  EXPECT_EQ(report.actions[0].detail,
            "Start with client work, school, or invoices so the score reflects what matters.");
  EXPECT_EQ(report.summary, "No watchlist folders are configured yet.");
  EXPECT_THAT(fileSystem.enumerated(), IsEmpty());
}

TEST_F(ICloudScan, missingFolder_isOneErrorAndIsNotWalked) {
  const WatchFolder folder = makeFolder("Gone", kWork, 5);
  const SyncHealthReport report = scan({folder});
  ASSERT_EQ(report.blockers.size(), 1U);
  SyncBlocker blocker = report.blockers[0];
  EXPECT_NE(blocker.id, UUID());
  EXPECT_EQ(blocker.filePath, kWork);
  EXPECT_EQ(blocker.folderName, "Gone");
  EXPECT_EQ(blocker.reason, unavailableFolder);
  EXPECT_EQ(blocker.details, "The folder path does not exist on this Mac.");
  EXPECT_EQ(blocker.lastModified, std::nullopt);
  EXPECT_THAT(report.folderHealth, ElementsAre(FolderHealth{.id = idOf(5),
                                                            .folder = folder,
                                                            .scannedFileCount = 0,
                                                            .blockerCount = 1,
                                                            .status = HealthState::danger,
                                                            .score = 0}));
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.metrics.scannedFolders, 1);
  EXPECT_EQ(report.metrics.totalFiles, 0);
  EXPECT_EQ(report.score, 76);
  EXPECT_EQ(report.status, HealthState::warning);
  EXPECT_FALSE(report.safeToClose);
  EXPECT_EQ(report.localAvailabilityScore, 100);
  EXPECT_THAT(fileSystem.enumerated(), IsEmpty());
}

TEST_F(ICloudScan, missingFolderOutsideICloud_isOnlyMissing) {
  EXPECT_THAT(reasonsOf(scan({makeFolder("Gone", kDesktop)})), ElementsAre(unavailableFolder));
}

TEST_F(ICloudScan, missingFolderBetweenOthers_doesNotStopTheScan) {
  fileSystem.addFolder(kWork, {{kWork + "/a.txt", cleanFile()}});
  const SyncHealthReport report =
      scan({makeFolder("A", kDesktop), makeFolder("B", kWork), makeFolder("C", "/nowhere")});
  EXPECT_EQ(report.metrics.errors, 2);
  EXPECT_EQ(report.metrics.totalFiles, 1);
  EXPECT_EQ(report.metrics.scannedFolders, 3);
  EXPECT_THAT(fileSystem.enumerated(), ElementsAre(kWork));
}

TEST_F(ICloudScan, sameMissingFolderTwice_isTwoErrorsAndOneBlocker) {
  const SyncHealthReport report = scan({makeFolder("A", kWork, 1), makeFolder("B", kWork + "/", 2)});
  EXPECT_EQ(report.metrics.errors, 2);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].folderName, "A");
  EXPECT_EQ(report.folderHealth.size(), 2U);
}

TEST_F(ICloudScan, folderOutsideICloud_isExaminedAllTheSame) {
  fileSystem.addFolder(kDesktop, {{kDesktop + "/a.txt", localFile()}, {kDesktop + "/b.txt", localFile()}});
  const WatchFolder folder = makeFolder("Desktop", kDesktop, 4);
  const SyncHealthReport report = scan({folder});
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].filePath, kDesktop);
  EXPECT_EQ(report.blockers[0].folderName, "Desktop");
  EXPECT_EQ(report.blockers[0].reason, outsideICloud);
  EXPECT_EQ(report.blockers[0].details, "This folder is outside the iCloud Drive path, so upload trust is unknown.");
  EXPECT_EQ(report.blockers[0].lastModified, std::nullopt);
  EXPECT_THAT(report.folderHealth, ElementsAre(FolderHealth{.id = idOf(4),
                                                            .folder = folder,
                                                            .scannedFileCount = 2,
                                                            .blockerCount = 1,
                                                            .status = HealthState::warning,
                                                            .score = 84}));
  EXPECT_EQ(report.metrics.errors, 0);
  EXPECT_EQ(report.metrics.totalFiles, 2);
  EXPECT_EQ(report.score, 84);
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, iCloudFileInFolderOutside_isExaminedToo) {
  FakeValues values = cleanFile();
  values.isUploaded = false;
  fileSystem.addFolder(kDesktop, {{kDesktop + "/a.txt", values}});
  const SyncHealthReport report = scan({makeFolder("Desktop", kDesktop)});
  EXPECT_THAT(reasonsOf(report), ElementsAre(outsideICloud, notUploaded));
  EXPECT_EQ(report.metrics.pendingUploads, 1);
}

TEST_F(ICloudScan, drivePathInTheMiddle_countsAsInside) {
  const std::string folder = "/Volumes/Old/Library/Mobile Documents/com~apple~CloudDocs/Work";
  fileSystem.addFolder(folder, {});
  EXPECT_THAT(scan({makeFolder("Work", folder)}).blockers, IsEmpty());
}

TEST_F(ICloudScan, drivePathInOtherCapitalisation_countsAsOutside) {
  const std::string folder = "/Users/test/Library/Mobile Documents/com~apple~clouddocs/Work";
  fileSystem.addFolder(folder, {});
  EXPECT_THAT(reasonsOf(scan({makeFolder("Work", folder)})), ElementsAre(outsideICloud));
}

TEST_F(ICloudScan, trailingSlash_isKeptInTheEntryAndDroppedElsewhere) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  fileSystem.addFolder(kDesktop, {{kDesktop + "/a.txt", values}});
  const WatchFolder folder = makeFolder("Desktop", kDesktop + "/");
  const SyncHealthReport report = scan({folder});
  EXPECT_THAT(fileSystem.enumerated(), ElementsAre(kDesktop));
  EXPECT_EQ(report.folderHealth.at(0).folder, folder);
  ASSERT_THAT(reasonsOf(report), ElementsAre(unresolvedConflict, outsideICloud));
  EXPECT_EQ(report.blockers[0].details, "Conflict state reported for a.txt.");
  EXPECT_EQ(report.blockers[1].filePath, kDesktop);
}

TEST_F(ICloudScan, missingFolderWithTrailingSlash_isNamedWithoutIt) {
  EXPECT_EQ(scan({makeFolder("Gone", kWork + "/")}).blockers.at(0).filePath, kWork);
}

TEST_F(ICloudScan, folderThatCannotBeWalked_isAsAMissingOne) {
  const WatchFolder folder = makeFolder("Work", kWork, 5);
  const SyncHealthReport missing = scan({folder});
  fileSystem.addExisting(kWork);
  const SyncHealthReport report = scan({folder});
  EXPECT_THAT(fileSystem.enumerated(), ElementsAre(kWork));
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_NE(report.blockers[0].id, UUID());
  EXPECT_EQ(report.blockers[0].filePath, kWork);
  EXPECT_EQ(report.blockers[0].folderName, "Work");
  EXPECT_EQ(report.blockers[0].reason, unavailableFolder);
  EXPECT_EQ(report.blockers[0].details, "The folder exists but cannot be read.");
  EXPECT_EQ(report.blockers[0].lastModified, std::nullopt);
  EXPECT_EQ(report.folderHealth, missing.folderHealth);
  EXPECT_EQ(report.metrics, missing.metrics);
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.score, missing.score);
  EXPECT_EQ(report.status, missing.status);
  EXPECT_EQ(report.summary, missing.summary);
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, folderOutsideICloudThatCannotBeWalked_isOnlyUnavailable) {
  fileSystem.addExisting(kDesktop);
  EXPECT_THAT(reasonsOf(scan({makeFolder("Desktop", kDesktop)})), ElementsAre(unavailableFolder));
}

TEST_F(ICloudScan, listingThatFailsAtOnce_isAsAFolderThatCannotBeWalked) {
  const WatchFolder folder = makeFolder("Desktop", kDesktop, 5);
  fileSystem.addFolder(kDesktop, {});
  fileSystem.breakOff(kDesktop);
  const SyncHealthReport report = scan({folder});
  ASSERT_THAT(reasonsOf(report), ElementsAre(unavailableFolder));
  EXPECT_EQ(report.blockers[0].details, "The folder exists but cannot be read.");
  EXPECT_THAT(report.folderHealth, ElementsAre(FolderHealth{.id = idOf(5),
                                                            .folder = folder,
                                                            .scannedFileCount = 0,
                                                            .blockerCount = 1,
                                                            .status = HealthState::danger,
                                                            .score = 0}));
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, listingThatBreaksOff_addsOneErrorAndOneBlockerToWhatWasFound) {
  FakeValues pending = cleanFile();
  pending.isUploaded = false;
  const WatchFolder folder = makeFolder("Desktop", kDesktop, 5);
  fileSystem.addFolder(kDesktop, {{kDesktop + "/a", cleanFile()},
                                  {kDesktop + "/b", pending},
                                  {kDesktop + "/c", std::nullopt},
                                  {kDesktop + "/d", cleanFile()}});
  fileSystem.breakOff(kDesktop);
  const SyncHealthReport report = scan({folder});
  ASSERT_THAT(reasonsOf(report), ElementsAre(unavailableFolder, outsideICloud, notUploaded));
  EXPECT_EQ(report.blockers[0].filePath, kDesktop);
  EXPECT_EQ(report.blockers[0].folderName, "Desktop");
  EXPECT_EQ(report.blockers[0].details, "The folder exists but cannot be read.");
  EXPECT_EQ(report.blockers[0].lastModified, std::nullopt);
  EXPECT_THAT(report.folderHealth, ElementsAre(FolderHealth{.id = idOf(5),
                                                            .folder = folder,
                                                            .scannedFileCount = 3,
                                                            .blockerCount = 3,
                                                            .status = HealthState::danger,
                                                            .score = 50}));
  EXPECT_EQ(report.metrics, (ScanMetrics{.totalFiles = 3,
                                         .scannedFolders = 1,
                                         .pendingUploads = 1,
                                         .unresolvedConflicts = 0,
                                         .errors = 2,
                                         .notDownloaded = 0}));
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, listingThatBreaksOffAfterCleanFiles_isNotSafe) {
  fileSystem.addFolder(kWork, {{kWork + "/a", cleanFile()}});
  fileSystem.breakOff(kWork);
  const SyncHealthReport report = scan({makeFolder("Work", kWork)});
  EXPECT_THAT(reasonsOf(report), ElementsAre(unavailableFolder));
  EXPECT_EQ(report.folderHealth.at(0).scannedFileCount, 1);
  EXPECT_EQ(report.folderHealth.at(0).score, 76);
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, folderThatCannotBeWalkedBetweenOthers_doesNotStopTheScan) {
  fileSystem.addExisting(kDesktop);
  fileSystem.addFolder(kWork, {{kWork + "/a.txt", cleanFile()}});
  const SyncHealthReport report = scan({makeFolder("A", kDesktop), makeFolder("B", kWork)});
  EXPECT_THAT(reasonsOf(report), ElementsAre(unavailableFolder));
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.metrics.totalFiles, 1);
}

TEST_F(ICloudScan, foldersInAnyOrder_areWalkedInTheOrderGivenAndListedByName) {
  for (const std::string& name : {std::string("b"), std::string("B"), std::string("a"), std::string("\xC3\xA9")}) {
    fileSystem.addFolder(std::string(kDrive) + "/" + name, {});
  }
  const SyncHealthReport report = scan({
      makeFolder("b", std::string(kDrive) + "/b"),
      makeFolder("\xC3\xA9", std::string(kDrive) + "/\xC3\xA9"),
      makeFolder("a", std::string(kDrive) + "/a"),
      makeFolder("B", std::string(kDrive) + "/B"),
      makeFolder("", "/gone"),
  });
  EXPECT_THAT(fileSystem.enumerated(), ElementsAre(std::string(kDrive) + "/b", std::string(kDrive) + "/\xC3\xA9",
                                                   std::string(kDrive) + "/a", std::string(kDrive) + "/B"));
  EXPECT_THAT(folderNamesOf(report), ElementsAre("", "B", "a", "b", "\xC3\xA9"));
}

TEST_F(ICloudScan, foldersOfOneName_keepTheOrderGiven) {
  std::vector<WatchFolder> folders;
  for (std::uint8_t index = 0; index < 40; ++index) {
    folders.push_back(makeFolder(index % 2 == 0 ? "Work" : "Home", "/gone" + std::to_string(100 - index), index));
  }
  const SyncHealthReport report = scan(folders);
  ASSERT_EQ(report.folderHealth.size(), 40U);
  for (std::size_t index = 0; index < 20; ++index) {
    EXPECT_EQ(report.folderHealth[index].folder, folders[2 * index + 1]);
    EXPECT_EQ(report.folderHealth[index].id, folders[2 * index + 1].id);
    EXPECT_EQ(report.folderHealth[20 + index].folder, folders[2 * index]);
  }
}

// Items

TEST_F(ICloudScan, cleanFile_isSafeToClose) {
  const SyncHealthReport report = scanFile(cleanFile());
  EXPECT_EQ(report.status, HealthState::safe);
  EXPECT_EQ(report.score, 100);
  EXPECT_EQ(report.localAvailabilityScore, 100);
  EXPECT_TRUE(report.safeToClose);
  EXPECT_THAT(report.blockers, IsEmpty());
  EXPECT_EQ(report.summary, "No blockers detected in your watchlist.");
  ASSERT_EQ(report.actions.size(), 1U);
  EXPECT_EQ(report.actions[0].title, "You are clear");
  ScanMetrics metrics;
  metrics.totalFiles = 1;
  metrics.scannedFolders = 1;
  EXPECT_EQ(report.metrics, metrics);
}

TEST_F(ICloudScan, fileWithoutAnyKnownState_isClean) {
  const SyncHealthReport report = scanFile(FakeValues{});
  EXPECT_THAT(report.blockers, IsEmpty());
  EXPECT_TRUE(report.safeToClose);
}

TEST_F(ICloudScan, unreadableItem_isAnErrorButNoFileAndNoBlocker) {
  const SyncHealthReport report = scanFile(std::nullopt);
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.metrics.totalFiles, 0);
  EXPECT_EQ(report.folderHealth.at(0).scannedFileCount, 0);
  EXPECT_THAT(report.blockers, IsEmpty());
  EXPECT_EQ(report.status, HealthState::safe);
  EXPECT_EQ(report.score, 100);
  EXPECT_FALSE(report.safeToClose);
  EXPECT_EQ(report.summary, "No blockers detected in your watchlist.");
}

TEST_F(ICloudScan, unreadableItem_doesNotEndTheWalk) {
  fileSystem.addFolder(kWork,
                       {{kWork + "/a", std::nullopt}, {kWork + "/b", cleanFile()}, {kWork + "/c", std::nullopt}});
  const SyncHealthReport report = scan({makeFolder("Work", kWork)});
  EXPECT_EQ(report.metrics.errors, 2);
  EXPECT_EQ(report.metrics.totalFiles, 1);
}

TEST_F(ICloudScan, folderItem_isNeitherCountedNorExamined) {
  FakeValues values = folderValues();
  values.isUploaded = false;
  values.isUploading = true;
  values.hasUnresolvedConflicts = true;
  values.downloadingStatus = DownloadingStatus::notDownloaded;
  values.uploadingError = "up";
  values.downloadingError = "down";
  values.contentModificationDate = at(1);
  const SyncHealthReport report = scanFile(values);
  EXPECT_THAT(report.blockers, IsEmpty());
  ScanMetrics metrics;
  metrics.scannedFolders = 1;
  EXPECT_EQ(report.metrics, metrics);
  EXPECT_TRUE(report.safeToClose);
}

TEST_F(ICloudScan, fileNotInICloud_isCountedAndNeverABlocker) {
  FakeValues values = localFile();
  values.isUploaded = false;
  values.isUploading = true;
  values.hasUnresolvedConflicts = true;
  values.downloadingStatus = DownloadingStatus::notDownloaded;
  values.uploadingError = "up";
  values.downloadingError = "down";
  values.contentModificationDate = at(1);
  const SyncHealthReport report = scanFile(values);
  EXPECT_THAT(report.blockers, IsEmpty());
  ScanMetrics metrics;
  metrics.scannedFolders = 1;
  metrics.totalFiles = 1;
  EXPECT_EQ(report.metrics, metrics);
  EXPECT_EQ(report.folderHealth.at(0).scannedFileCount, 1);
}

TEST_F(ICloudScan, conflict_isAnUndatedBlockerThatNamesTheFile) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  const SyncHealthReport report = scanFile(values);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].reason, unresolvedConflict);
  EXPECT_EQ(report.blockers[0].filePath, kWork + "/a.txt");
  EXPECT_EQ(report.blockers[0].folderName, "Work");
  EXPECT_EQ(report.blockers[0].details, "Conflict state reported for a.txt.");
  EXPECT_EQ(report.blockers[0].lastModified, std::nullopt);
  EXPECT_EQ(report.metrics.unresolvedConflicts, 1);
  EXPECT_EQ(report.metrics.errors, 0);
  EXPECT_EQ(report.score, 70);
  EXPECT_EQ(report.status, HealthState::warning);
}

TEST_F(ICloudScan, conflictDeepBelow_isNamedByThePathBelowTheFolder) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  fileSystem.addFolder(kWork, {{kWork + "/2026/May/a b.txt", values}});
  EXPECT_EQ(scan({makeFolder("Work", kWork)}).blockers.at(0).details, "Conflict state reported for 2026/May/a b.txt.");
}

TEST_F(ICloudScan, conflictWhosePathRepeatsTheFolders_losesEveryRepetition) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  fileSystem.addFolder("/a", {{"/a/x/a/y", values}, {"/a/a/z", values}, {"/a/b/ab/a/a/c", values}});
  const SyncHealthReport report = scan({makeFolder("A", "/a")});
  std::vector<std::string> details;
  for (const SyncBlocker& blocker : report.blockers) {
    details.push_back(blocker.details);
  }
  EXPECT_THAT(details, ElementsAre("Conflict state reported for a/z.", "Conflict state reported for b/aba/c.",
                                   "Conflict state reported for xy.",
                                   "This folder is outside the iCloud Drive path, so upload trust is unknown."));
}

TEST_F(ICloudScan, conflictBelowTheRootFolder_keepsItsWholePath) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  fileSystem.addFolder("/", {{"/a.txt", values}});
  EXPECT_EQ(scan({makeFolder("/", "/")}).blockers.at(0).details, "Conflict state reported for /a.txt.");
}

TEST_F(ICloudScan, uploadError_isADatedBlockerInTheSystemsWords) {
  FakeValues values = cleanFile();
  values.uploadingError = "Your iCloud storage is \"full\".";
  const SyncHealthReport report = scanFile(values);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].reason, uploadError);
  EXPECT_EQ(report.blockers[0].filePath, kWork + "/a.txt");
  EXPECT_EQ(report.blockers[0].folderName, "Work");
  EXPECT_EQ(report.blockers[0].details, "Your iCloud storage is \"full\".");
  EXPECT_EQ(report.blockers[0].lastModified, at(9));
  EXPECT_EQ(report.metrics.errors, 1);
}

TEST_F(ICloudScan, downloadError_isADatedBlockerInTheSystemsWords) {
  FakeValues values = cleanFile();
  values.downloadingError = "The server is busy.";
  const SyncHealthReport report = scanFile(values);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].reason, downloadError);
  EXPECT_EQ(report.blockers[0].filePath, kWork + "/a.txt");
  EXPECT_EQ(report.blockers[0].folderName, "Work");
  EXPECT_EQ(report.blockers[0].details, "The server is busy.");
  EXPECT_EQ(report.blockers[0].lastModified, at(9));
  EXPECT_EQ(report.metrics.errors, 1);
}

TEST_F(ICloudScan, errorsWithoutWords_areErrorsAllTheSame) {
  FakeValues values = cleanFile();
  values.uploadingError = "";
  values.downloadingError = "";
  const SyncHealthReport report = scanFile(values);
  EXPECT_THAT(reasonsOf(report), ElementsAre(uploadError, downloadError));
  EXPECT_EQ(report.blockers[0].details, "");
  EXPECT_EQ(report.metrics.errors, 2);
}

TEST_F(ICloudScan, notYetUploaded_isADatedPendingUpload) {
  FakeValues values = cleanFile();
  values.isUploaded = false;
  const SyncHealthReport report = scanFile(values);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].reason, notUploaded);
  EXPECT_EQ(report.blockers[0].filePath, kWork + "/a.txt");
  EXPECT_EQ(report.blockers[0].folderName, "Work");
  EXPECT_EQ(report.blockers[0].details, "Still pending upload.");
  EXPECT_EQ(report.blockers[0].lastModified, at(9));
  EXPECT_EQ(report.metrics.pendingUploads, 1);
  EXPECT_EQ(report.metrics.errors, 0);
  EXPECT_EQ(report.score, 90);
  EXPECT_EQ(report.status, HealthState::warning);
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, uploadingLongAfterTheLastChange_isStalled) {
  FakeValues values = cleanFile();
  values.isUploading = true;
  values.contentModificationDate = at(11);
  const SyncHealthReport report = scanFile(values);
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].reason, stalledUpload);
  EXPECT_EQ(report.blockers[0].filePath, kWork + "/a.txt");
  EXPECT_EQ(report.blockers[0].folderName, "Work");
  EXPECT_EQ(report.blockers[0].details, "Upload appears stuck for more than 20 minutes.");
  EXPECT_EQ(report.blockers[0].lastModified, at(11));
  ScanMetrics metrics;
  metrics.totalFiles = 1;
  metrics.scannedFolders = 1;
  EXPECT_EQ(report.metrics, metrics);
  EXPECT_EQ(report.score, 84);
  EXPECT_FALSE(report.safeToClose);
}

TEST_F(ICloudScan, uploadingAroundTwentyMinutes_isStalledOnlyAfterThem) {
  const std::vector<std::pair<microseconds, bool>> ages = {
      {microseconds(-1), false},
      {microseconds(0), false},
      {seconds(1199), false},
      {microseconds(1'199'999'999), false},
      {seconds(1200), false},
      {microseconds(1'200'000'001), true},
      {microseconds(1'200'001'000), true},
      {seconds(1'000'000'000), true},
  };
  for (const auto& [age, isStalled] : ages) {
    FakeValues values = cleanFile();
    values.isUploading = true;
    values.contentModificationDate = clock.now() - age;
    EXPECT_EQ(scanFile(values).blockers.size(), isStalled ? 1U : 0U) << age.count();
  }
}

TEST_F(ICloudScan, uploadingWithDateAtEitherEndOfTime_isJudgedWithoutOverflow) {
  FakeValues values = cleanFile();
  values.isUploading = true;
  values.contentModificationDate = Time::min();
  EXPECT_THAT(reasonsOf(scanFile(values)), ElementsAre(stalledUpload));
  values.contentModificationDate = Time::max();
  EXPECT_THAT(scanFile(values).blockers, IsEmpty());
}

TEST_F(ICloudScan, uploadingWithoutModificationDate_neverStalls) {
  FakeValues values = cleanFile();
  values.isUploading = true;
  values.contentModificationDate = std::nullopt;
  EXPECT_THAT(scanFile(values).blockers, IsEmpty());
}

TEST_F(ICloudScan, oldFileThatIsNotUploading_neverStalls) {
  FakeValues values = cleanFile();
  values.contentModificationDate = at(0);
  EXPECT_THAT(scanFile(values).blockers, IsEmpty());
  values.isUploading = std::nullopt;
  EXPECT_THAT(scanFile(values).blockers, IsEmpty());
}

TEST_F(ICloudScan, pendingAndStuck_isBoth) {
  FakeValues values = cleanFile();
  values.isUploaded = false;
  values.isUploading = true;
  const SyncHealthReport report = scanFile(values);
  EXPECT_THAT(reasonsOf(report), ElementsAre(stalledUpload, notUploaded));
  EXPECT_EQ(report.metrics.pendingUploads, 1);
  EXPECT_EQ(report.score, 74);
}

TEST_F(ICloudScan, anotherThreshold_isRespected) {
  FakeValues values = cleanFile();
  values.isUploading = true;
  values.contentModificationDate = clock.now() - seconds(61);
  fileSystem.addFolder(kWork, {{kWork + "/a.txt", values}});
  const auto stalledAt = [&](seconds threshold) {
    return !ICloudScanEngine(fileSystem, clock, threshold).scan({makeFolder("Work", kWork)}).blockers.empty();
  };
  EXPECT_TRUE(stalledAt(seconds(60)));
  EXPECT_FALSE(stalledAt(seconds(61)));
  EXPECT_EQ(ICloudScanEngine::kDefaultStaleUploadThreshold, seconds(1200));
}

TEST_F(ICloudScan, cloudOnlyFile_isABlockerThatCostsNothing) {
  for (const DownloadingStatus status : {DownloadingStatus::notDownloaded, DownloadingStatus::downloaded}) {
    FakeValues values = cleanFile();
    values.downloadingStatus = status;
    const SyncHealthReport report = scanFile(values);
    ASSERT_EQ(report.blockers.size(), 1U);
    EXPECT_EQ(report.blockers[0].reason, notDownloaded);
    EXPECT_EQ(report.blockers[0].filePath, kWork + "/a.txt");
    EXPECT_EQ(report.blockers[0].folderName, "Work");
    EXPECT_EQ(report.blockers[0].details, "File is in cloud-only state on this Mac.");
    EXPECT_EQ(report.blockers[0].lastModified, at(9));
    EXPECT_EQ(report.metrics.notDownloaded, 1);
    EXPECT_EQ(report.score, 100);
    EXPECT_EQ(report.status, HealthState::safe);
    EXPECT_TRUE(report.safeToClose);
    EXPECT_EQ(report.localAvailabilityScore, 0);
    EXPECT_EQ(report.folderHealth.at(0).blockerCount, 1);
    EXPECT_EQ(report.folderHealth.at(0).score, 100);
    EXPECT_EQ(report.folderHealth.at(0).status, HealthState::safe);
    EXPECT_EQ(report.summary, "Upload trust is strong. 1 files are cloud-only on this Mac.");
    ASSERT_EQ(report.actions.size(), 1U);
    EXPECT_EQ(report.actions[0].title, "Run another scan in 2-3 minutes");
  }
}

TEST_F(ICloudScan, blockersOfFileWithoutDate_areUndated) {
  FakeValues values = cleanFile();
  values.contentModificationDate = std::nullopt;
  values.isUploaded = false;
  values.uploadingError = "up";
  values.downloadingError = "down";
  values.downloadingStatus = DownloadingStatus::notDownloaded;
  const SyncHealthReport report = scanFile(values);
  EXPECT_EQ(report.blockers.size(), 4U);
  for (const SyncBlocker& blocker : report.blockers) {
    EXPECT_EQ(blocker.lastModified, std::nullopt) << blocker;
  }
}

TEST_F(ICloudScan, fileWithEverythingWrong_yieldsEveryBlockerInTheOrderOfTheTests) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  values.uploadingError = "up";
  values.downloadingError = "down";
  values.isUploaded = false;
  values.isUploading = true;
  values.downloadingStatus = DownloadingStatus::notDownloaded;
  const SyncHealthReport report = scanFile(values);
  // The two errors weigh the same and bear one date, so they stand as they were found.
  EXPECT_THAT(reasonsOf(report),
              ElementsAre(unresolvedConflict, uploadError, downloadError, stalledUpload, notUploaded, notDownloaded));
  EXPECT_EQ(report.metrics, (ScanMetrics{.totalFiles = 1,
                                         .scannedFolders = 1,
                                         .pendingUploads = 1,
                                         .unresolvedConflicts = 1,
                                         .errors = 2,
                                         .notDownloaded = 1}));
  EXPECT_EQ(report.score, 0);
  EXPECT_EQ(report.status, HealthState::danger);
  EXPECT_EQ(report.folderHealth.at(0).blockerCount, 6);
  EXPECT_EQ(report.summary, "Sync trust is low: 1 pending uploads and 2 errors need attention.");
  ASSERT_EQ(report.actions.size(), 3U);
  EXPECT_EQ(report.actions[0].title, "Resolve file conflicts first");
  EXPECT_EQ(report.actions[2].title, "Keep Mac awake until pending uploads clear");
}

TEST_F(ICloudScan, walkInBatchesOfAnySize_givesTheSameReport) {
  std::vector<FakeFileSystem::FakeItem> items;
  for (int index = 0; index < 50; ++index) {
    FakeValues values = cleanFile();
    values.isUploaded = index % 7 != 0;
    values.contentModificationDate = at(index % 5);
    items.push_back({kWork + "/" + std::to_string(index), values});
  }
  fileSystem.addFolder(kWork, items);
  std::vector<std::string> expected;
  for (const int index : {0, 35, 21, 7, 42, 28, 14, 49}) {
    expected.push_back(kWork + "/" + std::to_string(index));
  }
  for (const std::size_t size : {1U, 2U, 49U, 50U, 1000U}) {
    fileSystem.setBatchSize(size);
    const SyncHealthReport report = scan({makeFolder("Work", kWork)});
    std::vector<std::string> paths;
    for (const SyncBlocker& blocker : report.blockers) {
      paths.push_back(blocker.filePath);
    }
    EXPECT_EQ(paths, expected) << size;
    EXPECT_EQ(report.metrics.totalFiles, 50);
  }
}

// Folder results and the report as a whole

TEST_F(ICloudScan, overlappingFolders_giveOneBlockerInTheReportAndOneInEachFolder) {
  FakeValues values = cleanFile();
  values.isUploaded = false;
  const std::string file = kWork + "/a.txt";
  fileSystem.addFolder(std::string(kDrive), {{file, values}});
  fileSystem.addFolder(kWork, {{file, values}});
  const SyncHealthReport report = scan({makeFolder("Work", kWork, 1), makeFolder("All", std::string(kDrive), 2)});
  ASSERT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.blockers[0].folderName, "Work") << "the folder that comes first in the watchlist names the blocker";
  EXPECT_EQ(report.metrics.pendingUploads, 2) << "counters count occurrences";
  EXPECT_EQ(report.metrics.totalFiles, 2);
  EXPECT_EQ(report.score, 90);
  ASSERT_EQ(report.folderHealth.size(), 2U);
  for (const FolderHealth& result : report.folderHealth) {
    EXPECT_EQ(result.blockerCount, 1);
    EXPECT_EQ(result.score, 90);
    EXPECT_EQ(result.scannedFileCount, 1);
  }
}

TEST_F(ICloudScan, sameItemTwiceInOneWalk_isOneBlockerOfTheFolder) {
  FakeValues values = cleanFile();
  values.isUploaded = false;
  fileSystem.addFolder(kWork, {{kWork + "/a.txt", values}, {kWork + "/a.txt", values}});
  const SyncHealthReport report = scan({makeFolder("Work", kWork)});
  EXPECT_EQ(report.blockers.size(), 1U);
  EXPECT_EQ(report.folderHealth.at(0).blockerCount, 1);
  EXPECT_EQ(report.folderHealth.at(0).score, 90);
  EXPECT_EQ(report.folderHealth.at(0).scannedFileCount, 2);
  EXPECT_EQ(report.metrics.pendingUploads, 2);
}

TEST_F(ICloudScan, troubleInOneFolder_leavesTheOthersResultAlone) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  const std::string other = std::string(kDrive) + "/Other";
  fileSystem.addFolder(kWork, {{kWork + "/a", values}, {kWork + "/b", values}, {kWork + "/c", cleanFile()}});
  fileSystem.addFolder(other, {{other + "/a", cleanFile()}});
  const SyncHealthReport report = scan({makeFolder("Work", kWork, 1), makeFolder("Other", other, 2)});
  ASSERT_THAT(folderNamesOf(report), ElementsAre("Other", "Work"));
  EXPECT_EQ(report.folderHealth[0].score, 100);
  EXPECT_EQ(report.folderHealth[0].status, HealthState::safe);
  EXPECT_EQ(report.folderHealth[0].scannedFileCount, 1);
  EXPECT_EQ(report.folderHealth[0].blockerCount, 0);
  EXPECT_EQ(report.folderHealth[1].score, 40);
  EXPECT_EQ(report.folderHealth[1].status, HealthState::danger);
  EXPECT_EQ(report.folderHealth[1].scannedFileCount, 3);
  EXPECT_EQ(report.folderHealth[1].blockerCount, 2);
  EXPECT_EQ(report.score, 40);
  EXPECT_EQ(report.status, HealthState::danger);
}

TEST_F(ICloudScan, troubleInSeveralFolders_addsUpToTheCapOfTheReport) {
  std::vector<WatchFolder> folders;
  for (int index = 0; index < 4; ++index) {
    const std::string path = std::string(kDrive) + "/" + std::to_string(index);
    FakeValues values = cleanFile();
    values.isUploaded = false;
    fileSystem.addFolder(path, {{path + "/a", values}, {path + "/b", values}});
    folders.push_back(makeFolder(std::to_string(index), path));
  }
  const SyncHealthReport report = scan(folders);
  EXPECT_EQ(report.score, 60);
  EXPECT_EQ(report.blockers.size(), 8U);
  for (const FolderHealth& result : report.folderHealth) {
    EXPECT_EQ(result.score, 80);
  }
}

TEST_F(ICloudScan, blockersOfAllFolders_areSortedTogether) {
  FakeValues pending = cleanFile();
  pending.isUploaded = false;
  FakeValues conflict = cleanFile();
  conflict.hasUnresolvedConflicts = true;
  fileSystem.addFolder(kWork, {{kWork + "/pending", pending}});
  fileSystem.addFolder(kDesktop, {{kDesktop + "/conflict", conflict}});
  const SyncHealthReport report =
      scan({makeFolder("Work", kWork), makeFolder("Desktop", kDesktop), makeFolder("Gone", "/gone")});
  EXPECT_THAT(reasonsOf(report), ElementsAre(unresolvedConflict, unavailableFolder, outsideICloud, notUploaded));
}

TEST_F(ICloudScan, severalFiles_giveTheLocalShare) {
  FakeValues cloudOnly = cleanFile();
  cloudOnly.downloadingStatus = DownloadingStatus::notDownloaded;
  std::vector<FakeFileSystem::FakeItem> items;
  for (int index = 0; index < 7; ++index) {
    items.push_back({kWork + "/" + std::to_string(index), index < 2 ? cloudOnly : cleanFile()});
  }
  fileSystem.addFolder(kWork, items);
  EXPECT_EQ(scan({makeFolder("Work", kWork)}).localAvailabilityScore, 71);
}

TEST_F(ICloudScan, twoScans_shareNothingButWhatTheyFound) {
  FakeValues values = cleanFile();
  values.isUploaded = false;
  fileSystem.addFolder(kWork, {{kWork + "/a", values}, {kWork + "/b", values}});
  const ICloudScanEngine engine(fileSystem, clock);
  const SyncHealthReport first = engine.scan({makeFolder("Work", kWork)});
  clock.advance(seconds(90));
  const SyncHealthReport second = engine.scan({makeFolder("Work", kWork)});
  std::set<UUID> ids = {UUID()};
  for (const SyncHealthReport* report : {&first, &second}) {
    for (const SyncBlocker& blocker : report->blockers) {
      EXPECT_TRUE(ids.insert(blocker.id).second);
    }
    for (const RecommendedAction& action : report->actions) {
      EXPECT_TRUE(ids.insert(action.id).second);
    }
  }
  EXPECT_EQ(ids.size(), 7U);
  EXPECT_EQ(first.metrics, second.metrics);
  EXPECT_EQ(first.generatedAt, at(12));
  EXPECT_EQ(second.generatedAt, at(12) + seconds(90));
}

TEST_F(ICloudScan, scanThatTakesTime_isDatedByItsEnd) {
  class WalkingClock final : public Clock {
   public:
    Time now() const override { return now_ += seconds(1); }

   private:
    mutable Time now_ = at(12);
  };
  FakeValues values = cleanFile();
  values.isUploading = true;
  fileSystem.addFolder(kWork, {{kWork + "/a", values}, {kWork + "/b", values}});
  const WalkingClock walking;
  const SyncHealthReport report = ICloudScanEngine(fileSystem, walking).scan({makeFolder("Work", kWork)});
  EXPECT_EQ(walking.now() - report.generatedAt, seconds(1)) << "nobody asked for the time after the report";
  EXPECT_EQ(report.blockers.size(), 2U);
}

TEST_F(ICloudScan, pathsAndNamesOfAnyBytes_passThrough) {
  FakeValues values = cleanFile();
  values.hasUnresolvedConflicts = true;
  const std::string name = "\xFF\n\x1b[31m \xF0\x9F\x93\x81|";
  fileSystem.addFolder(kWork, {{kWork + "/" + name, values}});
  const SyncHealthReport report = scan({makeFolder("W\xFFrk", kWork)});
  EXPECT_EQ(report.blockers.at(0).filePath, kWork + "/" + name);
  EXPECT_EQ(report.blockers.at(0).details, "Conflict state reported for " + name + ".");
  EXPECT_EQ(report.blockers.at(0).folderName, "W\xFFrk");
}

}  // namespace
}  // namespace cirrovane::test
