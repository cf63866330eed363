#include "tests/diagnostics/MachineFixture.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::SizeIs;

class ICloudFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const {
    return service().iCloudFindings(newProbes(), report_, watchFolders_).findings;
  }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }

  std::vector<WatchFolder> watchFolders_ = {makeFolder("Work", "/Users/test/Work")};
};

TEST_F(ICloudFindings, healthyMac_givesSixConfirmationsInOrder) {
  EXPECT_THAT(
      rowsOf(findings()),
      ElementsAre(Row{ok, "iCloud session detected", "Ubiquity identity token is available for this user session."},
                  Row{ok, "iCloud storage path accessible", "/Users/test/Library/Mobile Documents/com~apple~CloudDocs"},
                  Row{ok, "bird daemon", "Running"}, Row{ok, "cloudd daemon", "Running"},
                  Row{ok, "fileproviderd", "Running"},
                  Row{ok, "Pending uploads", "No pending uploads detected in watchlist scan."}));
}

TEST_F(ICloudFindings, everythingWrong_givesElevenRowsInOrder) {
  system_.facts.hasUbiquityIdentityToken = false;
  files_.setHomeDirectory("/Users/other");
  commands_ = FakeCommandRunner();
  watchFolders_.clear();
  report_.metrics = {.totalFiles = 100,
                     .scannedFolders = 9,
                     .pendingUploads = 1,
                     .unresolvedConflicts = 2,
                     .errors = 3,
                     .notDownloaded = 4};
  report_.blockers = makeBlockers(BlockerReason::outsideICloud, 5);
  EXPECT_THAT(
      rowsOf(findings()),
      ElementsAre(Row{warning, "iCloud account session unavailable",
                      "This device does not currently expose an iCloud ubiquity identity token. iCloud checks may be "
                      "incomplete."},
                  Row{warning, "iCloud storage path unavailable",
                      "The expected iCloud container path is not currently reachable."},
                  Row{warning, "bird daemon", "Not observed. iCloud upload activity may stall."},
                  Row{warning, "cloudd daemon", "Not observed. Cloud service health may be degraded."},
                  Row{warning, "fileproviderd", "Not observed. Some cloud file states may lag."},
                  Row{warning, "Pending uploads", "1 files are still pending upload."},
                  Row{error, "Unresolved conflicts", "2 conflict states detected."},
                  Row{error, "Upload/download errors", "3 iCloud metadata errors were observed during scan."},
                  Row{warning, "Watchlist coverage gaps", "5 watchlist entries are outside iCloud or unavailable."},
                  Row{info, "Cloud-only files",
                      "4 files are cloud-only on this device. This affects local availability, not upload trust."},
                  Row{warning, "No watchlist configured", "Add critical folders to make trust scoring meaningful."}));
}

TEST_F(ICloudFindings, everyFinding_isOfICloudAndOfNow) {
  report_.metrics.errors = 1;
  watchFolders_.clear();
  EXPECT_THAT(findings(), AllOf(SizeIs(8), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::iCloud)),
                                Each(Field(&DiagnosticFinding::observedAt, clock_.now()))));
}

TEST_F(ICloudFindings, session_takesOneOfTwoTitles) {
  EXPECT_EQ(row("iCloud account session unavailable"), std::nullopt);
  system_.facts.hasUbiquityIdentityToken = false;
  EXPECT_NE(row("iCloud account session unavailable"), std::nullopt);
  EXPECT_EQ(row("iCloud session detected"), std::nullopt);
}

TEST_F(ICloudFindings, storagePath_isTheHomeFolderPlusALiteralText) {
  files_.setHomeDirectory("/Volumes/Big/Users//me");
  EXPECT_NE(row("iCloud storage path unavailable"), std::nullopt);
  EXPECT_EQ(row("iCloud storage path accessible"), std::nullopt);

  const std::string container = "/Volumes/Big/Users//me/Library/Mobile Documents/com~apple~CloudDocs";
  files_.addExisting(container);
  EXPECT_EQ(row("iCloud storage path accessible"), (Row{ok, "iCloud storage path accessible", container}));
  EXPECT_EQ(row("iCloud storage path unavailable"), std::nullopt);
}

TEST_F(ICloudFindings, processes_areAskedForOneAfterAnotherByTheirExactNames) {
  findings();
  EXPECT_THAT(commands_.ran(),
              ElementsAre(CommandLine{"/usr/bin/pgrep", "-x", "bird"}, CommandLine{"/usr/bin/pgrep", "-x", "cloudd"},
                          CommandLine{"/usr/bin/pgrep", "-x", "fileproviderd"}));
}

TEST_F(ICloudFindings, processThatDoesNotRun_isAWarningOfItsOwn) {
  commands_.answer(pgrep("bird"), {1, ""});
  EXPECT_EQ(row("bird daemon"), (Row{warning, "bird daemon", "Not observed. iCloud upload activity may stall."}));
  EXPECT_EQ(row("cloudd daemon"), (Row{ok, "cloudd daemon", "Running"}));
  EXPECT_EQ(row("fileproviderd"), (Row{ok, "fileproviderd", "Running"}));

  commands_.answer(pgrep("bird"), "1\n");
  commands_.answer(pgrep("cloudd"), {1, ""});
  EXPECT_EQ(row("bird daemon"), (Row{ok, "bird daemon", "Running"}));
  EXPECT_EQ(row("cloudd daemon"),
            (Row{warning, "cloudd daemon", "Not observed. Cloud service health may be degraded."}));

  commands_.answer(pgrep("cloudd"), "1\n");
  commands_.answer(pgrep("fileproviderd"), {1, ""});
  EXPECT_EQ(row("cloudd daemon"), (Row{ok, "cloudd daemon", "Running"}));
  EXPECT_EQ(row("fileproviderd"), (Row{warning, "fileproviderd", "Not observed. Some cloud file states may lag."}));
}

TEST_F(ICloudFindings, pgrepMissingOrFailing_makesAllThreeProcessesWarnings) {
  const auto severities = [&] {
    std::vector<DiagnosticSeverity> found;
    for (const char* title : {"bird daemon", "cloudd daemon", "fileproviderd"}) {
      found.push_back(row(title).value_or(Row()).severity);
    }
    return found;
  };
  for (const char* name : {"bird", "cloudd", "fileproviderd"}) {
    commands_.forget(pgrep(name));
  }
  EXPECT_THAT(severities(), ElementsAre(warning, warning, warning));
  for (const char* name : {"bird", "cloudd", "fileproviderd"}) {
    commands_.answer(pgrep(name), {3, "pgrep: cannot do\n"});
  }
  EXPECT_THAT(severities(), ElementsAre(warning, warning, warning));
}

TEST_F(ICloudFindings, pendingUploads_beginAtOneAndAreWrittenWithoutGrouping) {
  const Row none = {ok, "Pending uploads", "No pending uploads detected in watchlist scan."};
  report_.metrics.pendingUploads = 0;
  EXPECT_EQ(row("Pending uploads"), none);
  report_.metrics.pendingUploads = -1;
  EXPECT_EQ(row("Pending uploads"), none);
  report_.metrics.pendingUploads = 1;
  EXPECT_EQ(row("Pending uploads"), (Row{warning, "Pending uploads", "1 files are still pending upload."}));
  report_.metrics.pendingUploads = 1'234'567;
  EXPECT_EQ(row("Pending uploads"), (Row{warning, "Pending uploads", "1234567 files are still pending upload."}));
}

TEST_F(ICloudFindings, conflicts_beginAtOneAndAreNoFindingBelow) {
  report_.metrics.unresolvedConflicts = 0;
  EXPECT_EQ(row("Unresolved conflicts"), std::nullopt);
  report_.metrics.unresolvedConflicts = 1;
  EXPECT_EQ(row("Unresolved conflicts"), (Row{error, "Unresolved conflicts", "1 conflict states detected."}));
  report_.metrics.unresolvedConflicts = 12'000;
  EXPECT_EQ(row("Unresolved conflicts"), (Row{error, "Unresolved conflicts", "12000 conflict states detected."}));
}

TEST_F(ICloudFindings, errors_beginAtOneAndAreNoFindingBelow) {
  report_.metrics.errors = 0;
  EXPECT_EQ(row("Upload/download errors"), std::nullopt);
  report_.metrics.errors = 1;
  EXPECT_EQ(row("Upload/download errors"),
            (Row{error, "Upload/download errors", "1 iCloud metadata errors were observed during scan."}));
}

TEST_F(ICloudFindings, cloudOnlyFiles_beginAtOne) {
  report_.metrics.notDownloaded = 0;
  EXPECT_EQ(row("Cloud-only files"), std::nullopt);
  report_.metrics.notDownloaded = 1;
  EXPECT_EQ(row("Cloud-only files"),
            (Row{info, "Cloud-only files",
                 "1 files are cloud-only on this device. This affects local availability, not upload trust."}));
}

TEST_F(ICloudFindings, coverageGaps_areBlockersOfTwoReasonsOnly) {
  report_.blockers =
      makeBlockers({BlockerReason::stalledUpload, BlockerReason::unresolvedConflict, BlockerReason::uploadError,
                    BlockerReason::downloadError, BlockerReason::notUploaded, BlockerReason::notDownloaded});
  EXPECT_EQ(row("Watchlist coverage gaps"), std::nullopt);

  report_.blockers.push_back(makeBlocker(BlockerReason::unavailableFolder, "/gone"));
  EXPECT_EQ(row("Watchlist coverage gaps"),
            (Row{warning, "Watchlist coverage gaps", "1 watchlist entries are outside iCloud or unavailable."}));
  report_.blockers.push_back(makeBlocker(BlockerReason::outsideICloud, "/elsewhere"));
  EXPECT_EQ(row("Watchlist coverage gaps"),
            (Row{warning, "Watchlist coverage gaps", "2 watchlist entries are outside iCloud or unavailable."}));
}

TEST_F(ICloudFindings, coverageGaps_ofOneFolder_countEachBlocker) {
  report_.blockers = {makeBlocker(BlockerReason::outsideICloud, "/same"),
                      makeBlocker(BlockerReason::outsideICloud, "/same")};
  EXPECT_EQ(row("Watchlist coverage gaps"),
            (Row{warning, "Watchlist coverage gaps", "2 watchlist entries are outside iCloud or unavailable."}));
}

TEST_F(ICloudFindings, emptyWatchlist_endsTheListWithAWarning) {
  EXPECT_EQ(row("No watchlist configured"), std::nullopt);
  watchFolders_.clear();
  EXPECT_EQ(rowsOf(findings()).back(),
            (Row{warning, "No watchlist configured", "Add critical folders to make trust scoring meaningful."}));
}

}  // namespace
}  // namespace cirrovane::test
