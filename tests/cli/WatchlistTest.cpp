#include "base/FileDescriptor.h"
#include "tests/cli/Program.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kFirstID = "6F9619FF-8B86-D011-B42D-00CF4FC964FF";
const std::string kSecondID = "0A0B0C0D-8B86-4011-B42D-00CF4FC964AB";

mode_t modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777U;
}

std::string lowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char letter) { return std::tolower(letter); });
  return text;
}

std::vector<std::string> valuesOf(const json& list, const char* key) {
  std::vector<std::string> values;
  for (const json& entry : list) {
    values.push_back(entry[key]);
  }
  return values;
}

class Watchlist : public testing::Test {
 protected:
  std::vector<std::string> arguments(std::vector<std::string> more) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "watchlist"});
    return more;
  }
  ChildResult watchlist(const std::vector<std::string>& more = {}, const std::string& workingDirectory = "") const {
    return ctl(arguments(more), {.workingDirectory = workingDirectory, .environment = {}});
  }
  json list() const { return parsed(watchlist({"--json"}).out); }
  std::vector<std::string> paths() const { return valuesOf(list(), "path"); }
  std::string file() const { return mac_.storePath("watchlist.json"); }
  /// A list of two folders, neither of them iCloud Drive.
  void writeTwoFolders() const {
    writeFile(file(), R"([{"id": ")" + kFirstID + R"(", "name": "One", "path": "/Volumes/One"}, {"id": ")" + kSecondID +
                          R"(", "name": "Two", "path": "/Volumes/Two"}])");
  }

  const MacTree mac_;
};

TEST_F(Watchlist, firstUse_withICloudDrive_watchesItAndKeepsThatPrivate) {
  const ChildResult result = watchlist();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, AllOf(StartsWith("iCloud Drive\n"), HasSubstr(mac_.iCloudDrive())));
  EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("watchlist.json"));
  EXPECT_EQ(modeOf(file()), 0600U);
  EXPECT_EQ(modeOf(mac_.storeFolder()), 0700U);
  EXPECT_THAT(valuesOf(parsed(readFile(file())), "path"), ElementsAre(mac_.iCloudDrive()));
}

TEST_F(Watchlist, secondUse_keepsTheIdentifiers) {
  const json first = list();
  const std::string content = readFile(file());
  EXPECT_EQ(list(), first);
  EXPECT_EQ(readFile(file()), content);
}

TEST_F(Watchlist, JSON_isWhatTheFileHolds) {
  const ChildResult result = watchlist({"add", "/Volumes/b", "/Volumes/a", "--json"});
  EXPECT_EQ(result.out, readFile(file()));
  EXPECT_EQ(watchlist({"list", "--json"}).out, readFile(file()));
  EXPECT_EQ(watchlist({"--json", "list"}).out, readFile(file()));
}

TEST_F(Watchlist, list_isWhatTheCommandAloneShows) {
  writeTwoFolders();
  const ChildResult result = watchlist();
  EXPECT_EQ(result.out, "One\n  /Volumes/One\n  " + kFirstID + "\nTwo\n  /Volumes/Two\n  " + kSecondID + "\n");
  EXPECT_EQ(watchlist({"list"}).out, result.out);
}

TEST_F(Watchlist, firstUse_withoutICloudDrive_watchesNothingAndWritesNothing) {
  const TemporaryFolder mac(CIRROVANE_TEST_DIR);
  const ChildResult result = ctl({"--mac-root", mac.path(), "watchlist"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, StartsWith("No folder is watched."));
  EXPECT_EQ(ctl({"--mac-root", mac.path(), "watchlist", "--json"}).out, "[]\n");
  EXPECT_THAT(namesIn(mac.path()), IsEmpty());
}

TEST_F(Watchlist, emptyList_isGivenICloudDrive) {
  writeFile(file(), "[]");
  EXPECT_THAT(paths(), ElementsAre(mac_.iCloudDrive()));
  EXPECT_THAT(valuesOf(parsed(readFile(file())), "path"), ElementsAre(mac_.iCloudDrive()));
}

TEST_F(Watchlist, corruptFile_isKeptAsideWhenItIsOverwritten) {
  writeFile(file(), "[{\"id\": ");
  const ChildResult result = watchlist({"--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(valuesOf(parsed(result.out), "path"), ElementsAre(mac_.iCloudDrive()));
  EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("watchlist.json", "watchlist.json.unreadable"));
  EXPECT_EQ(readFile(file() + ".unreadable"), "[{\"id\": ");
}

TEST_F(Watchlist, filesOfOtherWriters_load) {
  writeFile(
      file(),
      "\n[\t{\"path\":\"\\/Volumes\\/\\u0041\",\"colour\" : {\"red\":[1,2]},\"name\" :\"A\\u00e9\",\r\n\"id\":\"" +
          lowerCase(kFirstID) + "\"}]\n\n");
  EXPECT_EQ(list(), (json{{{"id", kFirstID}, {"name", "A\u00e9"}, {"path", "/Volumes/A"}}}));
}

TEST_F(Watchlist, add_ofSeveralFolders_sortsByNameWithoutCase) {
  for (const char* name : {"beta", "Alpha", "alpha"}) {
    makeFolder(mac_ / name);
  }
  const ChildResult result = watchlist({"add", mac_ / "beta", mac_ / "Alpha", mac_ / "alpha", "--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  const json found = parsed(result.out);
  EXPECT_THAT(valuesOf(found, "name"), ElementsAre("Alpha", "alpha", "beta", "iCloud Drive"));
  EXPECT_EQ(list(), found);
}

TEST_F(Watchlist, add_ofARelativeFolder_meansTheWorkingDirectory) {
  makeFolder(mac_ / "Work/Clients");
  watchlist({"add", "Clients", ".", "../Work/./Clients/../Clients"}, mac_ / "Work");
  EXPECT_THAT(paths(), ElementsAre(mac_ / "Work/Clients", mac_.iCloudDrive(), mac_ / "Work"));
}

TEST_F(Watchlist, add_ofTheSameFolderAgain_changesNothing) {
  watchlist({"add", "/Volumes/Docs"});
  const std::string content = readFile(file());
  const ChildResult result = watchlist({"add", "/Volumes/Docs", "/Volumes/./Docs", "--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, content);
  EXPECT_EQ(readFile(file()), content);
}

TEST_F(Watchlist, add_withATrailingSlashOrInOtherCase_isAnotherFolder) {
  watchlist({"add", "/Volumes/Docs", "/Volumes/Docs/", "/volumes/docs"});
  EXPECT_THAT(paths(), ElementsAre("/Volumes/Docs", "/Volumes/Docs/", "/volumes/docs", mac_.iCloudDrive()));
}

TEST_F(Watchlist, add_insideAnyICloudContainer_isNamedICloudDrive) {
  const std::string containers = mac_ / "Users/demo/Library/Mobile Documents/";
  const ChildResult result =
      watchlist({"add", "--json", containers + "other~app/Documents", mac_.iCloudDrive() + "/Clients"});
  EXPECT_THAT(valuesOf(parsed(result.out), "name"), ElementsAre("iCloud Drive", "iCloud Drive", "iCloud Drive"));
}

TEST_F(Watchlist, add_ofAMissingFolder_warnsAndWatchesIt) {
  const ChildResult result = watchlist({"add", "/Volumes/later"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "cirrovanectl: /Volumes/later does not exist; it is watched all the same.\n");
  EXPECT_THAT(result.out, HasSubstr("later\n  /Volumes/later\n"));
}

TEST_F(Watchlist, add_ofAPathThatIsNotUTF8_isRefusedAndAddsNothing) {
  writeTwoFolders();
  const ChildResult result = watchlist({"add", "/Volumes/good", "/Volumes/bad\xff"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_EQ(result.err, "cirrovanectl: /Volumes/bad\\xff is not UTF-8, so it cannot be watched.\n");
  EXPECT_THAT(paths(), ElementsAre("/Volumes/One", "/Volumes/Two"));
}

TEST_F(Watchlist, remove_byPathOrIdentifier_removesThatFolderAlone) {
  for (const std::string& argument :
       {std::string("/Volumes/One"), std::string("/Volumes/x/../One"), kFirstID, lowerCase(kFirstID)}) {
    writeTwoFolders();
    const ChildResult result = watchlist({"remove", argument, "--json"});
    EXPECT_EQ(result.exitStatus, 0) << argument;
    EXPECT_THAT(result.err, IsEmpty()) << argument;
    EXPECT_EQ(parsed(result.out), (json{{{"id", kSecondID}, {"name", "Two"}, {"path", "/Volumes/Two"}}})) << argument;
    EXPECT_EQ(result.out, readFile(file())) << argument;
  }
}

TEST_F(Watchlist, remove_byRelativePath_meansTheWorkingDirectory) {
  makeFolder(mac_ / "Work/Clients");
  watchlist({"add", mac_ / "Work/Clients"});
  EXPECT_EQ(watchlist({"remove", "Clients"}, mac_ / "Work").exitStatus, 0);
  EXPECT_THAT(paths(), ElementsAre(mac_.iCloudDrive()));
}

TEST_F(Watchlist, remove_ofSomethingUnknown_removesNothing) {
  const std::string unknownID = "00000000-0000-4000-8000-000000000000";
  for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{{"/Volumes/Three"},
                                                                                    {unknownID},
                                                                                    {"/Volumes/One/"},
                                                                                    {"/volumes/one"},
                                                                                    {"One"},
                                                                                    {kFirstID, "/Volumes/Three"}}) {
    writeTwoFolders();
    const std::string content = readFile(file());
    std::vector<std::string> whole = {"remove", "--json"};
    whole.insert(whole.end(), more.begin(), more.end());
    const ChildResult result = watchlist(whole, mac_.path());
    EXPECT_EQ(result.exitStatus, 3) << more.back();
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "cirrovanectl: " + more.back() + " is not on the watchlist.\n");
    EXPECT_EQ(readFile(file()), content) << more.back();
  }
}

TEST_F(Watchlist, remove_ofTheLastFolder_leavesNoneUntilTheNextRun) {
  writeTwoFolders();
  const ChildResult result = watchlist({"remove", kFirstID, kSecondID, "--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, "[]\n");
  EXPECT_EQ(readFile(file()), "[]\n");
  EXPECT_THAT(paths(), ElementsAre(mac_.iCloudDrive()));
}

TEST_F(Watchlist, wrongArguments_giveStatus2AndChangeNothing) {
  for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
           {"add"}, {"remove"}, {"add", ""}, {"remove", ""}, {"add", "/Volumes/a", ""}, {"list", "x"}, {"empty"}}) {
    const ChildResult result = watchlist(more);
    EXPECT_EQ(result.exitStatus, 2) << more.front();
    EXPECT_THAT(result.out, IsEmpty()) << more.front();
    EXPECT_THAT(result.err, Not(IsEmpty())) << more.front();
    EXPECT_THAT(namesIn(mac_.storeFolder()), IsEmpty()) << more.front();
  }
}

TEST_F(Watchlist, change_thatCannotBeWritten_isSaidAndLeavesTheFile) {
  writeTwoFolders();
  const std::string content = readFile(file());
  for (const std::vector<std::string>& more :
       std::vector<std::vector<std::string>>{{"add", mac_.path()}, {"remove", kFirstID}}) {
    const ChildResult result = ctlOnAFullDisk(arguments(more));
    EXPECT_EQ(result.exitStatus, 3) << more.front();
    EXPECT_THAT(result.out, IsEmpty()) << more.front();
    EXPECT_THAT(result.err,
                AllOf(StartsWith("cirrovanectl: The watchlist could not be saved: "), HasSubstr("watchlist.json")));
    EXPECT_EQ(readFile(file()), content) << more.front();
    EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("watchlist.json")) << more.front();
  }
}

TEST_F(Watchlist, storeFolder_thatIsAFile_failsChangesButShowsTheList) {
  writeFile(mac_.storeFolder(), "in the way");
  const ChildResult result = watchlist({"add", mac_.path()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, StartsWith("cirrovanectl: The watchlist could not be saved: "));
  EXPECT_EQ(readFile(mac_.storeFolder()), "in the way");
  EXPECT_EQ(watchlist().exitStatus, 0);
  EXPECT_THAT(paths(), ElementsAre(mac_.iCloudDrive()));
}

TEST_F(Watchlist, hostileName_isPrintedEscapedAndKeptAsItIs) {
  const std::string path = "/Volumes/a\x1b[2J\nSAFE\xE2\x80\xAEx";
  const std::string shown = "a\\x1b[2J\\nSAFE\\u{202e}x";
  const ChildResult result = watchlist({"add", path});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, HasSubstr(shown + "\n  /Volumes/" + shown + "\n"));
  EXPECT_THAT(result.err, StartsWith("cirrovanectl: /Volumes/" + shown + " does not exist"));
  EXPECT_THAT(paths(), Contains(path));
  const ChildResult unknown = watchlist({"remove", path + "\x1b"});
  EXPECT_EQ(unknown.exitStatus, 3);
  EXPECT_EQ(unknown.err, "cirrovanectl: /Volumes/" + shown + "\\x1b is not on the watchlist.\n");
  EXPECT_EQ(watchlist({"remove", path}).exitStatus, 0);
  EXPECT_THAT(paths(), ElementsAre(mac_.iCloudDrive()));
}

TEST_F(Watchlist, check_withoutFolder_scansWhatIsWatched) {
  mac_.addFile("Clients/pending", "isUploaded=false");
  mac_.addFile("Other/clean");
  watchlist({"add", mac_.iCloudDrive() + "/Other"});
  watchlist({"remove", mac_.iCloudDrive()});
  const std::vector<std::string> check = {"--mac-root", mac_.path(), "check"};
  EXPECT_EQ(ctl(check).exitStatus, 0);
  watchlist({"add", mac_.iCloudDrive() + "/Clients"});
  const ChildResult pending = ctl(check);
  EXPECT_EQ(pending.exitStatus, 1);
  EXPECT_THAT(pending.out, HasSubstr(mac_.iCloudDrive() + "/Clients/pending"));
  watchlist({"remove", mac_.iCloudDrive() + "/Clients"});
  watchlist({"add", "/Volumes/missing"});
  const ChildResult missing = ctl(check);
  EXPECT_EQ(missing.exitStatus, 1);
  EXPECT_THAT(missing.out, AllOf(HasSubstr("Folder Unavailable"), HasSubstr("/Volumes/missing")));
}

TEST_F(Watchlist, add_byManyProcessesAtOnce_leavesAWholeListAndNothingElse) {
  watchlist();
  const FileDescriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
  std::vector<std::unique_ptr<RunningProgram>> programs;
  std::vector<std::string> possible = {mac_.iCloudDrive()};
  for (int number = 0; number < 12; ++number) {
    possible.push_back("/Volumes/" + std::to_string(number));
    programs.push_back(
        std::make_unique<RunningProgram>(arguments({"add", possible.back()}), nothing.get(), nothing.get()));
  }
  for (const auto& program : programs) {
    EXPECT_EQ(program->exitStatus(), 0);
  }
  EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("watchlist.json"));
  const std::vector<std::string> found = valuesOf(parsed(readFile(file())), "path");
  EXPECT_GE(found.size(), 2U);
  EXPECT_THAT(found, testing::IsSubsetOf(possible));
  EXPECT_THAT(found, Contains(mac_.iCloudDrive()));
}

}  // namespace
}  // namespace cirrovane::test
