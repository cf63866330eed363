#include "base/DisplayText.h"
#include "tests/cli/HealthyMac.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Diagnose : public testing::Test {
 protected:
  ChildResult diagnose(std::vector<std::string> arguments = {}, const ChildOptions& options = {}) const {
    arguments.insert(arguments.begin(), "diagnose");
    return mac_.run(arguments, options);
  }
  json findings(std::vector<std::string> arguments = {}) const {
    arguments.emplace_back("--json");
    const ChildResult result = diagnose(arguments);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.err, IsEmpty());
    return parsed(result.out);
  }
  /// Each finding as "severity Title".
  std::vector<std::string> headlines(const std::vector<std::string>& arguments = {}) const {
    std::vector<std::string> lines;
    for (const json& finding : findings(arguments)) {
      lines.push_back(finding["severity"].get<std::string>() + " " + finding["title"].get<std::string>());
    }
    return lines;
  }
  /// The detail of the finding with this title; empty when there is none.
  std::string detail(const std::string& title) const {
    for (const json& finding : findings()) {
      if (finding["title"] == title) {
        return finding["detail"];
      }
    }
    return "";
  }

  const HealthyMac mac_;
};

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

const std::vector<std::string> kHealthyHeadlines = {"info Finder/Files diagnostic scope",
                                                    "ok Finder process",
                                                    "ok Watchlist paths",
                                                    "info Network scope",
                                                    "ok Default route",
                                                    "ok iCloud host reachability",
                                                    "ok DNS resolution",
                                                    "info CPU usage sample",
                                                    "info Temperature probe",
                                                    "ok CPU load average",
                                                    "ok Thermal state",
                                                    "ok Battery level",
                                                    "ok Charging",
                                                    "ok Low Power Mode",
                                                    "info Swap usage",
                                                    "info SMART tooling",
                                                    "ok Disk capacity",
                                                    "info Diagnostic scope",
                                                    "ok Scan freshness",
                                                    "ok Sleep/shutdown risk",
                                                    "ok iCloud session detected",
                                                    "ok iCloud storage path accessible",
                                                    "ok bird daemon",
                                                    "ok cloudd daemon",
                                                    "ok fileproviderd",
                                                    "ok Pending uploads"};

TEST_F(Diagnose, healthyMac_hasNothingToComplainOf) {
  EXPECT_EQ(headlines(), kHealthyHeadlines);
}

TEST_F(Diagnose, textOfOneDomain_isAlignedUnderSeverityDomainAndTitle) {
  const ChildResult result = diagnose({"network"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out,
            "info     Network      Network scope             Current checks cover reachability-class signals; deep "
            "throughput diagnostics remain optional and desktop-first.\n"
            "ok       Network      Default route             Default route present.\n"
            "ok       Network      iCloud host reachability  www.icloud.com appears reachable.\n"
            "ok       Network      DNS resolution            DNS resolution for www.icloud.com returned addresses.\n");
}

TEST_F(Diagnose, textOfAll_isAlignedAndSaysWhatJSONSays) {
  mac_.describe({{"volume", {{"availableForImportantUsage", 1'000'000'000}, {"total", 2'000'000'000}}}});
  const std::vector<std::string> lines = linesOf(diagnose().out);
  const json list = findings();
  ASSERT_EQ(lines.size(), list.size());
  std::size_t width = 0;
  std::set<std::string> severities;
  for (const json& finding : list) {
    width = std::max(width, finding["title"].get<std::string>().size());
    severities.insert(finding["severity"]);
  }
  EXPECT_THAT(severities, ElementsAre("error", "info", "ok", "warning"));
  const auto padded = [](const json& text, std::size_t size) {
    auto cell = text.get<std::string>();
    cell.resize(size, ' ');
    return cell + "  ";
  };
  for (std::size_t index = 0; index < lines.size(); ++index) {
    const json& finding = list[index];
    EXPECT_EQ(lines[index], padded(finding["severity"], 7) + padded(finding["domain"], 11) +
                                padded(finding["title"], width) + displayOutput(finding["detail"].get<std::string>()));
  }
}

TEST_F(Diagnose, json_isAnArrayOfFindingsWithTheirSixKeys) {
  const json list = findings();
  ASSERT_TRUE(list.is_array());
  for (const json& finding : list) {
    std::vector<std::string> keys;
    for (const auto& entry : finding.items()) {
      keys.push_back(entry.key());
    }
    EXPECT_THAT(keys, ElementsAre("detail", "domain", "id", "observedAt", "severity", "title"));
  }
}

TEST_F(Diagnose, json_isPrettyPrintedAndEndsWithItsLine) {
  EXPECT_THAT(diagnose({"--json", "power"}).out,
              AllOf(StartsWith("[\n  {\n    \"detail\": \"87%\",\n    \"domain\": \"Power\",\n"),
                    testing::EndsWith("\n  }\n]\n")));
}

TEST_F(Diagnose, findingsOfEverySeverity_leaveStatus0) {
  mac_.describe(json::object());
  mac_.addFile("conflict", "hasUnresolvedConflicts=true");
  EXPECT_THAT(headlines(), Contains("error Unresolved conflicts"));
  EXPECT_EQ(diagnose().exitStatus, 0);
}

TEST_F(Diagnose, watchlist_isScannedFirst) {
  const std::string path = mac_.addFile("pending", "isUploaded=false");
  mac_.addFile("cloud", "downloadingStatus=notDownloaded");
  EXPECT_EQ(detail("Pending uploads"), "1 files are still pending upload.");
  EXPECT_EQ(detail("Cloud-only files"),
            "1 files are cloud-only on this device. This affects local availability, not upload trust.");
  EXPECT_EQ(detail("Top blocker path"), "Top blocker path exists locally: " + path);
  EXPECT_EQ(detail("iCloud storage path accessible"), mac_.iCloudDrive());
}

TEST_F(Diagnose, missingWatchedFolder_isAGapAndAMissingPath) {
  writeFile(mac_.storePath("watchlist.json"),
            R"([{"id": "6F9619FF-8B86-D011-B42D-00CF4FC964FF", "name": "Gone", "path": "/Volumes/Gone"}])");
  EXPECT_THAT(headlines(), testing::IsSupersetOf({"warning Missing watchlist paths", "warning Top blocker path",
                                                  "warning Watchlist coverage gaps"}));
}

TEST_F(Diagnose, domain_inAnyCase_isThatDomain) {
  for (const std::string& name : std::vector<std::string>{"iCloud", "icloud", "ICLOUD", "ICloud"}) {
    EXPECT_THAT(headlines({name}),
                ElementsAre("ok iCloud session detected", "ok iCloud storage path accessible", "ok bird daemon",
                            "ok cloudd daemon", "ok fileproviderd", "ok Pending uploads"))
        << name;
  }
  EXPECT_THAT(headlines({"POWER"}), ElementsAre("ok Battery level", "ok Charging", "ok Low Power Mode"));
}

TEST_F(Diagnose, domains_togetherGiveWhatAllGive) {
  std::vector<std::string> joined;
  for (const char* name : {"finder", "network", "performance", "power", "storage", "system", "icloud"}) {
    for (const std::string& line : headlines({name})) {
      joined.push_back(line);
    }
  }
  EXPECT_EQ(joined, kHealthyHeadlines);
}

TEST_F(Diagnose, unknownDomain_givesStatus2AndNamesTheKnownOnes) {
  for (const std::string& name : std::vector<std::string>{"clouds", "net", "network ", "", "0"}) {
    const ChildResult result = diagnose({name});
    EXPECT_EQ(result.exitStatus, 2) << name;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("icloud, finder, network, storage, power, performance, system"), HasSubstr("--help")));
  }
}

TEST_F(Diagnose, unknownDomainWithAHostileName_isNamedHarmlessly) {
  const ChildResult result = diagnose({"\x1b[2J"});
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_THAT(result.err, AllOf(Not(HasSubstr("\x1b")), HasSubstr("\\x1b[2J")));
}

TEST_F(Diagnose, twoDomains_giveStatus2) {
  EXPECT_EQ(diagnose({"network", "power"}).exitStatus, 2);
}

TEST_F(Diagnose, nothing_isRecorded) {
  mac_.addFile("pending", "isUploaded=false");
  EXPECT_EQ(diagnose().exitStatus, 0);
  EXPECT_EQ(diagnose({"--json", "icloud"}).exitStatus, 0);
  EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("watchlist.json"));
  EXPECT_THAT(namesIn(mac_ / "Users/demo/Library/Preferences"), IsEmpty());
}

TEST_F(Diagnose, arguments_reachTheCommandsExactly) {
  for (const char* command : {kRoute, kScutil, kDscacheutil, kSysctl, kWhich, kTop, kPgrep}) {
    mac_.setCommand(command,
                    "for argument; do printf '[%s]' \"$argument\"; done >>\"$0.arguments\"\n"
                    "echo >>\"$0.arguments\"\nexit 1");
  }
  EXPECT_EQ(diagnose().exitStatus, 0);
  const auto argumentsOf = [&](const char* command) {
    return readFile(mac_.pathOf(std::string(command) + ".arguments"));
  };
  EXPECT_EQ(argumentsOf(kRoute), "[-n][get][default]\n");
  EXPECT_EQ(argumentsOf(kScutil), "[-r][www.icloud.com]\n");
  EXPECT_EQ(argumentsOf(kDscacheutil), "[-q][host][-a][name][www.icloud.com]\n");
  EXPECT_EQ(argumentsOf(kSysctl), "[vm.swapusage]\n");
  EXPECT_EQ(argumentsOf(kWhich), "[smartctl]\n[osx-cpu-temp]\n");
  EXPECT_EQ(argumentsOf(kTop), "[-l][1][-n][0]\n");
  EXPECT_EQ(argumentsOf(kPgrep), "[-x][bird]\n[-x][cloudd]\n[-x][fileproviderd]\n[-x][smartctl]\n");
}

TEST_F(Diagnose, describedEnvironment_isAllThatCommandsSee) {
  mac_.setCommand(kSysctl, "echo \"$CIRROVANE_ONE/$CIRROVANE_TWO\"");
  json facts = HealthyMac::facts();
  facts["environment"] = {{"CIRROVANE_ONE", "described = 'so'"}};
  mac_.describe(facts);
  const ChildResult result = diagnose(
      {"storage"}, {.workingDirectory = "", .environment = {{"CIRROVANE_ONE", "own"}, {"CIRROVANE_TWO", "own"}}});
  EXPECT_THAT(result.out, HasSubstr("described = 'so'/\n"));
}

TEST_F(Diagnose, ownEnvironment_reachesCommandsWhereNoneIsDescribed) {
  mac_.setCommand(kSysctl, "echo \"$CIRROVANE_ONE\"");
  const ChildResult result =
      diagnose({"storage"}, {.workingDirectory = "", .environment = {{"CIRROVANE_ONE", "the process's own"}}});
  EXPECT_THAT(result.out, HasSubstr("the process's own\n"));
}

TEST_F(Diagnose, controlCharactersOfATool_areWrittenOutInText) {
  mac_.setCommand(kSysctl, R"(printf 'vm.swapusage: \033[2Ja\tb\nok  Network \342\200\256c\r\n\n')");
  const ChildResult text = diagnose({"storage"});
  EXPECT_THAT(text.out, AllOf(Not(HasSubstr("\x1b")), Not(HasSubstr("\xE2\x80\xAE"))));
  EXPECT_THAT(linesOf(text.out),
              Contains("info     Storage      Swap usage     \\x1b[2Ja\\tb\\nok  Network \\u{202e}c"));
  EXPECT_EQ(linesOf(text.out).size(), 3U);
  EXPECT_EQ(detail("Swap usage"),
            "\x1b[2Ja\tb\nok  Network \xE2\x80\xAE"
            "c\r\n\n");
}

TEST_F(Diagnose, controlCharactersInAnUsageLine_areWrittenOutInText) {
  mac_.setCommand(kTop, R"(printf 'CPU usage: \007 5%%\n')");
  EXPECT_THAT(diagnose({"performance"}).out, AllOf(HasSubstr("CPU usage: \\x07 5%\n"), Not(HasSubstr("\a"))));
}

class DiagnoseWithoutOutput : public Diagnose, public testing::WithParamInterface<CommandBehaviour> {};

INSTANTIATE_TEST_SUITE_P(All, DiagnoseWithoutOutput, testing::ValuesIn(waysWithoutOutput()),
                         [](const auto& tested) { return std::string(tested.param.title); });

TEST_P(DiagnoseWithoutOutput, everyCommand_leavesWhatNeedsNone) {
  for (const auto& [command, answer] : kAnswers) {
    GetParam().apply(mac_, command, answer);
  }
  EXPECT_THAT(headlines({"network"}), ElementsAre("warning Default route", "info Network scope"));
  EXPECT_THAT(headlines({"storage"}), ElementsAre("warning SMART tooling", "ok Disk capacity"));
  EXPECT_THAT(headlines({"performance"}),
              ElementsAre("warning Temperature probe", "ok CPU load average", "ok Thermal state"));
  EXPECT_EQ(detail("Default route"), "Could not query default route.");
}

TEST_P(DiagnoseWithoutOutput, oneCommand_takesNoOtherFindingAway) {
  GetParam().apply(mac_, kScutil, "Reachable\n");
  std::vector<std::string> expected = kHealthyHeadlines;
  std::erase(expected, "ok iCloud host reachability");
  EXPECT_EQ(headlines(), expected);
}

class DiagnoseWithOutput : public Diagnose, public testing::WithParamInterface<CommandBehaviour> {};

INSTANTIATE_TEST_SUITE_P(All, DiagnoseWithOutput, testing::ValuesIn(waysWithOutput()),
                         [](const auto& tested) { return std::string(tested.param.title); });

TEST_P(DiagnoseWithOutput, everyCommand_countsAsAnswered) {
  for (const auto& [command, answer] : kAnswers) {
    GetParam().apply(mac_, command, answer);
  }
  EXPECT_THAT(headlines({"network"}), ElementsAre("info Network scope", "ok Default route",
                                                  "ok iCloud host reachability", "ok DNS resolution"));
  EXPECT_THAT(headlines({"performance"}), ElementsAre("info CPU usage sample", "info Temperature probe",
                                                      "ok CPU load average", "ok Thermal state"));
  EXPECT_THAT(linesOf(diagnose({"storage"}).out),
              ElementsAre(StartsWith("info     Storage      Swap usage     total = 2048.00M  used = 512.00M"),
                          StartsWith("info     Storage      SMART tooling  smartctl detected"),
                          StartsWith("ok       Storage      Disk capacity  212.5 GB free")));
}

TEST_F(Diagnose, pgrep_thatCannotAnswer_meansThatNothingRuns) {
  const auto expectNothingRuns = [&] {
    EXPECT_THAT(headlines({"icloud"}),
                testing::IsSupersetOf({"warning bird daemon", "warning cloudd daemon", "warning fileproviderd"}));
  };
  mac_.setCommand(kPgrep, "echo 501; exit 1");
  expectNothingRuns();
  mac_.setCommand(kPgrep, "echo 501; kill -9 $$");
  expectNothingRuns();
  mac_.removeCommand(kPgrep);
  expectNothingRuns();
}

TEST_F(Diagnose, pgrep_whateverItPrints_isJudgedByItsStatus) {
  mac_.setCommand(kPgrep, "printf '\\377'; echo error >&2; head -c 10000000 /dev/zero");
  EXPECT_THAT(headlines({"icloud"}), testing::IsSupersetOf({"ok bird daemon", "ok cloudd daemon", "ok fileproviderd"}));
}

TEST_F(Diagnose, pgrep_thatHangs_isEndedAndNotStartedAgain) {
  mac_.setCommand(kPgrep, "echo start >> " + (mac_ / "starts") + "\nsleep 600");
  const auto start = std::chrono::steady_clock::now();
  const ChildResult result = diagnose();
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_GE(time, std::chrono::seconds(10));
  EXPECT_LT(time, std::chrono::seconds(20));
  EXPECT_EQ(readFile(mac_ / "starts"), "start\n");
  EXPECT_THAT(result.out, AllOf(HasSubstr("Not observed. iCloud upload activity may stall."),
                                HasSubstr("smartctl detected"), Not(HasSubstr("cloudd"))));
  EXPECT_EQ(result.err, "cirrovanectl: A tool took too long, so nothing is known of: cloudd daemon, fileproviderd\n");
}

TEST_F(Diagnose, signalWhileAToolHangs_endsBoth) {
  const std::string sign = mac_ / "sign";
  ASSERT_EQ(mkfifo(sign.c_str(), 0600), 0);
  mac_.setCommand(kRoute, "exec 3>" + sign + "\nsleep 600 & sleep 600");
  const FileDescriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  RunningProgram program({"--mac-root", mac_.path(), "diagnose", "network"}, nowhere.get(), nowhere.get());
  // Comes back when the tool has opened the other end.
  const FileDescriptor watched(open(sign.c_str(), O_RDONLY | O_CLOEXEC));
  program.signal(SIGINT);
  EXPECT_EQ(program.exitStatus(), std::nullopt);
  char letter = 0;
  EXPECT_EQ(read(watched.get(), &letter, 1), 0) << "comes back when the tool and its helper have ended";
}

TEST_F(Diagnose, onTheHostItself_givesFindingsOfEveryDomain) {
  const TemporaryFolder home(CIRROVANE_TEST_DIR);
  const ChildResult result = ctl(
      {"--mac-root", "/", "diagnose", "--json"},
      {.workingDirectory = "",
       .environment = {{"HOME", home.path()}, {"XDG_DATA_HOME", home / "data"}, {"XDG_CONFIG_HOME", home / "config"}}});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  std::set<std::string> domains;
  for (const json& finding : parsed(result.out)) {
    domains.insert(finding["domain"]);
  }
  EXPECT_THAT(domains, ElementsAre("Finder", "Network", "Performance", "Power", "Storage", "System", "iCloud"));
  EXPECT_THAT(result.out, HasSubstr("GB free of"));
}

}  // namespace
}  // namespace cirrovane::test
