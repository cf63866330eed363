#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "tests/core/Builders.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// What holds for every record alike: its JSON form in both directions, equality and hash.

namespace cirrovane::test {
namespace {

using nlohmann::json;

/// What the tests know of a record: a filled one, its keys, and one change of each field.
template <class Record>
struct Sample;

template <>
struct Sample<WatchFolder> {
  static WatchFolder make() { return makeFolder("Work", "/Users/a/Work/", 3); }
  static std::set<std::string> keys() { return {"id", "name", "path"}; }
  static std::vector<std::function<void(WatchFolder&)>> changes() {
    return {[](WatchFolder& folder) { folder.id = idOf(4); }, [](WatchFolder& folder) { folder.name = "work"; },
            [](WatchFolder& folder) { folder.path = "/Users/a/Work"; }};
  }
};

template <>
struct Sample<SyncBlocker> {
  static SyncBlocker make() { return makeBlocker(BlockerReason::outsideICloud, "/a", at(9)); }
  static std::set<std::string> keys() { return {"id", "filePath", "folderName", "reason", "details", "lastModified"}; }
  static std::vector<std::function<void(SyncBlocker&)>> changes() {
    return {
        [](SyncBlocker& blocker) { blocker.id = idOf(4); },
        [](SyncBlocker& blocker) { blocker.filePath = "/b"; },
        [](SyncBlocker& blocker) { blocker.folderName = "Other"; },
        [](SyncBlocker& blocker) { blocker.reason = BlockerReason::notUploaded; },
        [](SyncBlocker& blocker) { blocker.details.clear(); },
        [](SyncBlocker& blocker) { blocker.lastModified = at(10); },
        [](SyncBlocker& blocker) { blocker.lastModified.reset(); },
    };
  }
};

template <>
struct Sample<FolderHealth> {
  static FolderHealth make() { return makeReport().folderHealth.at(0); }
  static std::set<std::string> keys() {
    return {"id", "folder", "scannedFileCount", "blockerCount", "status", "score"};
  }
  static std::vector<std::function<void(FolderHealth&)>> changes() {
    return {
        [](FolderHealth& result) { result.id = idOf(4); },
        [](FolderHealth& result) { result.folder.name = "Other"; },
        [](FolderHealth& result) { ++result.scannedFileCount; },
        [](FolderHealth& result) { ++result.blockerCount; },
        [](FolderHealth& result) { result.status = HealthState::safe; },
        [](FolderHealth& result) { ++result.score; },
    };
  }
};

template <>
struct Sample<ScanMetrics> {
  static ScanMetrics make() { return makeReport().metrics; }
  static std::set<std::string> keys() {
    return {"totalFiles", "scannedFolders", "pendingUploads", "unresolvedConflicts", "errors", "notDownloaded"};
  }
  static std::vector<std::function<void(ScanMetrics&)>> changes() {
    return {
        [](ScanMetrics& metrics) { ++metrics.totalFiles; },
        [](ScanMetrics& metrics) { ++metrics.scannedFolders; },
        [](ScanMetrics& metrics) { ++metrics.pendingUploads; },
        [](ScanMetrics& metrics) { ++metrics.unresolvedConflicts; },
        [](ScanMetrics& metrics) { ++metrics.errors; },
        [](ScanMetrics& metrics) { ++metrics.notDownloaded; },
    };
  }
};

template <>
struct Sample<RecommendedAction> {
  static RecommendedAction make() { return makeReport().actions.at(0); }
  static std::set<std::string> keys() { return {"id", "rank", "title", "detail"}; }
  static std::vector<std::function<void(RecommendedAction&)>> changes() {
    return {
        [](RecommendedAction& action) { action.id = idOf(4); },
        [](RecommendedAction& action) { ++action.rank; },
        [](RecommendedAction& action) { action.title += "."; },
        [](RecommendedAction& action) { action.detail += "."; },
    };
  }
};

template <>
struct Sample<SyncHealthReport> {
  static SyncHealthReport make() { return makeReport(); }
  static std::set<std::string> keys() {
    return {"status",      "score",    "localAvailabilityScore", "safeToClose",
            "generatedAt", "blockers", "folderHealth",           "metrics",
            "actions",     "summary"};
  }
  static std::vector<std::function<void(SyncHealthReport&)>> changes() {
    return {
        [](SyncHealthReport& report) { report.status = HealthState::safe; },
        [](SyncHealthReport& report) { ++report.score; },
        [](SyncHealthReport& report) { ++report.localAvailabilityScore; },
        [](SyncHealthReport& report) { report.safeToClose = false; },
        [](SyncHealthReport& report) { report.generatedAt += std::chrono::microseconds(1); },
        [](SyncHealthReport& report) { report.blockers.pop_back(); },
        [](SyncHealthReport& report) { std::swap(report.blockers[0], report.blockers[1]); },
        [](SyncHealthReport& report) { report.blockers[1].lastModified.reset(); },
        [](SyncHealthReport& report) { report.folderHealth.clear(); },
        [](SyncHealthReport& report) { ++report.metrics.errors; },
        [](SyncHealthReport& report) { report.actions[0].title.clear(); },
        [](SyncHealthReport& report) { report.summary.clear(); },
    };
  }
};

bool isOptionalKey(const std::string& key) {
  return key == "lastModified";
}

/// Whether a text of the key must have a certain form, so that not every text will do.
bool isFormalKey(const std::string& key) {
  return key == "id" || key == "reason" || key == "status" || key == "generatedAt" || key == "lastModified";
}

template <class Record>
class EveryRecord : public testing::Test {
 protected:
  static json sampleJSON() { return json::parse(encodeJSON(Sample<Record>::make())); }
};

using Records =
    testing::Types<WatchFolder, SyncBlocker, FolderHealth, ScanMetrics, RecommendedAction, SyncHealthReport>;
TYPED_TEST_SUITE(EveryRecord, Records);

TYPED_TEST(EveryRecord, writtenAndRead_isEqual) {
  const TypeParam record = Sample<TypeParam>::make();
  EXPECT_EQ(decodeJSON<TypeParam>(encodeJSON(record)), record);
  EXPECT_EQ(decodeJSON<TypeParam>(encodeJSON(TypeParam{})), TypeParam{});
  EXPECT_EQ(decodeJSON<std::vector<TypeParam>>(encodeJSON(std::vector<TypeParam>{record, TypeParam{}})),
            (std::vector<TypeParam>{record, TypeParam{}}));
}

TYPED_TEST(EveryRecord, written_hasExactlyItsFieldsAsKeys) {
  const json object = this->sampleJSON();
  std::set<std::string> keys;
  for (const auto& [key, value] : object.items()) {
    keys.insert(key);
  }
  EXPECT_EQ(keys, Sample<TypeParam>::keys());
}

TYPED_TEST(EveryRecord, missingKey_isNoneUnlessOptional) {
  for (const std::string& key : Sample<TypeParam>::keys()) {
    json object = this->sampleJSON();
    object.erase(key);
    EXPECT_EQ(decodeJSON<TypeParam>(object.dump()).has_value(), isOptionalKey(key)) << key;
  }
}

TYPED_TEST(EveryRecord, nullForAKey_isNoneUnlessOptional) {
  for (const std::string& key : Sample<TypeParam>::keys()) {
    json object = this->sampleJSON();
    object[key] = nullptr;
    EXPECT_EQ(decodeJSON<TypeParam>(object.dump()).has_value(), isOptionalKey(key)) << key;
  }
}

TYPED_TEST(EveryRecord, valueOfAnotherType_isNone) {
  const std::vector<json> others = {true, 1, 1.5, "x", json::array(), json::object(), json::array({1})};
  for (const std::string& key : Sample<TypeParam>::keys()) {
    for (const json& other : others) {
      json object = this->sampleJSON();
      const bool isSameType = object[key].is_number() ? other.is_number_integer() : object[key].type() == other.type();
      if (isSameType && !isFormalKey(key) && other != json::array({1}) && other != json::object()) {
        continue;
      }
      object[key] = other;
      EXPECT_FALSE(decodeJSON<TypeParam>(object.dump())) << key << " = " << other;
    }
  }
}

TYPED_TEST(EveryRecord, integerBeyondSixtyFourBits_isNone) {
  for (const std::string& key : Sample<TypeParam>::keys()) {
    json object = this->sampleJSON();
    if (object[key].is_number()) {
      object[key] = std::numeric_limits<std::uint64_t>::max();
      EXPECT_FALSE(decodeJSON<TypeParam>(object.dump())) << key;
      object[key] = 1e30;
      EXPECT_FALSE(decodeJSON<TypeParam>(object.dump())) << key;
    }
  }
}

TYPED_TEST(EveryRecord, documentThatIsNoObject_isNone) {
  for (const char* text : {"[]", "null", "true", "1", "\"x\"", ""}) {
    EXPECT_FALSE(decodeJSON<TypeParam>(text)) << text;
  }
  EXPECT_FALSE(decodeJSON<TypeParam>("[" + encodeJSON(Sample<TypeParam>::make()) + "]"));
  EXPECT_FALSE(decodeJSON<TypeParam>("{}"));
}

TYPED_TEST(EveryRecord, everyBeginningOfItsText_isNone) {
  const std::string text = encodeJSON(Sample<TypeParam>::make());
  for (std::size_t length = 0; length < text.size(); ++length) {
    ASSERT_FALSE(decodeJSON<TypeParam>(text.substr(0, length))) << text.substr(0, length);
  }
}

TYPED_TEST(EveryRecord, unknownKey_isIgnored) {
  json object = this->sampleJSON();
  object["somethingNew"] = {{"id", 1}};
  EXPECT_EQ(decodeJSON<TypeParam>(object.dump()), Sample<TypeParam>::make());
}

TYPED_TEST(EveryRecord, changeOfAnyField_isUnequalAndHashesDifferently) {
  const TypeParam record = Sample<TypeParam>::make();
  const std::hash<TypeParam> hash;
  std::size_t number = 0;
  for (const auto& change : Sample<TypeParam>::changes()) {
    TypeParam changed = record;
    change(changed);
    EXPECT_NE(changed, record) << "change " << number;
    EXPECT_NE(hash(changed), hash(record)) << "change " << number;
    ++number;
  }
}

TYPED_TEST(EveryRecord, copy_isEqualAndHashesAlike) {
  const TypeParam record = Sample<TypeParam>::make();
  const TypeParam copy = record;
  EXPECT_EQ(copy, record);
  EXPECT_EQ(std::hash<TypeParam>{}(copy), std::hash<TypeParam>{}(record));
  const std::unordered_set<TypeParam> set = {record, copy, TypeParam{}};
  EXPECT_EQ(set.size(), 2U);
}

TEST(SyncBlockerRecord, withoutModificationDate_hasNoKeyForIt) {
  const SyncBlocker blocker = makeBlocker(BlockerReason::unresolvedConflict, "/a");
  const std::string text = encodeJSON(blocker);
  EXPECT_EQ(text.find("lastModified"), std::string::npos) << text;
  EXPECT_EQ(decodeJSON<SyncBlocker>(text), blocker);
}

TEST(SyncBlockerRecord, nullModificationDate_isAbsent) {
  json object = json::parse(encodeJSON(makeBlocker(BlockerReason::notUploaded, "/a", at(9))));
  object["lastModified"] = nullptr;
  EXPECT_EQ(decodeJSON<SyncBlocker>(object.dump()), makeBlocker(BlockerReason::notUploaded, "/a"));
}

TEST(SyncBlockerRecord, malformedModificationDate_isNoneRatherThanAbsent) {
  json object = json::parse(encodeJSON(makeBlocker(BlockerReason::notUploaded, "/a", at(9))));
  object["lastModified"] = "yesterday";
  EXPECT_FALSE(decodeJSON<SyncBlocker>(object.dump()));
}

TEST(SyncBlockerRecord, fractionInTheModificationDate_isDropped) {
  json object = json::parse(encodeJSON(makeBlocker(BlockerReason::notUploaded, "/a")));
  object["lastModified"] = "2026-11-15T09:00:00.75Z";
  EXPECT_EQ(decodeJSON<SyncBlocker>(object.dump()), makeBlocker(BlockerReason::notUploaded, "/a", at(9)));
}

TEST(SyncBlockerRecord, everyReason_comesBackAndOtherTextsDoNot) {
  for (const BlockerReason reason : kAllBlockerReasons) {
    EXPECT_EQ(decodeJSON<SyncBlocker>(encodeJSON(makeBlocker(reason, "/a"))), makeBlocker(reason, "/a"));
  }
  for (const char* text : {"outsideicloud", "OutsideICloud", "outsideIcloud", "outsideiCloud", "OUTSIDEICLOUD",
                           "Outside iCloud", "", "unknown"}) {
    json object = json::parse(encodeJSON(makeBlocker(BlockerReason::outsideICloud, "/a")));
    object["reason"] = text;
    EXPECT_FALSE(decodeJSON<SyncBlocker>(object.dump())) << text;
  }
}

TEST(SyncHealthReportRecord, differentOnlyInItsTime_isNotEqual) {
  const SyncHealthReport report = makeReport();
  SyncHealthReport later = report;
  later.generatedAt += std::chrono::microseconds(1);
  EXPECT_NE(later, report);
}

TEST(SyncHealthReportRecord, oneBadBlocker_makesTheWholeNone) {
  json object = json::parse(encodeJSON(makeReport()));
  ASSERT_TRUE(decodeJSON<SyncHealthReport>(object.dump()));
  object["blockers"][1]["reason"] = "unknown";
  EXPECT_FALSE(decodeJSON<SyncHealthReport>(object.dump()));
}

TEST(SyncHealthReportRecord, metricsWithoutACounter_makeTheWholeNone) {
  json object = json::parse(encodeJSON(makeReport()));
  object["metrics"].erase("errors");
  EXPECT_FALSE(decodeJSON<SyncHealthReport>(object.dump()));
}

TEST(SyncHealthReportRecord, textsWithControlCharactersAndSigns_comeBackEqual) {
  SyncHealthReport report = makeReport();
  report.summary = std::string("\0\x01\"\\\n\xE2\x80\xAE\xF0\x9F\x93\x81", 12);
  report.blockers[0].filePath = "/a\nb\t\x7f";
  report.generatedAt = Time(std::chrono::seconds(-1));
  EXPECT_EQ(decodeJSON<SyncHealthReport>(encodeJSON(report)), report);
}

TEST(SyncHealthReportRecord, pathThatIsNotUTF8_isWrittenWithReplacementCharacters) {
  SyncHealthReport report = makeReport();
  report.blockers[0].filePath = "/a\xFF.txt";
  const auto decoded = decodeJSON<SyncHealthReport>(encodeJSON(report));
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->blockers[0].filePath, "/a\xEF\xBF\xBD.txt");
}

}  // namespace
}  // namespace cirrovane::test
