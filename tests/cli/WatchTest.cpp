#include "tests/cli/Watching.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
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
using testing::Not;
using testing::StartsWith;

class Watch : public testing::Test {
 protected:
  std::vector<std::string> arguments(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "watch"});
    return more;
  }
  std::vector<std::string> inJSON(std::vector<std::string> more = {}) const {
    more.emplace_back("--json");
    return arguments(std::move(more));
  }
  /// What a scan of its own says at this moment.
  json checked(std::vector<std::string> folders = {}) const {
    folders.insert(folders.begin(), {"--mac-root", mac_.path(), "check", "--json"});
    return verdictOfReport(parsed(ctl(folders).out));
  }
  void changeWatchlist(const std::string& verb, const std::string& folder) const {
    EXPECT_EQ(ctl({"--mac-root", mac_.path(), "watchlist", verb, folder}).exitStatus, 0);
  }

  const MacTree mac_;
};

TEST_F(Watch, firstLine_saysWhatACheckSays) {
  mac_.addFile("clean");
  mac_.addFile("cloud", "isUploaded=true\ndownloadingStatus=notDownloaded");
  mac_.addFile("below/pending", "isUploaded=false");
  mac_.addFile("below/conflict", "hasUnresolvedConflicts=true");
  Watching watching(inJSON());
  const json line = watching.next();
  EXPECT_EQ(verdictOf(line), checked());
  EXPECT_EQ(line["liveness"], "live");
  EXPECT_EQ(line["safeToClose"], false);
}

TEST_F(Watch, line_hasItsKeysInOrderAndThoseAloneThatHaveAValue) {
  const std::string pending = mac_.addFile("pending", "isUploaded=false");
  Watching watching(inJSON());
  const auto keysOfLine = [](const std::string& text) {
    std::vector<std::string> keys;
    const auto object = nlohmann::ordered_json::parse(text);
    for (const auto& entry : object.items()) {
      keys.push_back(entry.key());
    }
    return keys;
  };
  EXPECT_THAT(keysOfLine(watching.nextText()),
              ElementsAre("at", "blockerCount", "confirmedAt", "liveness", "localAvailabilityScore", "pendingUploads",
                          "safeToClose", "score", "status", "topBlocker", "totalFiles"));
  setICloudAttribute(pending, "");
  EXPECT_THAT(keysOfLine(watching.nextText()),
              ElementsAre("at", "blockerCount", "confirmedAt", "liveness", "localAvailabilityScore", "pendingUploads",
                          "safeToClose", "score", "status", "totalFiles"));
}

TEST_F(Watch, fileSavedAndUploaded_isNoAndThenYes) {
  const std::string path = mac_.addFile("letter");
  Watching watching(inJSON());
  EXPECT_EQ(watching.next()["safeToClose"], true);
  setICloudAttribute(path, "isUploaded=false");
  const json saved = watching.next();
  EXPECT_EQ(saved["safeToClose"], false);
  EXPECT_EQ(saved["topBlocker"], path);
  EXPECT_EQ(saved["liveness"], "live");
  EXPECT_EQ(verdictOf(saved), checked());
  setICloudAttribute(path, "isUploaded=true");
  const json uploaded = watching.next();
  EXPECT_EQ(uploaded["safeToClose"], true);
  EXPECT_EQ(verdictOf(uploaded), checked());
}

TEST_F(Watch, save_isNoWithinASecond) {
  const std::string path = mac_.addFile("letter");
  Watching watching(inJSON());
  watching.next();
  const auto saved = std::chrono::steady_clock::now();
  setICloudAttribute(path, "isUploaded=false");
  EXPECT_EQ(watching.next()["safeToClose"], false);
  EXPECT_LT(watching.heard().back().at - saved, std::chrono::seconds(1));
}

TEST_F(Watch, changeOfNoValue_makesNoLine) {
  const std::string path = mac_.addFile("letter");
  Watching watching(inJSON());
  EXPECT_EQ(watching.next()["totalFiles"], 1);
  for (const char* content : {"one", "two", "three"}) {
    writeFile(path, content);
    setICloudAttribute(path, content + std::string("=1\nisUploaded=true"));
    EXPECT_EQ(ctl({"--mac-root", mac_.path(), "check"}).exitStatus, 0);
  }
  mac_.addFile("another");
  EXPECT_EQ(watching.next()["totalFiles"], 2);
  EXPECT_EQ(watching.heard().size(), 2U);
}

TEST_F(Watch, eachLine_differsFromTheOneBeforeInMoreThanItsTimes) {
  const std::string path = mac_.addFile("letter");
  Watching watching(inJSON());
  watching.next();
  for (int time = 0; time < 20; ++time) {
    setICloudAttribute(path, time % 2 == 0 ? "isUploaded=false" : "isUploaded=true");
    watching.nextWith([time](const json& line) { return line["safeToClose"] == (time % 2 != 0); });
  }
  json before;
  for (const HeardLine& heard : watching.heard()) {
    json line = parsed(heard.text);
    line.erase("at");
    line.erase("confirmedAt");
    EXPECT_NE(line, before);
    before = line;
  }
}

TEST_F(Watch, folderMovedInAndRemoved_countsWithAllBelow) {
  mac_.addFile("letter");
  const std::string outside = mac_ / "outside";
  writeFile(outside + "/deep/deeper/pending");
  setICloudAttribute(outside + "/deep/deeper/pending", "isUploaded=false");
  writeFile(outside + "/deep/clean");
  Watching watching(inJSON());
  EXPECT_EQ(watching.next()["totalFiles"], 1);
  std::filesystem::rename(outside, mac_.iCloudDrive() + "/inside");
  const json moved = watching.nextWith([](const json& line) { return line["totalFiles"] == 3; });
  EXPECT_EQ(moved["topBlocker"], mac_.iCloudDrive() + "/inside/deep/deeper/pending");
  EXPECT_EQ(verdictOf(moved), checked());
  // What lies in it is watched by now.
  mac_.addFile("inside/deep/deeper/another");
  watching.nextWith([](const json& line) { return line["totalFiles"] == 4; });
  std::filesystem::remove_all(mac_.iCloudDrive() + "/inside");
  const json removed = watching.nextWith([](const json& line) { return line["safeToClose"] == true; });
  EXPECT_EQ(verdictOf(removed), checked());
  EXPECT_EQ(removed["totalFiles"], 1);
}

TEST_F(Watch, watchedFolderThatIsMissing_isNoticedWhenItComes) {
  const std::string folder = mac_.iCloudDrive() + "/later/still";
  Watching watching(inJSON({folder}));
  const json missing = watching.next();
  EXPECT_EQ(verdictOf(missing), checked({folder}));
  EXPECT_EQ(missing["safeToClose"], false);
  EXPECT_EQ(missing["liveness"], "live");
  makeFolder(folder);
  const json made = watching.nextWith([](const json& line) { return line["safeToClose"] == true; });
  EXPECT_EQ(verdictOf(made), checked({folder}));
  mac_.addFile("later/still/pending", "isUploaded=false");
  watching.nextWith([](const json& line) { return line["pendingUploads"] == 1; });
  std::filesystem::remove_all(mac_.iCloudDrive() + "/later");
  const json gone = watching.nextWith([](const json& line) { return line["totalFiles"] == 0; });
  EXPECT_EQ(verdictOf(gone), verdictOf(missing));
}

TEST_F(Watch, watchlistThatAnotherProcessChanges_isFollowed) {
  mac_.addFile("letter");
  writeFile(mac_ / "work/pending");
  setICloudAttribute(mac_ / "work/pending", "isUploaded=false");
  Watching watching(inJSON());
  EXPECT_EQ(watching.next()["safeToClose"], true);
  changeWatchlist("add", mac_ / "work");
  const json added = watching.nextWith([](const json& line) { return line["pendingUploads"] == 1; });
  EXPECT_EQ(verdictOf(added), checked());
  writeFile(mac_ / "work/another");
  watching.nextWith([](const json& line) { return line["totalFiles"] == 3; });
  changeWatchlist("remove", mac_ / "work");
  const json removed = watching.nextWith([](const json& line) { return line["safeToClose"] == true; });
  EXPECT_EQ(verdictOf(removed), checked());
}

TEST_F(Watch, folderArguments_areFollowedAlone) {
  mac_.addFile("one/letter");
  mac_.addFile("two/letter");
  mac_.addFile("three/pending", "isUploaded=false");
  Watching watching(inJSON({mac_.iCloudDrive() + "/one", mac_.iCloudDrive() + "/two"}));
  const json first = watching.next();
  EXPECT_EQ(first["totalFiles"], 2);
  EXPECT_EQ(first["safeToClose"], true);
  mac_.addFile("three/another", "isUploaded=false");
  changeWatchlist("add", mac_.iCloudDrive() + "/three");
  mac_.addFile("two/another");
  EXPECT_EQ(watching.next()["totalFiles"], 3);
}

TEST_F(Watch, timeoutOfNothing_printsTheFirstLineAndEnds) {
  const std::string path = mac_.addFile("letter");
  const ChildResult safe = ctl(inJSON({"--timeout", "0"}));
  EXPECT_EQ(safe.exitStatus, 0);
  EXPECT_EQ(std::ranges::count(safe.out, '\n'), 1);
  EXPECT_EQ(parsed(safe.out)["liveness"], "live");
  setICloudAttribute(path, "isUploaded=false");
  const ChildResult unsafe = ctl(inJSON({"--timeout", "0"}));
  EXPECT_EQ(unsafe.exitStatus, 1);
  EXPECT_EQ(std::ranges::count(unsafe.out, '\n'), 1);
  EXPECT_THAT(unsafe.err, IsEmpty());
}

TEST_F(Watch, timeout_endsWithTheStatusOfTheLastVerdict) {
  const std::string path = mac_.addFile("letter");
  Watching watching(inJSON({"--timeout", "1.5"}));
  watching.next();
  setICloudAttribute(path, "isUploaded=false");
  EXPECT_EQ(watching.next()["safeToClose"], false);
  EXPECT_EQ(watching.exitStatus(), 1);
  EXPECT_EQ(watching.heard().size(), 2U);
  EXPECT_THAT(watching.errors(), IsEmpty());
}

TEST_F(Watch, signal_endsWithTheStatusOfTheLastVerdict) {
  const std::string path = mac_.addFile("letter");
  for (const int signal : {SIGINT, SIGTERM}) {
    for (const bool isSafe : {true, false}) {
      setICloudAttribute(path, isSafe ? "isUploaded=true" : "isUploaded=false");
      Watching watching(inJSON());
      EXPECT_EQ(watching.next()["safeToClose"], isSafe);
      watching.signal(signal);
      EXPECT_EQ(watching.exitStatus(), isSafe ? 0 : 1);
      EXPECT_EQ(watching.heard().size(), 1U);
      EXPECT_THAT(watching.errors(), IsEmpty());
    }
  }
}

#ifdef CIRROVANE_SLOW_ATTRIBUTES

TEST_F(Watch, signalBeforeTheFirstLine_endsWithStatus1AndSaysNothing) {
  mac_.addFile("letter", "isUploaded=true");
  const std::string gate = mac_ / "gate";
  ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
  Terminal terminal;
  Pipe output;
  RunningProgram program(inJSON(), output.writeEnd.get(), terminal.programEnd(),
                         {{"LD_PRELOAD", CIRROVANE_SLOW_ATTRIBUTES}, {"CIRROVANE_TEST_GATE", gate}, {"TERM", "xterm"}});
  terminal.closeProgramEnd();
  output.writeEnd = FileDescriptor();
  terminal.waitFor("Scanning");
  program.signal(SIGTERM);
  EXPECT_EQ(program.exitStatus(), 1);
  char byte = 0;
  EXPECT_EQ(read(output.readEnd.get(), &byte, 1), 0);
}

TEST_F(Watch, clockThatIsSet_doesNotEndItEarly) {
  mac_.addFile("pending", "isUploaded=false");
  for (const char* command : {"watch", "check --wait"}) {
    std::vector<std::string> line = {"-c", "exec \"$0\" --mac-root \"$1\" " + std::string(command) + " --timeout 1.5",
                                     kProgram, mac_.path()};
    const auto began = std::chrono::steady_clock::now();
    const ChildResult result =
        runProgram("/bin/sh", line, {.workingDirectory = {}, .environment = {{"LD_PRELOAD", CIRROVANE_WAKING_OFTEN}}});
    EXPECT_EQ(result.exitStatus, 1) << command;
    EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(1500)) << command;
  }
}

#endif

TEST_F(Watch, readerThatGoesAway_endsItWithoutAWord) {
  const std::string path = mac_.addFile("letter");
  for (const bool isSafe : {true, false}) {
    setICloudAttribute(path, isSafe ? "isUploaded=true" : "isUploaded=false");
    Pipe output;
    Pipe errors;
    RunningProgram program(inJSON(), output.writeEnd.get(), errors.writeEnd.get());
    output.writeEnd = FileDescriptor();
    errors.writeEnd = FileDescriptor();
    char byte = 0;
    ASSERT_EQ(read(output.readEnd.get(), &byte, 1), 1);
    output.readEnd = FileDescriptor();
    EXPECT_EQ(program.exitStatus(), isSafe ? 0 : 1);
    EXPECT_EQ(read(errors.readEnd.get(), &byte, 1), 0);
  }
}

TEST_F(Watch, outputThatTakesNothing_endsItWithStatus3) {
  mac_.addFile("letter");
  const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
  Pipe errors;
  // Whether work is still under way at that moment is left to chance.
  for (int time = 0; time < 10; ++time) {
    RunningProgram program(inJSON(), full.get(), errors.writeEnd.get());
    EXPECT_EQ(program.exitStatus(), 3);
  }
}

TEST_F(Watch, wrongUsage_isStatus2) {
  for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{
           {"--timeout", "-1"}, {"--timeout", "nan"}, {"--timeout", "soon"}, {"--interval", "1"}, {""}, {"--wait"}}) {
    const ChildResult result = ctl(arguments(wrong));
    EXPECT_EQ(result.exitStatus, 2) << wrong.front();
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, StartsWith("cirrovanectl: "));
  }
}

TEST_F(Watch, nothing_isRecorded) {
  const std::string path = mac_.addFile("letter");
  EXPECT_EQ(ctl({"--mac-root", mac_.path(), "check"}).exitStatus, 0);
  const std::vector<std::string> before = namesIn(mac_.storeFolder());
  Watching watching(inJSON());
  watching.next();
  setICloudAttribute(path, "isUploaded=false");
  watching.next();
  setICloudAttribute(path, "isUploaded=true");
  watching.next();
  watching.signal(SIGTERM);
  EXPECT_EQ(watching.exitStatus(), 0);
  EXPECT_EQ(namesIn(mac_.storeFolder()), before);
  EXPECT_THAT(before, Not(testing::Contains(testing::AnyOf(HasSubstr("history"), HasSubstr("incident")))));
}

TEST_F(Watch, textForPeople_isOneLineAChangeWithNamesEscaped) {
  const std::string path = mac_.addFile("a\nSAFE TO CLOSE\x1b[2J");
  Watching watching(arguments());
  EXPECT_THAT(watching.nextText(), AllOf(HasSubstr("  SAFE TO CLOSE      100 of 100  1 file"), EndsWith("  live")));
  setICloudAttribute(path, "isUploaded=false");
  EXPECT_THAT(watching.nextText(), AllOf(HasSubstr("  NOT SAFE TO CLOSE  "), HasSubstr("1 file, 1 blocker: "),
                                         HasSubstr("/a\\nSAFE TO CLOSE\\x1b[2J"), EndsWith("  live")));
}

}  // namespace
}  // namespace cirrovane::test
