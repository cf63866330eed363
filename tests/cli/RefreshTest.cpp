#include "tests/cli/HealthyMac.h"
#include "tests/cli/Scans.h"

#include <algorithm>
#include <filesystem>
#include <string>
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
using testing::StartsWith;

const std::string kPending = "isUploaded=false";

class Refresh : public testing::Test {
 protected:
  Refresh() { clean_ = mac_.addFile("clean", "isUploaded=true"); }

  ChildResult refresh(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), "refresh");
    return mac_.run(more);
  }
  /// Refreshes: the report.
  json report() const {
    const ChildResult result = refresh({"--json"});
    EXPECT_THAT(result.err, IsEmpty());
    json report = parsed(result.out);
    EXPECT_EQ(result.exitStatus, report["safeToClose"] == true ? 0 : 1);
    return report;
  }
  json history() const { return documentAt(historyFile()); }
  json incidents() const { return documentAt(mac_.storePath("incidents.json")); }
  /// The one incident of this title; null when there is none.
  json incident(const std::string& title) const {
    const json records = incidents();
    const auto hasTitle = [&](const json& record) { return record["title"] == title; };
    EXPECT_LE(std::ranges::count_if(records, hasTitle), 1);
    const auto found = std::ranges::find_if(records, hasTitle);
    return found == records.end() ? json() : *found;
  }
  std::string historyFile() const { return mac_.storePath("history.json"); }

  const HealthyMac mac_;
  std::string clean_;
};

TEST_F(Refresh, safeMac_givesStatus0AndRecordsASafeScan) {
  const json report = this->report();
  EXPECT_EQ(report["safeToClose"], true);
  json recorded = history();
  ASSERT_EQ(recorded.size(), 1U);
  recorded[0].erase("id");
  EXPECT_EQ(recorded[0], (json{{"timestamp", report["generatedAt"]},
                               {"score", 100},
                               {"status", "safe"},
                               {"safeToClose", true},
                               {"blockerCount", 0},
                               {"pendingUploads", 0},
                               {"localAvailabilityScore", report["localAvailabilityScore"]}}));
  EXPECT_EQ(incidents(), json::array());
}

TEST_F(Refresh, unsafeMac_givesStatus1AndRecordsItsTopBlocker) {
  const std::string path = mac_.addFile("late", kPending);
  const json report = this->report();
  EXPECT_EQ(report["safeToClose"], false);
  const json recorded = history();
  ASSERT_EQ(recorded.size(), 1U);
  EXPECT_EQ(recorded[0]["timestamp"], report["generatedAt"]);
  EXPECT_EQ(recorded[0]["safeToClose"], false);
  EXPECT_EQ(recorded[0]["score"], report["score"]);
  EXPECT_EQ(recorded[0]["status"], report["status"]);
  EXPECT_EQ(recorded[0]["blockerCount"], 1);
  EXPECT_EQ(recorded[0]["pendingUploads"], 1);
  EXPECT_EQ(recorded[0]["topBlockerReason"], "notUploaded");
  EXPECT_EQ(recorded[0]["topBlockerFilePath"], path);
  EXPECT_EQ(recorded[0]["topBlockerFolderName"], "iCloud Drive");
}

TEST_F(Refresh, text_isThatOfCheck) {
  const ChildResult safe = refresh();
  EXPECT_EQ(safe.exitStatus, 0);
  EXPECT_THAT(safe.err, IsEmpty());
  EXPECT_THAT(safe.out, StartsWith("SAFE TO CLOSE\n\n  Upload Trust        100 of 100   safe\n"));
  EXPECT_EQ(safe.out, mac_.run({"check"}).out);

  mac_.addFile("late", kPending);
  const ChildResult unsafe = refresh();
  EXPECT_EQ(unsafe.exitStatus, 1);
  EXPECT_THAT(unsafe.err, IsEmpty());
  EXPECT_THAT(unsafe.out, StartsWith("NOT SAFE TO CLOSE\n"));
  EXPECT_EQ(unsafe.out, mac_.run({"check"}).out);
}

TEST_F(Refresh, severalRuns_putTheNewestFirst) {
  EXPECT_EQ(report()["safeToClose"], true);
  setICloudAttribute(clean_, kPending);
  EXPECT_EQ(report()["safeToClose"], false);
  setICloudAttribute(clean_, "isUploaded=true");
  EXPECT_EQ(report()["safeToClose"], true);
  std::vector<bool> verdicts;
  for (const json& snapshot : history()) {
    verdicts.push_back(snapshot["safeToClose"]);
  }
  EXPECT_THAT(verdicts, ElementsAre(true, false, true));
  EXPECT_EQ(parsed(mac_.run({"history", "--json"}).out), history());
}

TEST_F(Refresh, historyOf199_growsTo200AndNoFurther) {
  json before = recordedScans(199);
  writeFile(historyFile(), before.dump());
  report();
  json after = history();
  ASSERT_EQ(after.size(), 200U);
  const json newest = after[0];
  after.erase(0);
  EXPECT_EQ(after, before);

  report();
  after = history();
  ASSERT_EQ(after.size(), 200U);
  EXPECT_EQ(after[1], newest);
  EXPECT_EQ(after[199], before[197]);
  report();
  EXPECT_EQ(history().size(), 200U);
}

TEST_F(Refresh, trouble_isCountedWhileItLastsResolvedWhenItGoesAndReopenedWhenItReturns) {
  const auto cutNetwork = [&] { mac_.setCommand(kRoute, "exit 1"); };
  const auto mendNetwork = [&] { mac_.setCommand(kRoute, HealthyMac::printing("gateway: 192.168.1.1\n")); };
  cutNetwork();
  const json first = report();
  const json made = incident("Default route");
  EXPECT_EQ(made["occurrences"], 1);
  EXPECT_EQ(made["isResolved"], false);
  EXPECT_EQ(made["firstSeen"], first["generatedAt"]);
  EXPECT_EQ(made["lastSeen"], first["generatedAt"]);
  EXPECT_FALSE(made.contains("resolvedAt"));

  report();
  const json third = report();
  json recurring = incident("Default route");
  EXPECT_EQ(recurring["occurrences"], 3);
  EXPECT_EQ(recurring["id"], made["id"]);
  EXPECT_EQ(recurring["firstSeen"], first["generatedAt"]);
  EXPECT_EQ(recurring["lastSeen"], third["generatedAt"]);

  mendNetwork();
  const json mended = report();
  json expected = recurring;
  expected["isResolved"] = true;
  expected["resolvedAt"] = mended["generatedAt"];
  EXPECT_EQ(incident("Default route"), expected);
  report();
  EXPECT_EQ(incident("Default route"), expected) << "a resolved incident is resolved once";

  cutNetwork();
  const json again = report();
  recurring["occurrences"] = 4;
  recurring["lastSeen"] = again["generatedAt"];
  EXPECT_EQ(incident("Default route"), recurring);
}

TEST_F(Refresh, incidentsOfFilesAndMachine_areBothKept) {
  mac_.addFile("late", kPending);
  mac_.setCommand(kRoute, "exit 1");
  report();
  EXPECT_EQ(incident("Pending uploads")["domain"], "iCloud");
  EXPECT_EQ(incident("Default route")["domain"], "Network");
  const std::string text = mac_.run({"incidents"}).out;
  EXPECT_THAT(text, AllOf(HasSubstr("iCloud: Pending uploads\n"), HasSubstr("Network: Default route\n")));
}

TEST_F(Refresh, nothingButTheStores_isWritten) {
  report();
  refresh();
  EXPECT_THAT(namesIn(mac_.storeFolder()),
              ElementsAre("coverage.json", "history.json", "incidents.json", "watchlist.json"));
  EXPECT_THAT(namesIn(mac_ / "Users/demo/Library"), ElementsAre("Application Support", "Mobile Documents"));
  EXPECT_THAT(namesIn(mac_ / "Users/demo"), ElementsAre("Library"));
}

TEST_F(Refresh, userDefaults_areLeftAsTheyAre) {
  const std::string defaults = mac_ / "Users/demo/Library/Preferences/com.quillmere.Cirrovane.json";
  writeFile(defaults, R"({"lastKnownSafeToClose":false})");
  report();
  mac_.run({"export", mac_ / "packet.json"});
  EXPECT_EQ(readFile(defaults), R"({"lastKnownSafeToClose":false})");
}

TEST_F(Refresh, diskThatIsFull_givesTheVerdictSaysSoAndGivesStatus3) {
  report();
  const std::string recorded = readFile(historyFile());
  for (const bool isSafe : {true, false}) {
    setICloudAttribute(clean_, isSafe ? "isUploaded=true" : kPending);
    const ChildResult text = ctlOnAFullDisk({"--mac-root", mac_.path(), "refresh"});
    EXPECT_EQ(text.exitStatus, 3);
    EXPECT_THAT(text.out, StartsWith(isSafe ? "SAFE TO CLOSE\n" : "NOT SAFE TO CLOSE\n"));
    EXPECT_THAT(text.err, AllOf(StartsWith("cirrovanectl: The scan was not recorded: "), HasSubstr("history.json"),
                                HasSubstr("File too large"), EndsWith(".\n")));
    const ChildResult document = ctlOnAFullDisk({"--mac-root", mac_.path(), "refresh", "--json"});
    EXPECT_EQ(document.exitStatus, 3);
    EXPECT_EQ(parsed(document.out)["safeToClose"], isSafe);
    EXPECT_THAT(document.err, HasSubstr("The scan was not recorded: "));
  }
  EXPECT_EQ(readFile(historyFile()), recorded);
  EXPECT_THAT(namesIn(mac_.storeFolder()),
              ElementsAre("coverage.json", "history.json", "incidents.json", "watchlist.json"));
}

TEST_F(Refresh, storeFolderThatCannotBe_givesTheVerdictAndStatus3) {
  // A file where the folder should be stops every user, root too.
  writeFile(mac_.storeFolder(), "in the way");
  const ChildResult result = refresh();
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, StartsWith("SAFE TO CLOSE\n"));
  EXPECT_THAT(result.err, HasSubstr("The scan was not recorded: "));
  EXPECT_EQ(readFile(mac_.storeFolder()), "in the way");
}

TEST_F(Refresh, incidentsAlone_thatCannotBeSaved_giveStatus3) {
  report();
  // A folder that is not empty cannot make room for a file, not even under another name when that is taken too.
  std::filesystem::remove(mac_.storePath("incidents.json"));
  makeFolder(mac_.storePath("incidents.json/full"));
  makeFolder(mac_.storePath("incidents.json.unreadable/full"));
  const ChildResult result = refresh();
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, StartsWith("SAFE TO CLOSE\n"));
  EXPECT_THAT(result.err, AllOf(HasSubstr("The scan was not recorded: "), HasSubstr("incidents.json")));
  EXPECT_EQ(history().size(), 2U);
}

TEST_F(Refresh, command_isAskedForTheFindingsAndForTheSample) {
  mac_.setCommand(kTop, "echo asked >>\"$0.log\"\n" + HealthyMac::printing("CPU usage: 1% user, 1% sys, 98% idle\n"));
  report();
  EXPECT_EQ(readFile(mac_.pathOf(std::string(kTop) + ".log")), "asked\nasked\n");
}

TEST_F(Refresh, emptyWatchlist_isACycleLikeAnyOther) {
  writeFile(mac_.storePath("watchlist.json"), "[]");
  std::filesystem::remove_all(mac_.iCloudDrive());
  const json report = this->report();
  EXPECT_EQ(report["folderHealth"], json::array());
  EXPECT_EQ(history().size(), 1U);
}

TEST_F(Refresh, arguments_giveStatus2AndRecordNothing) {
  for (const char* argument : {"folder", "--limit", "--wait"}) {
    const ChildResult result = refresh({argument});
    EXPECT_EQ(result.exitStatus, 2) << argument;
    EXPECT_THAT(result.out, IsEmpty()) << argument;
  }
  EXPECT_THAT(namesIn(mac_.storeFolder()), IsEmpty());
}

/// The whole way on a demo Mac.
class RefreshOfADemoMac : public testing::Test {
 protected:
  RefreshOfADemoMac() { demo({"create", root_}); }

  static void demo(const std::vector<std::string>& arguments) {
    const ChildResult result = runProgram(CIRROVANE_BIN_DIR "/cirrovane-demo-mac", arguments);
    EXPECT_EQ(result.exitStatus, 0) << result.err;
  }
  ChildResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--mac-root", root_});
    return ctl(arguments);
  }
  std::vector<std::string> titles(const std::string& scope) const {
    std::vector<std::string> titles;
    for (const json& incident : parsed(run({"incidents", "--scope", scope, "--json"}).out)) {
      titles.push_back(incident["title"]);
    }
    return titles;
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const std::string root_ = folder_ / "Mac";
};

TEST_F(RefreshOfADemoMac, settledAndUnsettled_turnsTheVerdictAndItsIncidents) {
  using testing::Contains;
  using testing::Not;
  EXPECT_EQ(run({"refresh"}).exitStatus, 1);
  EXPECT_THAT(titles("active"), AllOf(Contains("Pending uploads"), Contains("Watchlist coverage gaps")));
  EXPECT_THAT(titles("resolved"), IsEmpty());

  demo({"settle", root_});
  EXPECT_EQ(run({"refresh"}).exitStatus, 0);
  EXPECT_THAT(titles("active"), AllOf(Not(Contains("Pending uploads")), Not(Contains("Watchlist coverage gaps"))));
  EXPECT_THAT(titles("resolved"), AllOf(Contains("Pending uploads"), Contains("Watchlist coverage gaps")));

  demo({"unsettle", root_});
  demo({"network", root_, "off"});
  EXPECT_EQ(run({"refresh"}).exitStatus, 1);
  EXPECT_THAT(titles("active"), AllOf(Contains("Pending uploads"), Contains("Default route")));
  EXPECT_THAT(titles("resolved"), IsEmpty());
  const json explanation = parsed(run({"explain", "--json"}).out);
  EXPECT_EQ(explanation["recentStabilityText"], "33% safe in last 3 scans");
  EXPECT_EQ(explanation["lastSafeSnapshot"]["safeToClose"], true);
  EXPECT_EQ(explanation["lastFailedSnapshot"], parsed(run({"history", "--json"}).out)[0]);
}

/// Every command, as it is called most plainly.
class EveryCommand : public testing::TestWithParam<std::vector<std::string>> {};

INSTANTIATE_TEST_SUITE_P(All, EveryCommand,
                         testing::Values(std::vector<std::string>{"check"}, std::vector<std::string>{"refresh"},
                                         std::vector<std::string>{"explain"}, std::vector<std::string>{"watchlist"},
                                         std::vector<std::string>{"history"}, std::vector<std::string>{"incidents"},
                                         std::vector<std::string>{"diagnose"}, std::vector<std::string>{"status"},
                                         std::vector<std::string>{"export", "-"}, std::vector<std::string>{"version"}),
                         [](const auto& tested) { return tested.param.front(); });

TEST_P(EveryCommand, anywhere_writesNoUserDefaults) {
  const HealthyMac mac;
  mac.addFile("late", kPending);
  for (int repetition = 0; repetition < 2; ++repetition) {
    EXPECT_NE(mac.run(GetParam()).exitStatus, 3);
  }
  EXPECT_FALSE(std::filesystem::exists(mac / "Users/demo/Library/Preferences"));

  const TemporaryFolder home(CIRROVANE_TEST_DIR);
  ctl(GetParam(),
      {.workingDirectory = "",
       .environment = {{"HOME", home.path()}, {"XDG_CONFIG_HOME", home / "config"}, {"XDG_DATA_HOME", home / "data"}}});
  EXPECT_FALSE(std::filesystem::exists(home / "config"));
}

}  // namespace
}  // namespace cirrovane::test
