#include "tests/cli/HealthyMac.h"
#include "tests/cli/Scans.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kSafeCriteria =
    "Criteria\n"
    "  pass  No pending uploads          No pending uploads detected.\n"
    "  pass  No unresolved conflicts     No unresolved conflict states detected.\n"
    "  pass  No upload/download errors   No iCloud transfer errors detected.\n"
    "  pass  No critical blockers        No critical blocker category is active.\n"
    "  pass  Watchlist coverage intact   All watched folders are reachable and within coverage.\n";

constexpr const char* kCompleteCoverage =
    "\nCoverage\n"
    "  Complete: 0 hidden items, 0 packages and 0 items in them looked at.\n";

class Explain : public testing::Test {
 protected:
  Explain() { mac_.addFile("clean", "isUploaded=true"); }

  ChildResult explain(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"explain"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return mac_.run(arguments, {.workingDirectory = "", .environment = {{"TZ", "UTC"}}});
  }
  json explanation() const {
    const ChildResult result = explain({"--json"});
    EXPECT_THAT(result.err, IsEmpty());
    json explanation = parsed(result.out);
    EXPECT_EQ(result.exitStatus, explanation["safeToClose"] == true ? 0 : 1);
    return explanation;
  }
  void writeHistory(const json& snapshots) const { writeFile(mac_.storePath("history.json"), snapshots.dump()); }
  void writeIncidents(const std::vector<std::pair<int, bool>>& occurrencesAndResolved) const {
    json records = json::array();
    for (const auto& [occurrences, isResolved] : occurrencesAndResolved) {
      records.push_back({{"id", fmt::format("{:08X}-8B86-4011-B42D-00CF4FC964FF", records.size())},
                         {"fingerprint", fmt::format("network::{}", records.size())},
                         {"domain", "Network"},
                         {"severity", "warning"},
                         {"title", "Default route"},
                         {"lastDetail", "There is none."},
                         {"firstSeen", "2026-11-14T08:05:59Z"},
                         {"lastSeen", "2026-11-15T18:21:10Z"},
                         {"occurrences", occurrences},
                         {"isResolved", isResolved}});
    }
    writeFile(mac_.storePath("incidents.json"), records.dump());
  }
  /// What the program keeps, by name.
  std::map<std::string, std::string> kept() const {
    std::map<std::string, std::string> content;
    for (const std::string& name : namesIn(mac_.storeFolder())) {
      content[name] = readFile(mac_.storePath(name));
    }
    return content;
  }

  const HealthyMac mac_;
};

TEST_F(Explain, safeMacWithoutAPast_saysSoInText) {
  const ChildResult result = explain();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out, std::string("SAFE TO CLOSE\n\n") + kSafeCriteria + kCompleteCoverage +
                            "\nHistory\n"
                            "  Not enough scans yet.\n"
                            "\nIncidents\n"
                            "  0 active, 0 of them recurring; 0 resolved\n");
}

TEST_F(Explain, safeMacWithoutAPast_leavesOutOfJSONWhatThereIsNot) {
  json document = explanation();
  EXPECT_THAT(keysOf(document),
              ElementsAre("activeIncidentCount", "coverageGapCount", "criteria", "recentStabilityText",
                          "recurringIncidentCount", "resolvedIncidentCount", "safeToClose"));
  ASSERT_EQ(document["criteria"].size(), 5U);
  for (const json& criterion : document["criteria"]) {
    EXPECT_THAT(keysOf(criterion), ElementsAre("detail", "isPassing", "title"));
    EXPECT_EQ(criterion["isPassing"], true);
  }
  document.erase("criteria");
  EXPECT_EQ(document, (json{{"activeIncidentCount", 0},
                            {"coverageGapCount", 0},
                            {"recentStabilityText", "Not enough scans yet."},
                            {"recurringIncidentCount", 0},
                            {"resolvedIncidentCount", 0},
                            {"safeToClose", true}}));
}

TEST_F(Explain, unsafeMac_namesTheTopBlockerAndEachFailedCriterion) {
  const std::string conflicting = mac_.addFile("both", "hasUnresolvedConflicts=true");
  mac_.addFile("late", "isUploaded=false");
  mac_.addFile("failed", "uploadingError=No space left.");
  const std::string outside = mac_ / "Users/demo/Desktop";
  makeFolder(outside);
  EXPECT_EQ(mac_.run({"watchlist", "add", outside}).exitStatus, 0);
  const ChildResult result = explain();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out,
            "NOT SAFE TO CLOSE\n"
            "\nTop blocker\n"
            "  Conflict Detected      " +
                conflicting +
                "\n"
                "                         Conflict state reported for both.\n"
                "\nCriteria\n"
                "  fail  No pending uploads          1 uploads are still pending.\n"
                "  fail  No unresolved conflicts     1 conflict states remain unresolved.\n"
                "  fail  No upload/download errors   1 transfer errors were detected.\n"
                "  fail  No critical blockers        Critical blockers exist in the current watchlist.\n"
                "  fail  Watchlist coverage intact   1 watchlist entries are outside iCloud or missing.\n"
                "\nCoverage\n"
                "  Not vouched for: 2 State Unknown, 1 Not Looked At. See cirrovanectl coverage.\n"
                "\nHistory\n"
                "  Not enough scans yet.\n"
                "\nIncidents\n"
                "  0 active, 0 of them recurring; 0 resolved\n");
  const json document = explanation();
  EXPECT_EQ(document["coverageGapCount"], 1);
  EXPECT_EQ(document["topBlocker"]["reason"], "unresolvedConflict");
  EXPECT_EQ(document["topBlocker"]["filePath"], conflicting);
}

TEST_F(Explain, topBlocker_isTheFirstOfTheReport) {
  mac_.addFile("a", "isUploaded=false");
  mac_.addFile("b", "uploadingError=No space left.");
  json blocker = parsed(mac_.run({"check", "--json"}).out)["blockers"][0];
  json explained = explanation()["topBlocker"];
  // New for each scan.
  blocker.erase("id");
  explained.erase("id");
  EXPECT_EQ(explained, blocker);
}

TEST_F(Explain, past_isToldByItsLatestSafeAndFailedScan) {
  writeHistory({recordedScan(1, true), recordedScan(2, true), recordedScan(3, false), recordedScan(4, false)});
  EXPECT_EQ(explain().out, std::string("SAFE TO CLOSE\n\n") + kSafeCriteria + kCompleteCoverage +
                               "\nHistory\n"
                               "  50% safe in last 4 scans\n"
                               "  Last safe scan    2026-11-15 18:21\n"
                               "  Last failed scan  2026-11-15 18:21  Upload Error\n"
                               "\nIncidents\n"
                               "  0 active, 0 of them recurring; 0 resolved\n");
  const json document = explanation();
  EXPECT_EQ(document["lastSafeSnapshot"], recordedScan(1, true));
  EXPECT_EQ(document["lastFailedSnapshot"], recordedScan(3, false));
}

TEST_F(Explain, pastOfOneKind_leavesTheOtherOut) {
  writeHistory(json::array({recordedScan(1, true)}));
  EXPECT_FALSE(explanation().contains("lastFailedSnapshot"));
  EXPECT_TRUE(explanation().contains("lastSafeSnapshot"));
  EXPECT_THAT(explain().out, AllOf(HasSubstr("Last safe scan"), Not(HasSubstr("Last failed scan"))));
  writeHistory(json::array({recordedScan(1, false)}));
  EXPECT_FALSE(explanation().contains("lastSafeSnapshot"));
  EXPECT_TRUE(explanation().contains("lastFailedSnapshot"));
  EXPECT_THAT(explain().out, AllOf(HasSubstr("Last failed scan"), Not(HasSubstr("Last safe scan"))));
}

TEST_F(Explain, stability_isOfTheTenNewest) {
  json snapshots = json::array();
  for (std::size_t number = 0; number < 15; ++number) {
    snapshots.push_back(recordedScan(number, number < 3));
  }
  writeHistory(snapshots);
  EXPECT_EQ(explanation()["recentStabilityText"], "30% safe in last 10 scans");
}

TEST_F(Explain, incidents_areCountedByTheirState) {
  writeIncidents({{1, false}, {2, false}, {7, false}, {5, true}});
  EXPECT_THAT(explain().out, HasSubstr("\nIncidents\n  3 active, 2 of them recurring; 1 resolved\n"));
  const json document = explanation();
  EXPECT_EQ(document["activeIncidentCount"], 3);
  EXPECT_EQ(document["recurringIncidentCount"], 2);
  EXPECT_EQ(document["resolvedIncidentCount"], 1);
}

TEST_F(Explain, verdict_isThatOfThisScanAndNotOfThePast) {
  writeHistory(json::array({recordedScan(1, false)}));
  writeIncidents({{2, false}});
  EXPECT_EQ(explanation()["safeToClose"], true);
}

TEST_F(Explain, names_areEscapedInText) {
  mac_.addFile("a\x1b[2J\n\xE2\x80\xAE", "isUploaded=false");
  EXPECT_THAT(explain().out,
              AllOf(HasSubstr("/a\\x1b[2J\\n\\u{202e}\n"), Not(HasSubstr("\x1b")), Not(HasSubstr("\xE2\x80\xAE"))));
}

TEST_F(Explain, nothing_isRecorded) {
  EXPECT_EQ(mac_.run({"watchlist"}).exitStatus, 0);
  writeHistory(json::array({recordedScan(1, false)}));
  writeIncidents({{2, false}});
  const auto before = kept();
  mac_.setCommand(kRoute, "exit 1");
  for (const char* command : {"explain", "check"}) {
    mac_.run({command});
    mac_.run({command, "--json"});
    EXPECT_EQ(kept(), before) << command;
  }
}

TEST_F(Explain, nothing_isAskedOfTheMacsCommands) {
  for (const auto& [command, answer] : kAnswers) {
    mac_.setCommand(command, "touch '" + (mac_ / "asked") + "'");
  }
  explain();
  EXPECT_EQ(namesIn(mac_.path()), namesIn(HealthyMac().path()));
}

TEST_F(Explain, argument_givesStatus2) {
  EXPECT_EQ(explain({"folder"}).exitStatus, 2);
}

}  // namespace
}  // namespace cirrovane::test
