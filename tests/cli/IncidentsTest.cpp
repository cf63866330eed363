#include "base/FileDescriptor.h"
#include "tests/cli/Program.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
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
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

const std::string kActiveError = "AAAAAAAA-8B86-4011-B42D-00CF4FC964FF";
const std::string kActiveWarning = "BBBBBBBB-8B86-4011-B42D-00CF4FC964FF";
const std::string kResolvedError = "CCCCCCCC-8B86-4011-B42D-00CF4FC964FF";
const std::string kResolvedWarning = "DDDDDDDD-8B86-4011-B42D-00CF4FC964FF";

json incident(const std::string& id, const std::string& severity, bool isResolved) {
  json record = {{"id", id},
                 {"fingerprint", "network::default route"},
                 {"domain", "Network"},
                 {"severity", severity},
                 {"title", "Default route"},
                 {"lastDetail", "There is none."},
                 {"firstSeen", "2026-11-14T08:05:59Z"},
                 {"lastSeen", "2026-11-15T18:21:10Z"},
                 {"occurrences", 3},
                 {"isResolved", isResolved}};
  if (isResolved) {
    record["resolvedAt"] = "2026-11-15T19:00:00Z";
  }
  return record;
}

/// In no order that a sort would give.
json incidentRecords() {
  return {incident(kResolvedWarning, "warning", true), incident(kActiveWarning, "warning", false),
          incident(kResolvedError, "error", true), incident(kActiveError, "error", false)};
}

std::vector<std::string> identifiersIn(const json& records) {
  std::vector<std::string> identifiers;
  for (const json& record : records) {
    identifiers.push_back(record["id"]);
  }
  return identifiers;
}

class Incidents : public testing::Test {
 protected:
  std::vector<std::string> arguments(std::vector<std::string> more) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "incidents"});
    return more;
  }
  ChildResult incidents(const std::vector<std::string>& more = {}) const {
    return ctl(arguments(more), {.workingDirectory = "", .environment = {{"TZ", "UTC"}}});
  }
  std::string file() const { return mac_.storePath("incidents.json"); }
  void writeRecords() const { writeFile(file(), incidentRecords().dump()); }

  const MacTree mac_;
};

TEST_F(Incidents, withoutAFile_areNoneAndWriteNone) {
  const ChildResult result = incidents();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out, "No incidents.\n");
  EXPECT_EQ(incidents({"--json"}).out, "[]\n");
  EXPECT_THAT(namesIn(mac_.storeFolder()), IsEmpty());
}

TEST_F(Incidents, JSON_isWhatTheFileHolds) {
  writeRecords();
  const std::string content = readFile(file());
  const ChildResult result = incidents({"--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(parsed(result.out), incidentRecords());
  EXPECT_EQ(readFile(file()), content);
}

TEST_F(Incidents, text_tellsEachInTheOrderOfTheFile) {
  writeFile(file(),
            json::array({incident(kResolvedError, "error", true), incident(kActiveWarning, "warning", false)}).dump());
  EXPECT_EQ(incidents().out,
            "resolved  Network: Default route\n          There is none.\n"
            "          seen 3 x, 2026-11-14 08:05 to 2026-11-15 18:21  " +
                kResolvedError +
                "\n"
                "warning   Network: Default route\n          There is none.\n"
                "          seen 3 x, 2026-11-14 08:05 to 2026-11-15 18:21  " +
                kActiveWarning + "\n");
}

TEST_F(Incidents, text_escapesWhatCouldDeceive) {
  json record = incident(kActiveError, "error", false);
  record["title"] = "a\x1b[2J\nSAFE";
  record["lastDetail"] = "b\xE2\x80\xAEx";
  writeFile(file(), json::array({record}).dump());
  EXPECT_THAT(incidents().out, AllOf(StartsWith("error     Network: a\\x1b[2J\\nSAFE\n          b\\u{202e}x\n"),
                                     Not(HasSubstr("\x1b")), Not(HasSubstr("\xE2\x80\xAE"))));
}

TEST_F(Incidents, scopeAndSeverity_showWhatPassesBoth) {
  writeRecords();
  struct Filter {
    std::string scope;
    std::string severity;
    std::vector<std::string> shown;
  };
  const std::vector<Filter> filters = {
      {"all", "all", {kResolvedWarning, kActiveWarning, kResolvedError, kActiveError}},
      {"all", "warning", {kResolvedWarning, kActiveWarning}},
      {"all", "error", {kResolvedError, kActiveError}},
      {"active", "all", {kActiveWarning, kActiveError}},
      {"active", "warning", {kActiveWarning}},
      {"active", "error", {kActiveError}},
      {"resolved", "all", {kResolvedWarning, kResolvedError}},
      {"resolved", "warning", {kResolvedWarning}},
      {"resolved", "error", {kResolvedError}},
  };
  for (const Filter& filter : filters) {
    const ChildResult result = incidents({"--scope", filter.scope, "--severity", filter.severity, "--json"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(identifiersIn(parsed(result.out)), filter.shown) << filter.scope << ", " << filter.severity;
  }
  EXPECT_EQ(identifiersIn(parsed(incidents({"--scope=active", "--json"}).out)), filters[3].shown);
  EXPECT_EQ(identifiersIn(parsed(incidents({"--severity=error", "--json"}).out)), filters[2].shown);
}

TEST_F(Incidents, filter_thatNothingPasses_saysSo) {
  writeFile(file(), json::array({incident(kActiveError, "error", false)}).dump());
  EXPECT_EQ(incidents({"--scope", "resolved"}).out, "No incidents.\n");
  EXPECT_EQ(incidents({"--scope", "resolved", "--json"}).out, "[]\n");
}

TEST_F(Incidents, wrongArguments_giveStatus2) {
  writeRecords();
  const std::string content = readFile(file());
  for (const std::vector<std::string>& more :
       std::vector<std::vector<std::string>>{{"--scope", "open"},
                                             {"--scope", "Active"},
                                             {"--scope", ""},
                                             {"--scope"},
                                             {"--severity", "info"},
                                             {"--severity", "ok"},
                                             {"resolve"},
                                             {"reopen"},
                                             {"resolve", kActiveError, kActiveWarning},
                                             {"remove", kActiveError}}) {
    const ChildResult result = incidents(more);
    EXPECT_EQ(result.exitStatus, 2) << more.front();
    EXPECT_THAT(result.out, IsEmpty()) << more.front();
    EXPECT_THAT(result.err, Not(IsEmpty())) << more.front();
  }
  EXPECT_EQ(readFile(file()), content);
}

TEST_F(Incidents, resolve_marksThatOneWithItsTimeAndPrintsAll) {
  std::string lower = kActiveWarning;
  std::ranges::transform(lower, lower.begin(), [](unsigned char letter) { return std::tolower(letter); });
  for (const std::string& id : {kActiveWarning, lower}) {
    writeRecords();
    const ChildResult result = incidents({"resolve", id, "--json"});
    EXPECT_EQ(result.exitStatus, 0) << id;
    EXPECT_THAT(result.err, IsEmpty());
    json found = parsed(result.out);
    EXPECT_EQ(result.out, readFile(file()));
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[1]["isResolved"], true);
    ASSERT_TRUE(found[1].contains("resolvedAt"));
    EXPECT_THAT(found[1]["resolvedAt"].get<std::string>(),
                MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z"));
    found[1]["isResolved"] = false;
    found[1].erase("resolvedAt");
    EXPECT_EQ(found, incidentRecords());
  }
}

TEST_F(Incidents, reopen_clearsTheTimeAndChangesNothingElse) {
  writeRecords();
  const ChildResult result = incidents({"reopen", kResolvedError, "--json"});
  EXPECT_EQ(result.exitStatus, 0);
  json expected = incidentRecords();
  expected[2]["isResolved"] = false;
  expected[2].erase("resolvedAt");
  EXPECT_EQ(parsed(result.out), expected);
  EXPECT_EQ(result.out, readFile(file()));
}

TEST_F(Incidents, reopen_ofAResolvedOne_undoesTheResolving) {
  writeRecords();
  incidents({"resolve", kActiveError});
  incidents({"reopen", kActiveError});
  EXPECT_EQ(parsed(readFile(file())), incidentRecords());
}

TEST_F(Incidents, unknownIdentifier_givesStatus3AndChangesNothing) {
  writeRecords();
  const std::string content = readFile(file());
  for (const std::string verb : {"resolve", "reopen"}) {
    for (const std::string id : {"00000000-0000-4000-8000-000000000000", "AAAAAAAA", "none"}) {
      const ChildResult result = incidents({verb, id, "--json"});
      EXPECT_EQ(result.exitStatus, 3) << id;
      EXPECT_THAT(result.out, IsEmpty()) << id;
      EXPECT_EQ(result.err, "cirrovanectl: There is no incident " + id + ".\n");
    }
  }
  EXPECT_EQ(incidents({"resolve", "x\x1b[2J"}).err, "cirrovanectl: There is no incident x\\x1b[2J.\n");
  EXPECT_EQ(readFile(file()), content);
  EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("incidents.json"));
}

TEST_F(Incidents, change_thatCannotBeWritten_isSaidAndLeavesTheFile) {
  writeRecords();
  const std::string content = readFile(file());
  for (const std::vector<std::string>& more :
       std::vector<std::vector<std::string>>{{"resolve", kActiveError}, {"reopen", kResolvedError}}) {
    const ChildResult result = ctlOnAFullDisk(arguments(more));
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err,
                AllOf(StartsWith("cirrovanectl: The incident was not changed: "), HasSubstr("incidents.json")));
    EXPECT_EQ(readFile(file()), content);
    EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("incidents.json"));
  }
}

TEST_F(Incidents, changes_byTwoProcessesAtOnce_leaveAWholeFile) {
  const FileDescriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
  for (int round = 0; round < 20; ++round) {
    writeRecords();
    RunningProgram one(arguments({"resolve", kActiveError}), nothing.get(), nothing.get());
    RunningProgram other(arguments({"reopen", kResolvedWarning}), nothing.get(), nothing.get());
    EXPECT_EQ(identifiersIn(parsed(readFile(file()))), identifiersIn(incidentRecords()));
    EXPECT_EQ(one.exitStatus(), 0);
    EXPECT_EQ(other.exitStatus(), 0);
    const json found = parsed(readFile(file()));
    ASSERT_EQ(identifiersIn(found), identifiersIn(incidentRecords()));
    EXPECT_TRUE(found[3]["isResolved"] == true || found[0]["isResolved"] == false) << found;
    EXPECT_EQ(found[1], incidentRecords()[1]);
    EXPECT_EQ(found[2], incidentRecords()[2]);
    EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("incidents.json"));
  }
}

}  // namespace
}  // namespace cirrovane::test
