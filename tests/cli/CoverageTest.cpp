#include "tests/cli/Program.h"
#include "tests/support/ICloudAttribute.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kUploaded = "isUploaded=true";
constexpr const char* kPending = "isUploaded=false";

class Coverage : public testing::Test {
 protected:
  Coverage() { mac_.addFile("clean", kUploaded); }

  ChildResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--mac-root", mac_.path()});
    return ctl(arguments);
  }
  json report(const std::vector<std::string>& folders = {}) const {
    std::vector<std::string> arguments = {"coverage", "--json"};
    arguments.insert(arguments.end(), folders.begin(), folders.end());
    const ChildResult result = run(arguments);
    EXPECT_THAT(result.err, IsEmpty());
    json report = parsed(result.out);
    EXPECT_EQ(result.exitStatus, report["complete"] == true ? 0 : 1);
    return report;
  }
  std::string path(const std::string& name) const { return mac_.iCloudDrive() + "/" + name; }
  /// A file that is no iCloud item.
  void addLocal(const std::string& name) const { writeFile(path(name)); }
  /// Each gap as its kind and its path below iCloud Drive.
  std::vector<std::string> gaps() const {
    std::vector<std::string> gaps;
    const json found = report();
    for (const json& gap : found["gaps"]) {
      const std::string below = gap["path"].get<std::string>().substr(mac_.iCloudDrive().size());
      gaps.push_back(gap["kind"].get<std::string>() + " " + below);
    }
    return gaps;
  }

  const MacTree mac_;
};

TEST_F(Coverage, cleanDrive_isComplete) {
  const json found = report();
  EXPECT_EQ(found["complete"], true);
  EXPECT_THAT(keysOf(found),
              ElementsAre("acknowledged", "complete", "examined", "gapCounts", "gaps", "generatedAt", "notExamined"));
  EXPECT_THAT(run({"coverage"}).out, StartsWith("COMPLETE\n"));
}

TEST_F(Coverage, eachKindOnTheDisk_isNamed) {
  mac_.addFile("Song.logicx/take", kPending);
  setICloudAttribute(path("Song.logicx"), kUploaded);
  mac_.addFile(".drafts/plan", kPending);
  mac_.addFile("paused", "isUploaded=true\nisSyncPaused=true");
  makeFolder(path("build.nosync"));
  mac_.addFile("unknown", "isUbiquitous=true");
  addLocal(".env");
  makeFolder(path("Locked"));
  setICloudAttribute(path("Locked"), "isListable=false");
  EXPECT_THAT(gaps(), ElementsAre("pendingPackage /Song.logicx", "pendingHidden /.drafts", "syncPaused /paused",
                                  "excluded /build.nosync", "stateUnknown /unknown", "notInICloud /.env",
                                  "unreadableFolder /Locked"));
  const json found = report();
  EXPECT_EQ(found["gaps"][3]["rule"], "*.nosync");
  EXPECT_EQ(found["gaps"][3]["isFolder"], true);
  EXPECT_EQ(found["gaps"][0]["folderName"], "iCloud Drive");
  EXPECT_EQ(found["examined"], json({{"hidden", 3}, {"inPackages", 1}, {"packages", 1}}));
  EXPECT_EQ(run({"check"}).exitStatus, 0);
  const std::string text = run({"coverage"}).out;
  EXPECT_THAT(text, StartsWith("NOT COMPLETE\n"));
  EXPECT_THAT(text, HasSubstr("Left Out of iCloud (1)\n"));
  EXPECT_THAT(text, HasSubstr("/build.nosync  (*.nosync)\n"));
}

TEST_F(Coverage, valueOutsideTheTable_failsTheCoverageAlone) {
  mac_.addFile("odd", "isUploaded=true\nisSyncPaused=perhaps\nisExcludedFromSync=");
  EXPECT_THAT(gaps(), ElementsAre("stateUnknown /odd"));
  EXPECT_EQ(run({"check"}).exitStatus, 0);
}

TEST_F(Coverage, foldersGiven_areLookedAtByTheirNames) {
  addLocal("Work/.env");
  addLocal("Other/.env");
  const json found = report({path("Work"), "/nowhere"});
  ASSERT_EQ(found["gaps"].size(), 1U);
  EXPECT_EQ(found["gaps"][0]["path"], path("Work/.env"));
  EXPECT_EQ(found["notExamined"], json({"/nowhere"}));
}

TEST_F(Coverage, acknowledgedGap_isCountedAndNoMore) {
  addLocal("Work/.env");
  const ChildResult result = run({"coverage", "acknowledge", path("Work/"), "--json"});
  EXPECT_EQ(result.exitStatus, 0);
  const json list = parsed(result.out);
  ASSERT_EQ(list.size(), 1U);
  EXPECT_THAT(keysOf(list[0]), ElementsAre("acknowledgedAt", "path"));
  EXPECT_EQ(list[0]["path"], path("Work"));
  const json found = report();
  EXPECT_EQ(found["complete"], true);
  EXPECT_EQ(found["acknowledged"], 1);
  EXPECT_EQ(parsed(run({"coverage", "acknowledged", "--json"}).out), list);
  EXPECT_EQ(run({"coverage", "forget", path("Work")}).exitStatus, 0);
  EXPECT_EQ(report()["complete"], false);
}

TEST_F(Coverage, acknowledgedForDays_hasItsEnd) {
  const json list = parsed(run({"coverage", "acknowledge", "/b", "/a", "--days", "3650", "--json"}).out);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]["path"], "/a");
  EXPECT_THAT(keysOf(list[0]), ElementsAre("acknowledgedAt", "expiresAt", "path"));
  EXPECT_THAT(run({"coverage", "acknowledged"}).out, HasSubstr("/a\n  since "));
}

TEST_F(Coverage, forgetOfWhatWasNotAcknowledged_couldNot) {
  EXPECT_EQ(run({"coverage", "acknowledge", "/a"}).exitStatus, 0);
  const ChildResult result = run({"coverage", "forget", "/a", "/b"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("/b is not acknowledged."));
  EXPECT_EQ(parsed(run({"coverage", "acknowledged", "--json"}).out).size(), 1U);
}

TEST_F(Coverage, wrongUsage_isRefused) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"coverage", "acknowledge"},
                                             {"coverage", "forget"},
                                             {"coverage", "acknowledge", "/a", "--days", "0"},
                                             {"coverage", "acknowledge", "/a", "--days", "3651"},
                                             {"coverage", "acknowledge", "/a", "--days", "many"},
                                             {"coverage", "acknowledged", "/a"},
                                             {"coverage", "/a", "acknowledge", "/b"},
                                             {"coverage", "--days", "3"},
                                             {"coverage", ""}}) {
    EXPECT_EQ(run(arguments).exitStatus, 2) << testing::PrintToString(arguments);
  }
}

TEST_F(Coverage, folderNamedLikeAVerb_isGivenWithItsPlace) {
  const ChildResult result = run({"coverage", "./acknowledge", "--json"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(parsed(result.out)["notExamined"][0].get<std::string>(), HasSubstr("/acknowledge"));
}

TEST_F(Coverage, pathThatIsNotUTF8_cannotBeAcknowledged) {
  const ChildResult result = run({"coverage", "acknowledge", "/a\xff"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("/a\\xff is not UTF-8"));
}

TEST_F(Coverage, filesThatAreGone_areMissedUntilTheirNumberIsAcknowledged) {
  for (int number = 0; number < 30; ++number) {
    mac_.addFile("Work/" + std::to_string(number), kUploaded);
  }
  // The refresh of a machine without commands records the scan all the same.
  EXPECT_EQ(run({"refresh"}).exitStatus, 0);
  EXPECT_EQ(report()["complete"], true);
  std::filesystem::remove_all(path("Work"));
  EXPECT_THAT(gaps(), ElementsAre("filesLost "));
  EXPECT_EQ(report()["gaps"][0]["rule"], "from 31 files to 1");
  const json list = parsed(run({"coverage", "acknowledge", mac_.iCloudDrive(), "--json"}).out);
  EXPECT_THAT(list, IsEmpty());
  EXPECT_EQ(report()["complete"], true);
  addLocal(".env");
  EXPECT_THAT(gaps(), ElementsAre("notInICloud /.env"));
}

TEST_F(Coverage, strictCheck_isUnsafeWhereTheCoverageIsNotComplete) {
  EXPECT_EQ(run({"check", "--strict"}).exitStatus, 0);
  addLocal(".env");
  const ChildResult result = run({"check", "--strict", "--json"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(parsed(result.out)["safeToClose"], true);
  EXPECT_THAT(result.err, HasSubstr("Not in iCloud             " + path(".env") + "\n"));
  EXPECT_EQ(run({"check"}).exitStatus, 0);
  EXPECT_EQ(run({"coverage", "acknowledge", path(".env")}).exitStatus, 0);
  EXPECT_THAT(run({"check", "--strict"}).err, IsEmpty());
  mac_.addFile("pending", kPending);
  EXPECT_EQ(run({"check", "--strict"}).exitStatus, 1);
}

TEST_F(Coverage, strictWait_endsWhenNothingIsLeftOut) {
  EXPECT_EQ(run({"check", "--strict", "--wait"}).exitStatus, 0);
  addLocal(".env");
  const ChildResult result = run({"check", "--strict", "--wait", "--timeout", "0.1"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.out, StartsWith("SAFE TO CLOSE"));
  EXPECT_THAT(result.err, HasSubstr(path(".env")));
}

TEST_F(Coverage, strictWaitForAPendingFile_looksOnceItIsUploaded) {
  const std::string pending = mac_.addFile("pending", kPending);
  Terminal terminal;
  RunningProgram program({"--mac-root", mac_.path(), "check", "--strict", "--wait"}, terminal.programEnd(),
                         terminal.programEnd());
  terminal.closeProgramEnd();
  terminal.waitFor("Not safe yet. ");
  setICloudAttribute(pending, kUploaded);
  EXPECT_THAT(terminal.wholeText(), HasSubstr("SAFE TO CLOSE"));
  EXPECT_EQ(program.exitStatus(), 0);
}

TEST_F(Coverage, explanation_saysItInALine) {
  EXPECT_THAT(run({"explain"}).out, HasSubstr("\nCoverage\n  Complete: 0 hidden items, 0 packages and 0 items in them "
                                              "looked at.\n"));
  addLocal(".env");
  const ChildResult result = run({"explain"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, HasSubstr("  Not vouched for: 1 Not in iCloud. See cirrovanectl coverage.\n"));
}

TEST_F(Coverage, namesOfAnyBytes_areMadeHarmless) {
  addLocal(".\xff\n\x1b[31m");
  EXPECT_THAT(run({"coverage"}).out, HasSubstr("/.\\xff\\n\\x1b[31m\n"));
  EXPECT_THAT(run({"check", "--strict"}).err, HasSubstr("/.\\xff\\n\\x1b[31m\n"));
  EXPECT_THAT(report()["gaps"][0]["path"].get<std::string>(), HasSubstr("\xEF\xBF\xBD"));
}

TEST_F(Coverage, packageAThousandDeep_isLookedThrough) {
  const std::string top = path("Deep.logicx");
  makeFolder(top);
  setICloudAttribute(top, kUploaded);
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(top);
  for (int depth = 0; depth < 1000; ++depth) {
    ASSERT_EQ(mkdir("a folder with a long name", 0700), 0);
    ASSERT_EQ(chdir("a folder with a long name"), 0);
  }
  const FileDescriptor take(open("take", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  setICloudAttribute("take", kPending);
  std::filesystem::current_path(before);
  EXPECT_THAT(gaps(), ElementsAre("pendingPackage /Deep.logicx"));
  EXPECT_EQ(report()["examined"]["inPackages"], 1001);
}

TEST_F(Coverage, whatIsNoFile_isNoGapAndIsNeverOpened) {
  setICloudAttribute(mac_.addFile("Song.logicx/take", kUploaded), kUploaded);
  setICloudAttribute(path("Song.logicx"), kUploaded);
  ASSERT_EQ(mkfifo(path("Song.logicx/pipe").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo(path(".pipe").c_str(), 0600), 0);
  std::filesystem::create_directory_symlink("/", path(".root"));
  std::filesystem::create_directory_symlink("/", path("Song.logicx/root"));
  if (geteuid() == 0) {
    // The null device, without a driver that anybody could open by mistake.
    ASSERT_EQ(mknod(path(".device").c_str(), S_IFCHR | 0600, makedev(1, 3)), 0);
  }
  const json found = report();
  EXPECT_EQ(found["complete"], true) << found;
  EXPECT_LT(found["examined"]["hidden"], 4);
}

TEST_F(Coverage, folderThatChangesMeanwhile_isNeitherUnreadableNorABar) {
  std::atomic<bool> isOver = false;
  std::thread changer([&] {
    for (int turn = 0; !isOver; ++turn) {
      const std::string folder = path(turn % 2 == 0 ? ".cache" : "Song.logicx");
      for (int number = 0; number < 20; ++number) {
        std::error_code ignored;
        const std::string deep = folder + "/" + std::to_string(number) + "/deep";
        std::filesystem::create_directories(deep, ignored);
        std::ofstream(deep + "/~$lock");
      }
      std::error_code ignored;
      std::filesystem::remove_all(folder, ignored);
    }
  });
  for (int look = 0; look < 40; ++look) {
    const json found = report();
    EXPECT_FALSE(found["gapCounts"].contains("unreadableFolder")) << found;
    EXPECT_THAT(found["notExamined"], IsEmpty());
  }
  isOver = true;
  changer.join();
}

}  // namespace
}  // namespace cirrovane::test
