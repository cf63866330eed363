#include "base/JSONReader.h"
#include "stores/ProofPacket.h"
#include "tests/core/Builders.h"
#include "tests/stores/StoreFixture.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

std::vector<ScanSnapshot> makeHistory(std::size_t count) {
  std::vector<ScanSnapshot> snapshots(count);
  for (std::size_t index = 0; index < count; ++index) {
    snapshots[index].id = UUIDGenerator()();
    snapshots[index].timestamp = at(9);
    snapshots[index].score = static_cast<std::int64_t>(index);
  }
  return snapshots;
}

/// A packet with something in every list, and with and without each optional value.
ProofPacket wholePacket() {
  ProofPacket packet;
  packet.exportedAt = at(18, 25);
  packet.report = Shared(makeReport());
  packet.history = makeHistory(2);
  packet.history[0].localAvailabilityScore = 88;
  packet.history[0].topBlockerReason = BlockerReason::uploadError;
  packet.history[0].topBlockerFilePath = "/x/top";
  packet.history[0].topBlockerFolderName = "Work";
  packet.diagnostics = {
      {idOf(3), DiagnosticDomain::network, DiagnosticSeverity::warning, "Default route", "None.", at(18, 22)}};
  packet.incidents.resize(2);
  packet.incidents[0].firstSeen = at(8);
  packet.incidents[0].lastSeen = at(9);
  packet.incidents[0].occurrences = 3;
  packet.incidents[1].isResolved = true;
  packet.incidents[1].resolvedAt = at(10);
  packet.systemStatus.capturedAt = at(18, 23);
  packet.systemStatus.load1m = 1.25;
  return packet;
}

std::string textOf(const ProofPacket& packet) {
  std::string text;
  EXPECT_TRUE(writeProofPacket(packet, [&](std::string_view piece) {
    text += piece;
    return true;
  }));
  return text;
}

nlohmann::ordered_json jsonOf(const ProofPacket& packet) {
  return nlohmann::ordered_json::parse(textOf(packet));
}

std::vector<std::string> keysOf(const nlohmann::ordered_json& object) {
  std::vector<std::string> keys;
  for (const auto& entry : object.items()) {
    keys.push_back(entry.key());
  }
  return keys;
}

void expectSortedAndWithoutNull(const nlohmann::ordered_json& json, const std::string& path) {
  EXPECT_FALSE(json.is_null()) << path;
  if (json.is_object()) {
    EXPECT_TRUE(std::ranges::is_sorted(keysOf(json))) << path;
  }
  if (json.is_structured()) {
    for (const auto& entry : json.items()) {
      expectSortedAndWithoutNull(entry.value(), path + "/" + entry.key());
    }
  }
}

TEST(ProofPacket, writtenForm_hasItsSixKeysSorted) {
  EXPECT_THAT(keysOf(jsonOf(wholePacket())),
              ElementsAre("diagnostics", "exportedAt", "history", "incidents", "report", "systemStatus"));
}

TEST(ProofPacket, keys_areSortedAtEveryLevelAndNoneIsNull) {
  expectSortedAndWithoutNull(jsonOf(wholePacket()), "");
  expectSortedAndWithoutNull(jsonOf(ProofPacket()), "");
}

TEST(ProofPacket, report_isNestedAsItStands) {
  const auto report = jsonOf(wholePacket())["report"];
  EXPECT_EQ(report, nlohmann::ordered_json::parse(encodeJSON(makeReport())));
  EXPECT_EQ(report["blockers"][1]["lastModified"], "2026-11-15T09:00:00Z");
  EXPECT_EQ(report["folderHealth"][0]["folder"]["path"], "/Users/test/Desktop/");
}

TEST(ProofPacket, dates_areISO8601Everywhere) {
  const auto json = jsonOf(wholePacket());
  EXPECT_EQ(json["exportedAt"], "2026-11-15T18:25:00Z");
  EXPECT_EQ(json["report"]["generatedAt"], "2026-11-15T18:21:00Z");
  EXPECT_EQ(json["history"][0]["timestamp"], "2026-11-15T09:00:00Z");
  EXPECT_EQ(json["diagnostics"][0]["observedAt"], "2026-11-15T18:22:00Z");
  EXPECT_EQ(json["incidents"][0]["firstSeen"], "2026-11-15T08:00:00Z");
  EXPECT_EQ(json["incidents"][0]["lastSeen"], "2026-11-15T09:00:00Z");
  EXPECT_EQ(json["incidents"][1]["resolvedAt"], "2026-11-15T10:00:00Z");
  EXPECT_EQ(json["systemStatus"]["capturedAt"], "2026-11-15T18:23:00Z");
}

TEST(ProofPacket, absentValues_haveNoKey) {
  const auto json = jsonOf(wholePacket());
  EXPECT_TRUE(json["history"][0].contains("topBlockerReason"));
  for (const char* key : {"localAvailabilityScore", "topBlockerReason", "topBlockerFilePath", "topBlockerFolderName"}) {
    EXPECT_FALSE(json["history"][1].contains(key)) << key;
  }
  EXPECT_FALSE(json["incidents"][0].contains("resolvedAt"));
  EXPECT_FALSE(json["report"]["blockers"][0].contains("lastModified"));
  EXPECT_TRUE(json["systemStatus"].contains("load1m"));
  EXPECT_FALSE(json["systemStatus"].contains("load5m"));
}

TEST(ProofPacket, noIncidentsAndNoFindings_areEmptyLists) {
  const std::string text = textOf(ProofPacket());
  EXPECT_THAT(text, HasSubstr("\n  \"diagnostics\": [],\n"));
  EXPECT_THAT(text, HasSubstr("\n  \"history\": [],\n"));
  EXPECT_THAT(text, HasSubstr("\n  \"incidents\": [],\n"));
}

TEST(ProofPacket, writtenAndRead_isEqual) {
  for (const ProofPacket& packet : {wholePacket(), ProofPacket()}) {
    EXPECT_EQ(decodeJSON<ProofPacket>(textOf(packet)), packet);
  }
}

TEST(ProofPacket, withoutAnyOfItsKeys_failsToDecode) {
  for (const std::string& key : keysOf(jsonOf(wholePacket()))) {
    auto json = jsonOf(wholePacket());
    json.erase(key);
    EXPECT_EQ(decodeJSON<ProofPacket>(json.dump()), std::nullopt) << key;
  }
}

TEST(ProofPacket, withAReportThatIsNone_failsToDecode) {
  auto json = jsonOf(wholePacket());
  json["report"]["blockers"][0]["reason"] = "bad mood";
  EXPECT_EQ(decodeJSON<ProofPacket>(json.dump()), std::nullopt);
}

TEST(ProofPacket, reportsOfTheSameContent_makeEqualPacketsOfOneHash) {
  ProofPacket other = wholePacket();
  other.history = wholePacket().history;
  const ProofPacket copy = other;
  other.report = Shared(makeReport());
  EXPECT_EQ(other, copy);
  EXPECT_EQ(std::hash<ProofPacket>()(other), std::hash<ProofPacket>()(copy));
  other.report = Shared(SyncHealthReport());
  EXPECT_NE(other, copy);
  EXPECT_NE(std::hash<ProofPacket>()(other), std::hash<ProofPacket>()(copy));
}

TEST(ProofPacket, history_isTheFiftyNewestAtMost) {
  for (const std::size_t count : {0U, 1U, 49U, 50U, 51U, 200U}) {
    const std::vector<ScanSnapshot> snapshots = makeHistory(count);
    const std::vector<ScanSnapshot> kept = packetHistory(snapshots);
    ASSERT_THAT(kept, SizeIs(std::min<std::size_t>(count, 50)));
    EXPECT_TRUE(std::equal(kept.begin(), kept.end(), snapshots.begin()));
  }
}

TEST(ProofPacket, sinkThatRefuses_isTold) {
  EXPECT_FALSE(writeProofPacket(wholePacket(), [](std::string_view) { return false; }));
  // Also when it refuses no more than the end of the last line.
  EXPECT_FALSE(writeProofPacket(wholePacket(), [](std::string_view piece) { return piece != "\n"; }));
}

class SavedProofPacket : public StoreTest {
 protected:
  std::string path_ = folder_ / "proof.json";
};

TEST_F(SavedProofPacket, file_isThePacketWithALineEnd) {
  const ProofPacket packet = wholePacket();
  EXPECT_EQ(saveProofPacket(packet, storage_, path_), std::nullopt);
  EXPECT_EQ(readFile(path_), encodeJSON(packet) + "\n");
}

TEST_F(SavedProofPacket, fileThatIsThere_isReplacedWhole) {
  writeFile(path_, std::string(1'000'000, 'x'));
  const ProofPacket packet = wholePacket();
  EXPECT_EQ(saveProofPacket(packet, storage_, path_), std::nullopt);
  EXPECT_EQ(decodeJSON<ProofPacket>(readFile(path_)), packet);
}

TEST_F(SavedProofPacket, file_isReadableAsTheUsersFilesUsuallyAre) {
  const mode_t before = umask(022);
  EXPECT_EQ(saveProofPacket(wholePacket(), storage_, path_), std::nullopt);
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0644U);
}

TEST_F(SavedProofPacket, placeThatDoesNotExist_isAFailureThatLeavesNothing) {
  const auto failure = saveProofPacket(wholePacket(), storage_, folder_ / "missing/proof.json");
  EXPECT_NE(failure.value_or(Failure()).message, "");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
}

TEST_F(SavedProofPacket, folderInThePlaceOfTheFile_isAFailureThatLeavesNothingElse) {
  makeFolder(path_);
  EXPECT_TRUE(saveProofPacket(wholePacket(), storage_, path_));
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
    names.push_back(entry.path().filename());
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre("machine.json", "proof.json"));
}

}  // namespace
}  // namespace cirrovane::test
