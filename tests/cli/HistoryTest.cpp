#include "tests/cli/Program.h"

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

json safeSnapshot() {
  return {{"id", "6F9619FF-8B86-D011-B42D-00CF4FC964FF"},
          {"timestamp", "2026-11-15T18:21:10Z"},
          {"score", 100},
          {"status", "safe"},
          {"safeToClose", true},
          {"blockerCount", 0},
          {"pendingUploads", 0},
          {"localAvailabilityScore", 97}};
}

json unsafeSnapshot() {
  return {{"id", "0A0B0C0D-8B86-4011-B42D-00CF4FC964AB"},
          {"timestamp", "2026-11-14T08:05:59Z"},
          {"score", 40},
          {"status", "danger"},
          {"safeToClose", false},
          {"blockerCount", 7},
          {"pendingUploads", 3},
          {"localAvailabilityScore", 88},
          {"topBlockerReason", "uploadError"},
          {"topBlockerFilePath", "/Users/demo/a\x1b[2J\nb"},
          {"topBlockerFolderName", "Clients"}};
}

/// As written before the optional values were recorded.
json oldSnapshot() {
  return {{"id", "11111111-2222-4333-8444-555555555555"},
          {"timestamp", "2025-01-02T03:04:05Z"},
          {"score", 70},
          {"status", "warning"},
          {"safeToClose", false},
          {"blockerCount", 1},
          {"pendingUploads", 1}};
}

class History : public testing::Test {
 protected:
  ChildResult history(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "history"});
    return ctl(more, {.workingDirectory = "", .environment = {{"TZ", "UTC"}}});
  }
  std::string file() const { return mac_.storePath("history.json"); }
  void writeSnapshots() const {
    writeFile(file(), json::array({safeSnapshot(), unsafeSnapshot(), oldSnapshot()}).dump());
  }

  const MacTree mac_;
};

TEST_F(History, withoutAFile_isEmptyAndWritesNone) {
  const ChildResult result = history();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out, "No scan has been recorded yet.\n");
  EXPECT_EQ(history({"--json"}).out, "[]\n");
  EXPECT_THAT(namesIn(mac_.storeFolder()), IsEmpty());
}

TEST_F(History, text_hasALineForEachScanInTheOrderOfTheFile) {
  writeSnapshots();
  const ChildResult result = history();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out,
            "2026-11-15 18:21  safe      trust 100  local  97  0 pending, 0 blockers\n"
            "2026-11-14 08:05  not safe  trust  40  local  88  3 pending, 7 blockers\n"
            "                  Upload Error: /Users/demo/a\\x1b[2J\\nb\n"
            "2025-01-02 03:04  not safe  trust  70  local   -  1 pending, 1 blockers\n");
}

TEST_F(History, JSON_isWhatTheFileHolds) {
  writeSnapshots();
  const ChildResult result = history({"--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(parsed(result.out), parsed(readFile(file())));
  writeFile(file(), result.out);
  EXPECT_EQ(history({"--json"}).out, result.out);
}

TEST_F(History, JSON_ofAnOlderScan_inventsNothing) {
  writeFile(file(), json::array({oldSnapshot()}).dump());
  EXPECT_EQ(parsed(history({"--json"}).out), (json::array({oldSnapshot()})));
}

TEST_F(History, order_isNotChanged) {
  writeFile(file(), json::array({oldSnapshot(), safeSnapshot(), unsafeSnapshot()}).dump());
  EXPECT_EQ(parsed(history({"--json"}).out), (json::array({oldSnapshot(), safeSnapshot(), unsafeSnapshot()})));
}

TEST_F(History, limit_showsTheFirst) {
  writeSnapshots();
  const std::string content = readFile(file());
  EXPECT_EQ(history({"--limit", "0", "--json"}).out, "[]\n");
  EXPECT_EQ(history({"--limit", "0"}).exitStatus, 0);
  EXPECT_EQ(parsed(history({"--limit", "1", "--json"}).out), (json::array({safeSnapshot()})));
  EXPECT_EQ(parsed(history({"--limit=2", "--json"}).out), (json::array({safeSnapshot(), unsafeSnapshot()})));
  for (const char* limit : {"3", "4", "1000000", "9223372036854775807", "9223372036854775808"}) {
    EXPECT_EQ(parsed(history({"--limit", limit, "--json"}).out).size(), 3U) << limit;
  }
  EXPECT_EQ(readFile(file()), content);
}

TEST_F(History, limit_thatIsNoCount_givesStatus2AndSaysSo) {
  for (const char* limit : {"-1", "many", "", "1.5", "nan", "1e2", "1x"}) {
    const ChildResult result = history({std::string("--limit=") + limit});
    EXPECT_EQ(result.exitStatus, 2) << limit;
    EXPECT_THAT(result.out, IsEmpty()) << limit;
    EXPECT_THAT(result.err, AllOf(HasSubstr("--limit"), Not(HasSubstr("00000000")))) << limit;
  }
  EXPECT_EQ(history({"--limit"}).exitStatus, 2);
  EXPECT_EQ(history({"--limit", "-1"}).exitStatus, 2);
  EXPECT_EQ(history({"other"}).exitStatus, 2);
}

TEST_F(History, corruptFile_isEmptyAndLeftAlone) {
  json incomplete = safeSnapshot();
  incomplete.erase("pendingUploads");
  for (const std::string& content :
       {std::string("{}"), std::string("[{"), std::string(), json::array({incomplete}).dump()}) {
    writeFile(file(), content);
    const ChildResult result = history({"--json"});
    EXPECT_EQ(result.exitStatus, 0) << content;
    EXPECT_EQ(result.out, "[]\n") << content;
    EXPECT_THAT(result.err, IsEmpty()) << content;
    EXPECT_EQ(readFile(file()), content);
    EXPECT_THAT(namesIn(mac_.storeFolder()), ElementsAre("history.json"));
  }
}

}  // namespace
}  // namespace cirrovane::test
