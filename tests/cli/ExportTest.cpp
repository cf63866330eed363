#include "tests/cli/HealthyMac.h"
#include "tests/cli/Scans.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr int kNoMount = 77;

class Export : public testing::Test {
 protected:
  Export() { mac_.addFile("late", "isUploaded=false"); }

  ChildResult exportTo(const std::string& file, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"export", file};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return mac_.run(arguments);
  }
  /// Exports to a file: the packet.
  json packet() const {
    const ChildResult result = exportTo(file_);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.err, IsEmpty());
    return documentAt(file_);
  }
  json history() const { return documentAt(mac_.storePath("history.json")); }

  const HealthyMac mac_;
  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const std::string file_ = folder_ / "packet.json";
};

TEST_F(Export, unsafeMac_isWrittenWithStatus0) {
  const ChildResult result = exportTo(file_);
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out, "Proof packet exported to packet.json.\n");
  EXPECT_EQ(documentAt(file_)["report"]["safeToClose"], false);
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("packet.json"));
}

TEST_F(Export, packet_holdsWhatARefreshFoundAndWhatTheStoresHold) {
  mac_.setCommand(kRoute, "exit 1");
  const json packet = this->packet();
  EXPECT_THAT(keysOf(packet),
              ElementsAre("diagnostics", "exportedAt", "history", "incidents", "report", "systemStatus"));
  EXPECT_EQ(packet["history"], history());
  EXPECT_EQ(packet["history"][0]["timestamp"], packet["report"]["generatedAt"]);
  EXPECT_EQ(packet["incidents"], documentAt(mac_.storePath("incidents.json")));
  EXPECT_FALSE(packet["incidents"].empty());

  const auto withoutWhatIsNew = [](json findings) {
    for (json& finding : findings) {
      finding.erase("id");
      finding.erase("observedAt");
    }
    return findings;
  };
  EXPECT_EQ(withoutWhatIsNew(packet["diagnostics"]), withoutWhatIsNew(parsed(mac_.run({"diagnose", "--json"}).out)));
  json status = packet["systemStatus"];
  json sample = parsed(mac_.run({"status", "--json"}).out);
  status.erase("capturedAt");
  sample.erase("capturedAt");
  EXPECT_EQ(status, sample);
  EXPECT_THAT(keysOf(packet["report"]), IsSupersetOf({"blockers", "folderHealth", "metrics", "actions"}));
  EXPECT_THAT(packet["exportedAt"].get<std::string>(),
              MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z"));
  EXPECT_GE(packet["exportedAt"], packet["report"]["generatedAt"]);
}

TEST_F(Export, text_isInTheOneForm) {
  const std::string text = (exportTo(file_), readFile(file_));
  EXPECT_THAT(text, AllOf(StartsWith("{\n  \"diagnostics\": [\n    {\n      \"detail\": "), EndsWith("\n  }\n}\n")));
  // The parser's document has its keys sorted: printed again, the order must be the same.
  EXPECT_EQ(parsed(text).dump(2) + "\n", text);
}

TEST_F(Export, macWithoutTrouble_hasAnEmptyListOfIncidents) {
  std::filesystem::remove_all(mac_.iCloudDrive() + "/late");
  const json packet = this->packet();
  EXPECT_EQ(packet["report"]["safeToClose"], true);
  EXPECT_EQ(packet["incidents"], json::array());
}

TEST_F(Export, resolvedIncidents_areIncluded) {
  mac_.setCommand(kRoute, "exit 1");
  packet();
  mac_.setCommand(kRoute, HealthyMac::printing("gateway: 192.168.1.1\n"));
  const json incidents = packet()["incidents"];
  const auto found =
      std::ranges::find_if(incidents, [](const json& incident) { return incident["title"] == "Default route"; });
  ASSERT_NE(found, incidents.end());
  EXPECT_EQ((*found)["isResolved"], true);
}

TEST_F(Export, historyOf1And50And51_isCutAfter50) {
  EXPECT_EQ(packet()["history"].size(), 1U);

  writeFile(mac_.storePath("history.json"), recordedScans(49).dump());
  json packet = this->packet();
  EXPECT_EQ(packet["history"].size(), 50U);
  EXPECT_EQ(packet["history"], history());

  writeFile(mac_.storePath("history.json"), recordedScans(50).dump());
  packet = this->packet();
  json newest = history();
  ASSERT_EQ(newest.size(), 51U);
  newest.erase(50);
  EXPECT_EQ(packet["history"], newest);

  writeFile(mac_.storePath("history.json"), recordedScans(200).dump());
  packet = this->packet();
  EXPECT_EQ(packet["history"].size(), 50U);
  EXPECT_EQ(packet["history"][49], recordedScan(48, true));
}

TEST_F(Export, dash_givesThePacketAloneOnStandardOutput) {
  for (const std::vector<std::string>& more : {std::vector<std::string>{}, std::vector<std::string>{"--json"}}) {
    const ChildResult result = exportTo("-", more);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.err, IsEmpty());
    const json packet = parsed(result.out);
    EXPECT_EQ(packet["history"], history());
    EXPECT_EQ(packet.dump(2) + "\n", result.out);
  }
  EXPECT_EQ(history().size(), 2U);
}

TEST_F(Export, dash_intoAFullDisk_givesStatus3) {
  const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(full.isOpen());
  const FileDescriptor err(open((folder_ / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  RunningProgram program({"--mac-root", mac_.path(), "export", "-"}, full.get(), err.get());
  EXPECT_EQ(program.exitStatus(), 3);
  EXPECT_THAT(readFile(folder_ / "err"), HasSubstr("could not be written"));
}

TEST_F(Export, JSON_leavesStandardOutputEmpty) {
  const ChildResult result = exportTo(file_, {"--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(documentAt(file_)["history"].size(), 1U);
}

TEST_F(Export, existingFile_isReplacedWhole) {
  writeFile(file_, std::string(5'000'000, 'x'));
  packet();
  EXPECT_LT(readFile(file_).size(), 100'000U);
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("packet.json"));
}

TEST_F(Export, newFile_hasTheUsersUsualPermissions) {
  const mode_t before = umask(027);
  packet();
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(file_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(Export, relativeName_isBelowTheWorkingDirectory) {
  makeFolder(folder_ / "below");
  const ChildResult result =
      mac_.run({"export", "below/../packet.json"}, {.workingDirectory = folder_.path(), .environment = {}});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(documentAt(file_)["history"].size(), 1U);
  EXPECT_EQ(mac_.run({"export", "./-"}, {.workingDirectory = folder_.path(), .environment = {}}).exitStatus, 0);
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("-", "below", "packet.json"));
}

TEST_F(Export, hostileFileName_isEscapedInText) {
  const ChildResult result = exportTo(folder_ / "a\x1b[2J\nb");
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, "Proof packet exported to a\\x1b[2J\\nb.\n");
  const ChildResult failed = exportTo(folder_ / "none/a\x1b[2J\nb");
  EXPECT_EQ(failed.exitStatus, 3);
  EXPECT_THAT(failed.err, HasSubstr("a\\x1b[2J\\nb"));
}

TEST_F(Export, missingFolder_givesStatus3AndSaysWhy) {
  const ChildResult result = exportTo(folder_ / "none/packet.json");
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_EQ(result.err,
            "cirrovanectl: Export failed: “packet.json” could not be written: No such file or directory.\n");
  EXPECT_THAT(namesIn(folder_.path()), IsEmpty());
  EXPECT_EQ(history().size(), 1U) << "the refresh took place";
}

TEST_F(Export, folderOrPipe_isLeftAsItIs) {
  makeFolder(folder_ / "folder");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/null", folder_ / "device");
  const ChildResult folder = exportTo(folder_ / "folder");
  EXPECT_EQ(folder.exitStatus, 3);
  EXPECT_EQ(folder.err, "cirrovanectl: Export failed: “folder” could not be written: Is a directory.\n");
  for (const char* name : {"pipe", "device"}) {
    const ChildResult result = exportTo(folder_ / name);
    EXPECT_EQ(result.exitStatus, 3) << name;
    EXPECT_THAT(result.err, AllOf(StartsWith("cirrovanectl: Export failed: "), HasSubstr(name)));
  }
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("device", "folder", "pipe"));
  EXPECT_TRUE(std::filesystem::is_fifo(folder_ / "pipe"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "device"));
}

TEST_F(Export, readOnlyDisk_keepsTheOldFileAndGivesStatus3) {
  // Permission bits stop everybody but root, a disk mounted for reading alone stops root too.
  writeFile(file_, "the old packet");
  constexpr const char* kScript = R"(
    mount --bind "$2" "$2" && mount -o remount,bind,ro "$2" || exit 77
    touch "$2/probe" 2>/dev/null && exit 78
    exec "$0" --mac-root "$1" export "$2/packet.json")";
  const ChildResult result = runProgram("/usr/bin/unshare", {"--mount", "--map-root-user", "/bin/sh", "-c", kScript,
                                                             kProgram, mac_.path(), folder_.path()});
  if (result.exitStatus == kNoMount || result.exitStatus == 127 || result.err.starts_with("unshare:")) {
    GTEST_SKIP() << "This user may not mount.";
  }
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_EQ(result.err, "cirrovanectl: Export failed: “packet.json” could not be written: Read-only file system.\n");
  EXPECT_EQ(readFile(file_), "the old packet");
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("packet.json"));
}

TEST_F(Export, diskThatIsFull_keepsTheOldFileAndLeavesNoOther) {
  writeFile(file_, "the old packet");
  const ChildResult result = ctlOnAFullDisk({"--mac-root", mac_.path(), "export", file_});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, AllOf(HasSubstr("The scan was not recorded: "), HasSubstr("Export failed: ")));
  EXPECT_EQ(readFile(file_), "the old packet");
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("packet.json"));
}

TEST_F(Export, historyThatCannotBeSaved_isSaidAndThePacketWrittenAllTheSame) {
  writeFile(mac_.storeFolder(), "in the way");
  const ChildResult result = exportTo(file_);
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, HasSubstr("The scan was not recorded: "));
  EXPECT_EQ(documentAt(file_)["history"].size(), 1U);
}

TEST_F(Export, wrongArguments_giveStatus2AndRecordNothing) {
  using Arguments = std::vector<std::string>;
  for (const Arguments& arguments :
       {Arguments{"export"}, Arguments{"export", ""}, Arguments{"export", file_, file_}, Arguments{"export", "a/"}}) {
    const ChildResult result = mac_.run(arguments);
    EXPECT_EQ(result.exitStatus, 2) << json(arguments);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, StartsWith("cirrovanectl: "));
  }
  EXPECT_THAT(namesIn(mac_.storeFolder()), IsEmpty());
}

/// Kills exports of a large report at random moments.
TEST(ExportKilled, overAnExistingFile_leavesTheOldOrTheNewOneWhole) {
  constexpr std::size_t kFiles = 2'000;
  constexpr int kKills = CIRROVANE_KILLS;
  constexpr int kKillsInsideTheWrite = kKills / 10;
  constexpr int kNewFiles = kKills / 20;
  constexpr int kMostKills = 10 * kKills;
  const MacTree mac;
  // Nothing is asked of a Mac without commands, so that most of an export's time goes to the scan and to writing.
  writeFile(mac / "machine.json", "{}");
  for (std::size_t number = 0; number < kFiles; ++number) {
    mac.addFile(fmt::format("{:a>200}", number), "isUploaded=false");
  }
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const std::string file = folder / "packet.json";
  const std::vector<std::string> arguments = {"--mac-root", mac.path(), "export", file};
  const auto now = [] { return std::chrono::steady_clock::now(); };
  const auto start = now();
  ASSERT_EQ(ctl(arguments).exitStatus, 0);
  const std::chrono::microseconds duration = std::chrono::duration_cast<std::chrono::microseconds>(now() - start);
  ASSERT_GT(readFile(file).size(), 1'000'000U);

  const FileDescriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
  std::mt19937 random(20'261'121);
  std::uniform_int_distribution<std::int64_t> moment(0, duration.count() * 3 / 2);
  int kills = 0;
  int killsInsideTheWrite = 0;
  int newFiles = 0;
  std::size_t mostNames = 0;
  std::string before = readFile(file);
  while ((kills < kKills || killsInsideTheWrite < kKillsInsideTheWrite || newFiles < kNewFiles) && kills < kMostKills &&
         !testing::Test::HasFailure()) {
    {
      const RunningProgram program(arguments, nothing.get(), nothing.get());
      std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
    }
    ++kills;
    const std::vector<std::string> names = namesIn(folder.path());
    mostNames = std::max(mostNames, names.size());
    killsInsideTheWrite += names.size() > 1 ? 1 : 0;
    ASSERT_THAT(names, testing::Contains("packet.json"));
    std::string after = readFile(file);
    if (after != before) {
      // The last of its keys is there, and its end.
      ASSERT_THAT(after, AllOf(StartsWith("{\n  \"diagnostics\": ["), HasSubstr("\n  \"systemStatus\": {\n"),
                               EndsWith("\n  }\n}\n")));
      ++newFiles;
      before = std::move(after);
    }
  }
  EXPECT_GE(kills, kKills);
  EXPECT_GE(killsInsideTheWrite, kKillsInsideTheWrite);
  EXPECT_GE(newFiles, kNewFiles);
  EXPECT_LE(mostNames, 2U) << "each export removes what the one before it left";
  EXPECT_EQ(parsed(before)["report"]["blockers"].size(), kFiles);
  EXPECT_EQ(ctl(arguments).exitStatus, 0);
  EXPECT_THAT(namesIn(folder.path()), ElementsAre("packet.json"));
  std::cout << "[   kills  ] " << kills << ", of which " << killsInsideTheWrite << " while the packet was written; "
            << newFiles << " left a new one\n";
}

}  // namespace
}  // namespace cirrovane::test
