#include "tests/cli/Program.h"

#include <set>
#include <string>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Check : public testing::Test {
 protected:
  ChildResult check(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {"--mac-root", mac_.path(), "check"});
    return ctl(arguments);
  }
  json report(std::vector<std::string> arguments = {}) const {
    arguments.emplace_back("--json");
    const ChildResult result = check(arguments);
    EXPECT_THAT(result.err, IsEmpty());
    return parsed(result.out);
  }

  const MacTree mac_;
};

TEST_F(Check, cleanFolder_isSafeWithStatus0) {
  mac_.addFile("a");
  mac_.addFile("below/b", "isUploaded=true\ndownloadingStatus=current");
  const ChildResult result = check();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, AllOf(StartsWith("SAFE TO CLOSE\n"), HasSubstr("Upload Trust        100 of 100"),
                                HasSubstr("iCloud Drive"), HasSubstr(mac_.iCloudDrive()), HasSubstr("2 files")));
}

TEST_F(Check, pendingFile_isNotSafeWithStatus1AndNamed) {
  mac_.addFile("a");
  const std::string path = mac_.addFile("below/pending", "isUploaded=false");
  const ChildResult result = check();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, AllOf(StartsWith("NOT SAFE TO CLOSE\n"), HasSubstr("Not Uploaded"), HasSubstr(path),
                                HasSubstr("Still pending upload."), HasSubstr("What to do next")));
}

TEST_F(Check, everyState_isCountedAndReported) {
  mac_.addFile("clean");
  mac_.addFile("pending", "isUploaded=false");
  mac_.addFile("conflict", "hasUnresolvedConflicts=true");
  mac_.addFile("cloud-only", "downloadingStatus=notDownloaded");
  mac_.addFile("upload error", "uploadingError=No room.");
  mac_.addFile("download error", "downloadingError=No network.");
  const std::string stalled = mac_.addFile("stalled", "isUploading=true");
  setModified(stalled, 1'000'000'000.75);
  mac_.addFile("unreadable", "bad");
  const json found = report();
  EXPECT_EQ(found["metrics"], (json{{"totalFiles", 7},
                                    {"scannedFolders", 1},
                                    {"pendingUploads", 1},
                                    {"unresolvedConflicts", 1},
                                    {"errors", 3},
                                    {"notDownloaded", 1}}));
  std::set<std::string> reasons;
  for (const json& blocker : found["blockers"]) {
    reasons.insert(blocker["reason"]);
    EXPECT_EQ(blocker["folderName"], "iCloud Drive");
    if (blocker["reason"] == "stalledUpload") {
      EXPECT_EQ(blocker["filePath"], stalled);
      EXPECT_EQ(blocker["lastModified"], "2001-09-09T01:46:40Z");
    }
    if (blocker["reason"] == "uploadError") {
      EXPECT_EQ(blocker["details"], "No room.");
    }
  }
  EXPECT_EQ(reasons, (std::set<std::string>{"notUploaded", "unresolvedConflict", "notDownloaded", "uploadError",
                                            "downloadError", "stalledUpload"}));
}

TEST_F(Check, JSON_hasEveryFieldOfAReportAndNothingAround) {
  mac_.addFile("pending", "isUploaded=false");
  const ChildResult result = check({"--json"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.out, AllOf(StartsWith("{\n  \""), testing::EndsWith("\n}\n")));
  const json found = parsed(result.out);
  EXPECT_EQ(keysOf(found),
            (std::vector<std::string>{"actions", "blockers", "folderHealth", "generatedAt", "localAvailabilityScore",
                                      "metrics", "safeToClose", "score", "status", "summary"}));
  EXPECT_EQ(keysOf(found["blockers"][0]),
            (std::vector<std::string>{"details", "filePath", "folderName", "id", "lastModified", "reason"}));
  EXPECT_EQ(keysOf(found["folderHealth"][0]),
            (std::vector<std::string>{"blockerCount", "folder", "id", "scannedFileCount", "score", "status"}));
  EXPECT_EQ(keysOf(found["actions"][0]), (std::vector<std::string>{"detail", "id", "rank", "title"}));
  EXPECT_EQ(found["safeToClose"], false);
  EXPECT_THAT(found["generatedAt"].get<std::string>(),
              testing::MatchesRegex("20[0-9][0-9]-[0-9][0-9]-[0-9][0-9]T[0-9][0-9]:[0-9][0-9]:[0-9][0-9]Z"));
  EXPECT_EQ(found["folderHealth"][0]["id"], found["folderHealth"][0]["folder"]["id"]);
}

TEST_F(Check, JSON_ofASafeFolder_givesStatus0) {
  mac_.addFile("clean");
  const ChildResult result = check({"--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(parsed(result.out)["safeToClose"], true);
}

TEST_F(Check, missingFolder_isUnavailableWithStatus1) {
  const ChildResult result = check({mac_ / "missing"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.out, AllOf(StartsWith("NOT SAFE"), HasSubstr("Folder Unavailable"), HasSubstr(mac_ / "missing")));
  const json found = report({mac_ / "missing"});
  ASSERT_EQ(found["blockers"].size(), 1U);
  EXPECT_EQ(found["blockers"][0]["reason"], "unavailableFolder");
  EXPECT_FALSE(found["blockers"][0].contains("lastModified"));
}

TEST_F(Check, withoutFolder_onAMacWithoutICloudDrive_hasNothingToVouchFor) {
  const TemporaryFolder empty(CIRROVANE_TEST_DIR);
  const ChildResult result = ctl({"--mac-root", empty.path(), "check"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.out, AllOf(StartsWith("NOT SAFE"), HasSubstr("No watchlist folders are configured yet."),
                                HasSubstr("Add a critical folder")));
}

TEST_F(Check, withoutFolder_scansICloudDriveInTheHomeOfTheDescription) {
  mac_.addFile("in the usual home");
  const std::string other = mac_ / "Users/other/Library/Mobile Documents/com~apple~CloudDocs";
  writeFile(other + "/one");
  writeFile(other + "/two");
  writeFile(mac_ / "machine.json", R"({"home": "/Users/other"})");
  const json found = report();
  EXPECT_EQ(found["metrics"]["totalFiles"], 2);
  EXPECT_EQ(found["folderHealth"][0]["folder"]["path"], other);
  EXPECT_EQ(found["folderHealth"][0]["folder"]["name"], "iCloud Drive");
}

TEST_F(Check, folderOutsideICloud_isNamedByItsLastComponentAndNotTrusted) {
  writeFile(mac_ / "Users/demo/Invoices/file");
  const json found = report({mac_ / "Users/demo/Invoices"});
  EXPECT_EQ(found["folderHealth"][0]["folder"]["name"], "Invoices");
  EXPECT_EQ(found["blockers"][0]["reason"], "outsideICloud");
  EXPECT_EQ(found["safeToClose"], false);
}

TEST_F(Check, folders_areNamedByTheirPlace) {
  mac_.addFile("Clients/file");
  makeFolder(mac_ / "Users/demo/Library/Mobile Documents/other~container/Documents");
  makeFolder(mac_ / "Users/demo/Plain");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {mac_.iCloudDrive() + "/Clients", "iCloud Drive"},
      {mac_ / "Users/demo/Library/Mobile Documents/other~container/Documents", "iCloud Drive"},
      {mac_ / "Users/demo/Plain", "Plain"},
      {mac_ / "Users/demo/Plain/", "Plain"},
  };
  for (const auto& [path, name] : cases) {
    EXPECT_EQ(report({path})["folderHealth"][0]["folder"]["name"], name) << path;
  }
}

TEST_F(Check, severalFolders_areReportedByName) {
  for (const char* name : {"b", "c", "a"}) {
    makeFolder(mac_ / name);
  }
  const json found = report({mac_ / "b", mac_ / "c", mac_ / "a"});
  EXPECT_EQ(found["metrics"]["scannedFolders"], 3);
  std::vector<std::string> names;
  std::set<std::string> identifiers;
  for (const json& folder : found["folderHealth"]) {
    names.push_back(folder["folder"]["name"]);
    identifiers.insert(folder["id"]);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(identifiers.size(), 3U);
}

TEST_F(Check, overlappingFolders_reportAFileOnce) {
  mac_.addFile("below/pending", "isUploaded=false");
  const json found = report({mac_.iCloudDrive(), mac_.iCloudDrive() + "/below"});
  EXPECT_EQ(found["blockers"].size(), 1U);
  EXPECT_EQ(found["folderHealth"].size(), 2U);
}

TEST_F(Check, relativeFolders_areMeantInTheWorkingDirectory) {
  mac_.addFile("Clients/A/file");
  const std::string clients = mac_.iCloudDrive() + "/Clients";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {".", clients},
      {"./", clients + "/"},
      {"A", clients + "/A"},
      {"A/", clients + "/A/"},
      {"..", mac_.iCloudDrive()},
      {"A/../.", clients},
      {"./A//", clients + "/A/"},
      {"../Clients/A/..", clients},
  };
  for (const auto& [argument, path] : cases) {
    const ChildResult result =
        ctl({"--mac-root", mac_.path(), "check", "--json", argument}, {.workingDirectory = clients, .environment = {}});
    EXPECT_EQ(result.exitStatus, 0) << argument;
    const json found = parsed(result.out);
    EXPECT_EQ(found["folderHealth"][0]["folder"]["path"], path) << argument;
    EXPECT_EQ(found["metrics"]["totalFiles"], 1) << argument;
  }
}

TEST_F(Check, relativeFolder_inAWorkingDirectoryThatIsGone_isAFailureAndNoGuess) {
  makeFolder(mac_ / "gone");
  const ChildResult result =
      runProgram("/bin/sh", {"-c", "cd \"$1\" && rmdir \"$1\" && exec \"$2\" --mac-root \"$3\" check etc", "sh",
                             mac_ / "gone", kProgram, mac_.path()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, Not(IsEmpty()));
}

TEST_F(Check, absoluteFolder_inAWorkingDirectoryThatIsGone_isScanned) {
  makeFolder(mac_ / "gone");
  const ChildResult result =
      runProgram("/bin/sh", {"-c", "cd \"$1\" && rmdir \"$1\" && exec \"$2\" --mac-root \"$3\" check", "sh",
                             mac_ / "gone", kProgram, mac_.path()});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
}

TEST_F(Check, trailingSlash_isKeptInTheFolderButNotInItsFiles) {
  const std::string path = mac_.addFile("pending", "isUploaded=false");
  const json found = report({mac_.iCloudDrive() + "/"});
  EXPECT_EQ(found["folderHealth"][0]["folder"]["path"], mac_.iCloudDrive() + "/");
  EXPECT_EQ(found["blockers"][0]["filePath"], path);
}

TEST_F(Check, folderThatIsALink_isScanned) {
  mac_.addFile("pending", "isUploaded=false");
  ASSERT_EQ(symlink(mac_.iCloudDrive().c_str(), (mac_ / "link").c_str()), 0);
  EXPECT_EQ(report({mac_ / "link"})["metrics"]["pendingUploads"], 1);
}

TEST_F(Check, folderAfterADoubleDash_mayBeginWithADash) {
  makeFolder(mac_ / "-wait");
  const ChildResult result = ctl({"--mac-root", mac_.path(), "check", "--json", "--", "-wait"},
                                 {.workingDirectory = mac_.path(), .environment = {}});
  EXPECT_EQ(parsed(result.out)["folderHealth"][0]["folder"]["path"], mac_ / "-wait") << result.err;
}

TEST_F(Check, file_inPlaceOfAFolder_hasNoItems) {
  writeFile(mac_ / "file");
  const json found = report({mac_ / "file"});
  EXPECT_EQ(found["metrics"]["totalFiles"], 0);
  EXPECT_EQ(found["safeToClose"], false);
}

TEST_F(Check, manyBlockers_areCutShortInTextAndWholeInJSON) {
  for (int index = 0; index < 20; ++index) {
    mac_.addFile("pending " + std::to_string(index), "isUploaded=false");
  }
  const ChildResult text = check();
  EXPECT_THAT(text.out, AllOf(HasSubstr("the first 8 of 20"), HasSubstr("--json lists them all.")));
  EXPECT_EQ(report()["blockers"].size(), 20U);
}

TEST_F(Check, givenFolders_recordNothing) {
  mac_.addFile("pending", "isUploaded=false");
  check({mac_.iCloudDrive()});
  report({mac_.iCloudDrive()});
  const ChildResult listing = runProgram("/usr/bin/find", {mac_.path(), "-type", "f"});
  EXPECT_EQ(listing.out, mac_.iCloudDrive() + "/pending\n");
}

}  // namespace
}  // namespace cirrovane::test
