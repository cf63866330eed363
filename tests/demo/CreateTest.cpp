#include "tests/demo/DemoMacFixture.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <iterator>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsSubsetOf;
using ::testing::IsSupersetOf;
using ::testing::Le;
using ::testing::MatchesRegex;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

const std::set<std::string> kFileReasons = {"unresolvedConflict", "uploadError", "downloadError",
                                            "stalledUpload",      "notUploaded", "notDownloaded"};

double seconds(const std::string& date) {
  std::tm time{};
  EXPECT_NE(strptime(date.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time), nullptr) << date;
  return static_cast<double>(timegm(&time));
}

bool isEmptyFolder(const std::string& path) {
  return std::filesystem::is_empty(path);
}

class CreateTest : public DemoMacTest {};

TEST_F(CreateTest, create_newFolder_showsEveryReasonOverItsWatchlist) {
  succeed("create");
  const ChildResult result = check(pathsOf(watchlist()));
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(reasonsOf(json::parse(result.out)),
              UnorderedElementsAre("unavailableFolder", "outsideICloud", "unresolvedConflict", "uploadError",
                                   "downloadError", "stalledUpload", "notUploaded", "notDownloaded"));
}

TEST_F(CreateTest, create_newFolder_isNotSafeWithoutNamingFolders) {
  succeed("create");
  const ChildResult result = check();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(reasonsOf(json::parse(result.out)), IsSupersetOf(kFileReasons));
}

TEST_F(CreateTest, create_newFolder_showsEveryFileReasonInICloudDrive) {
  succeed("create");
  const json scan = report({drive()});
  EXPECT_EQ(reasonsOf(scan), kFileReasons);
  // The missing folder, and nothing else, is an error beyond the failed transfers: all states can be read.
  EXPECT_EQ(scan.at("metrics").at("errors"), std::ranges::count_if(scan.at("blockers"), [](const json& blocker) {
              return blocker.at("reason") == "uploadError" || blocker.at("reason") == "downloadError";
            }));
}

TEST_F(CreateTest, create_newFolder_writesSortedWatchlistOfRealPaths) {
  succeed("create");
  const json list = watchlist();
  EXPECT_EQ(readFile(watchlistFile()), list.dump(2) + "\n");
  std::vector<std::string> names;
  std::set<std::string> ids;
  for (const json& folder : list) {
    EXPECT_EQ(folder.size(), 3u);
    EXPECT_THAT(folder.at("id").get<std::string>(),
                MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_THAT(folder.at("path").get<std::string>(), StartsWith(home() + "/"));
    names.push_back(folder.at("name"));
    ids.insert(folder.at("id"));
  }
  EXPECT_TRUE(std::ranges::is_sorted(names));
  EXPECT_EQ(ids.size(), names.size());
  EXPECT_FALSE(exists(missingFolder()));
  EXPECT_TRUE(exists(outsideFolder()));
}

TEST_F(CreateTest, create_newFolder_keepsWatchlistToItsUser) {
  succeed("create");
  EXPECT_EQ(permissions(watchlistFile()), 0600u);
  EXPECT_EQ(permissions(std::filesystem::path(watchlistFile()).parent_path()), 0700u);
}

TEST_F(CreateTest, create_newFolder_knowsAllFactsOfTheMachine) {
  succeed("create");
  const json facts = json::parse(readFile(root() + "/machine.json"));
  std::vector<std::string> keys;
  for (const auto& fact : facts.items()) {
    keys.push_back(fact.key());
  }
  EXPECT_THAT(keys,
              UnorderedElementsAre("home", "bundle", "environment", "ubiquityIdentityToken", "runningApplications",
                                   "volume", "powerSources", "lowPowerMode", "thermalState", "loadAverages",
                                   "physicalMemory", "uptimeSeconds", "notificationAuthorization"));
  EXPECT_EQ(facts.at("home"), "/Users/demo");
}

TEST_F(CreateTest, create_newFolder_staysSmall) {
  succeed("create");
  std::uintmax_t size = 0;
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home())) {
    if (entry.is_regular_file()) {
      size += entry.file_size();
      ++files;
    }
  }
  EXPECT_THAT(files, AllOf(Ge(60), Le(150)));
  EXPECT_THAT(size, AllOf(Ge(1'000'000u), Le(2'000'000u)));
}

TEST_F(CreateTest, create_newFolder_holdsPackagesThatAScanDoesNotEnter) {
  succeed("create");
  for (const std::string package : {"/School/History/Essay.pages", "/Photos/Family.photoslibrary"}) {
    EXPECT_TRUE(std::filesystem::is_directory(drive() + package)) << package;
    EXPECT_TRUE(iCloudAttribute(drive() + package)) << package;
  }
  EXPECT_EQ(report({drive() + "/Photos"}).at("metrics").at("totalFiles"), 0);
}

TEST_F(CreateTest, create_newFolder_holdsArchiveInCloudOnly) {
  succeed("create");
  const json scan = report({drive() + "/Client Work/Archive"});
  EXPECT_THAT(reasonsOf(scan), UnorderedElementsAre("notDownloaded"));
  EXPECT_EQ(scan.at("localAvailabilityScore"), 0);
}

TEST_F(CreateTest, create_newFolder_datesStuckUploadsHoursAgoAndWaitingOnesMinutesAgo) {
  succeed("create");
  const json scan = report({drive()});
  const double now = seconds(scan.at("generatedAt"));
  std::set<std::string> troubled;
  for (const json& blocker : scan.at("blockers")) {
    if (blocker.at("reason") == "stalledUpload") {
      EXPECT_GT(now - seconds(blocker.at("lastModified")), 3600) << blocker;
    }
    if (blocker.at("reason") == "stalledUpload" || blocker.at("reason") == "uploadError") {
      troubled.insert(blocker.at("filePath"));
    }
  }
  int waiting = 0;
  for (const json& blocker : scan.at("blockers")) {
    if (blocker.at("reason") == "notUploaded" && !troubled.contains(blocker.at("filePath"))) {
      EXPECT_LT(now - seconds(blocker.at("lastModified")), 1200) << blocker;
      ++waiting;
    }
  }
  EXPECT_GE(waiting, 3);
}

TEST_F(CreateTest, create_newFolder_tellsWhatToTry) {
  const std::string out = succeed("create").out;
  EXPECT_THAT(out, HasSubstr("cirrovanectl --mac-root " + root() + " check"));
  EXPECT_THAT(out, HasSubstr("cirrovane-demo-mac settle " + root()));
  for (const json& folder : watchlist()) {
    EXPECT_THAT(out, HasSubstr(folder.at("name").get<std::string>()));
  }
}

TEST_F(CreateTest, create_emptyFolder_fillsIt) {
  makeFolder(root());
  succeed("create");
  EXPECT_TRUE(exists(drive()));
}

TEST_F(CreateTest, create_missingFoldersAbove_makesThem) {
  EXPECT_EQ(demo({"create", root() + "/a/b/"}).exitStatus, 0);
  EXPECT_TRUE(exists(root() + "/a/b/machine.json"));
}

TEST_F(CreateTest, create_relativeFolder_watchesAbsolutePaths) {
  makeFolder(folder_ / "elsewhere");
  EXPECT_EQ(demo({"create", "./../Mac"}, {.workingDirectory = folder_ / "elsewhere", .environment = {}}).exitStatus, 0);
  for (const std::string& path : pathsOf(watchlist())) {
    EXPECT_THAT(path, StartsWith(home() + "/"));
  }
}

TEST_F(CreateTest, create_workingDirectory_fillsItInPlace) {
  makeFolder(root());
  EXPECT_EQ(demo({"create", "."}, {.workingDirectory = root(), .environment = {}}).exitStatus, 0);
  EXPECT_TRUE(exists(drive()));
}

TEST_F(CreateTest, create_demoMac_makesItAnew) {
  succeed("create");
  const TreeContent first = treeContent(root());
  writeFile(drive() + "/School/Mine.txt", "mine");
  writeFile(root() + "/Applications/Mine.txt", "mine");
  std::filesystem::remove_all(drive() + "/Invoices");
  succeed("settle");
  succeed("create");
  EXPECT_EQ(treeContent(root()), first);
}

TEST_F(CreateTest, create_demoMacWithLinkToOutside_leavesTheOutsideAlone) {
  succeed("create");
  writeFile(folder_ / "precious/File.txt", "precious");
  std::filesystem::create_directory_symlink(folder_ / "precious", drive() + "/Link");
  succeed("create");
  EXPECT_FALSE(exists(drive() + "/Link"));
  EXPECT_EQ(readFile(folder_ / "precious/File.txt"), "precious");
}

TEST_F(CreateTest, create_interruptedBefore_makesItAnew) {
  succeed("create");
  const TreeContent whole = treeContent(root());
  std::filesystem::rename(root() + "/Users", root() + "/.in-making-0a1b2c");
  succeed("create");
  EXPECT_EQ(treeContent(root()), whole);
}

TEST_F(CreateTest, create_folderThatHoldsSomethingElse_leavesItAlone) {
  writeFile(root() + "/Thesis.txt", "years of work");
  writeFile(root() + "/machine.json", "{}");
  const TreeContent before = treeContent(root());
  const ChildResult result = demo({"create", root()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("is not empty and no demo Mac"));
  EXPECT_EQ(treeContent(root()), before);
}

TEST_F(CreateTest, create_folderWithForeignMarker_leavesItAlone) {
  writeFile(root() + "/.cirrovane-demo-mac", "something else\n");
  EXPECT_EQ(demo({"create", root()}).exitStatus, 3);
  EXPECT_EQ(readFile(root() + "/.cirrovane-demo-mac"), "something else\n");
}

TEST_F(CreateTest, create_nameOfFile_refuses) {
  writeFile(root(), "a file");
  for (const std::string& target : {root(), root() + "/Mac"}) {
    const ChildResult result = demo({"create", target});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_NE(result.err, "");
  }
  EXPECT_EQ(readFile(root()), "a file");
}

TEST_F(CreateTest, create_insideICloudDrive_refuses) {
  const std::string inside = folder_ / "Library/Mobile Documents/com~apple~CloudDocs/Mac";
  const ChildResult result = demo({"create", inside});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("iCloud Drive"));
  EXPECT_TRUE(isEmptyFolder(folder_.path()));
}

TEST_F(CreateTest, create_nameThatIsNotUTF8_refuses) {
  const ChildResult result = demo({"create", folder_ / "M\xe4"
                                                       "c"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("not UTF-8"));
  EXPECT_TRUE(isEmptyFolder(folder_.path()));
}

TEST_F(CreateTest, create_nameWithBlanksAndQuotes_works) {
  const std::string odd = folder_ / "Anna's demo Mac";
  const ChildResult result = demo({"create", odd});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, HasSubstr("Anna'\\''s demo Mac'"));
  EXPECT_TRUE(exists(odd + "/machine.json"));
}

TEST_F(CreateTest, create_fileSystemWithoutAttributes_saysSoAndLeavesNothing) {
  const auto result = demoOnMount("-t ramfs", folder_ / "mount",
                                  "for target in \"$1\" \"$1/new/Mac\"; do \"$0\" create \"$target\"; echo $?; done\n"
                                  "stat -f -c %T \"$1\"; ls -A \"$1\"; echo end");
  if (!result) {
    GTEST_SKIP() << "This user may not mount.";
  }
  EXPECT_EQ(result->out, "3\n3\nramfs\nend\n");
  EXPECT_THAT(result->err, HasSubstr("has no extended attributes"));
  EXPECT_TRUE(isEmptyFolder(folder_ / "mount"));
}

TEST_F(CreateTest, create_fullDisk_saysSoAndLeavesNothing) {
  const auto result = demoOnMount("-t tmpfs -o size=512k", folder_ / "mount",
                                  "\"$0\" create \"$1/Mac\"; echo $?; ls -A \"$1\"; echo end");
  if (!result) {
    GTEST_SKIP() << "This user may not mount.";
  }
  EXPECT_EQ(result->out, "3\nend\n");
  EXPECT_NE(result->err, "");
}

TEST_F(CreateTest, create_answerCannotBeWritten_saysSo) {
  const ChildResult result =
      runProgram("/bin/sh", {"-c", "\"$0\" create \"$1\" >/dev/full", CIRROVANE_BIN_DIR "/cirrovane-demo-mac", root()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("could not be written in full"));
}

TEST_F(CreateTest, commandLine_wrongUsage_exitsWithTwo) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"create"},
                                                    {"create", ""},
                                                    {"create", root(), "more"},
                                                    {"bake", root()},
                                                    {"settle"},
                                                    {"unsettle", root(), "more"},
                                                    {"--nonsense"}}) {
    const ChildResult result = demo(arguments);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_NE(result.err, "");
  }
  EXPECT_FALSE(exists(root()));
}

TEST_F(CreateTest, help_asked_teachesEveryCommand) {
  const ChildResult result = demo({"--help"});
  EXPECT_EQ(result.exitStatus, 0);
  for (const std::string command : {"create", "settle", "unsettle", "set", "fact", "process", "network"}) {
    EXPECT_THAT(result.out, HasSubstr("  " + command + " "));
    const ChildResult help = demo({command, "--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_THAT(help.out, HasSubstr("Usage: cirrovane-demo-mac " + command));
  }
}

}  // namespace
}  // namespace cirrovane::test
