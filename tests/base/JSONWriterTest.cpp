#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "base/UTF8.h"
#include "tests/core/Builders.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using nlohmann::json;

std::string dump(const json& value) {
  return value.dump(2, ' ', false, json::error_handler_t::replace);
}

TEST(EncodeJSON, text_escapesOnlyWhatJSONForbids) {
  EXPECT_EQ(encodeJSON(std::string("a\"b\\c/d")), R"("a\"b\\c/d")");
  EXPECT_EQ(encodeJSON(std::string("\b\f\n\r\t")), R"("\b\f\n\r\t")");
  EXPECT_EQ(encodeJSON(std::string("\0\x01\x0b\x1b\x1f", 5)), R"("\u0000\u0001\u000b\u001b\u001f")");
  EXPECT_EQ(encodeJSON(std::string("\x7f")), "\"\x7f\"");
  EXPECT_EQ(encodeJSON(std::string("\xC3\xA4\xE2\x80\xA8\xF0\x9F\x93\x81")),
            "\"\xC3\xA4\xE2\x80\xA8\xF0\x9F\x93\x81\"");
  EXPECT_EQ(encodeJSON(std::string()), "\"\"");
}

TEST(EncodeJSON, everyByteAnywhereInALongText_isWrittenAsAnotherLibraryWritesIt) {
  for (int byte = 0; byte < 0x100; ++byte) {
    for (std::size_t place = 0; place < 27; ++place) {
      std::string text(27, '~');
      text[place] = static_cast<char>(byte);
      ASSERT_EQ(encodeJSON(text), dump(text)) << byte << " at " << place;
    }
  }
}

TEST(EncodeJSON, invalidUTF8_becomesTheReplacementCharacter) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(encodeJSON(std::string("a\xFFz")), "\"a" + replacement + "z\"");
  EXPECT_EQ(encodeJSON(std::string("\x80\x80")), "\"" + replacement + replacement + "\"");
  EXPECT_EQ(encodeJSON(std::string("a\xE2\x82")), "\"a" + replacement + "\"");
  EXPECT_EQ(encodeJSON(std::string("\xE2\x82\"")), "\"" + replacement + "\\\"\"");
  EXPECT_EQ(encodeJSON(std::string("\xC0\xAF")), "\"" + replacement + replacement + "\"");
  EXPECT_EQ(encodeJSON(std::string("\xED\xA0\x80")), "\"" + replacement + replacement + replacement + "\"");
  EXPECT_EQ(encodeJSON(std::string("\xF0\x9F\x93")), "\"" + replacement + "\"");
}

TEST(EncodeJSON, everyThreeBytes_giveADocumentThatComesBack) {
  std::string text;
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      text = {'<', static_cast<char>(first), static_cast<char>(second), '>'};
      const std::string encoded = encodeJSON(text);
      const auto decoded = decodeJSON<std::string>(encoded);
      ASSERT_TRUE(decoded) << first << " " << second;
      ASSERT_TRUE(decoded->starts_with("<") && decoded->ends_with(">")) << first << " " << second;
      ASSERT_EQ(*decoded == text, isValidUTF8(text)) << first << " " << second;
      ASSERT_EQ(encoded, dump(json(text))) << first << " " << second;
    }
  }
}

TEST(EncodeJSON, numbers_arePlainDecimals) {
  EXPECT_EQ(encodeJSON(std::int64_t{0}), "0");
  EXPECT_EQ(encodeJSON(std::int64_t{1'234'567}), "1234567");
  EXPECT_EQ(encodeJSON(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
  EXPECT_EQ(encodeJSON(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(encodeJSON(0.5), "0.5");
  EXPECT_EQ(encodeJSON(-12.25), "-12.25");
  EXPECT_EQ(encodeJSON(0.1), "0.1");
}

TEST(EncodeJSON, numberThatJSONCannotHold_isNull) {
  EXPECT_EQ(encodeJSON(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(encodeJSON(-std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(encodeJSON(std::numeric_limits<double>::quiet_NaN()), "null");
}

TEST(EncodeJSON, anyFiniteDouble_comesBackToTheBit) {
  std::mt19937_64 random(1);
  for (int count = 0; count < 20'000; ++count) {
    const double value = std::bit_cast<double>(random());
    if (std::isfinite(value)) {
      ASSERT_EQ(decodeJSON<double>(encodeJSON(value)), value) << encodeJSON(value);
    }
  }
}

TEST(EncodeJSON, literals_areWritten) {
  EXPECT_EQ(encodeJSON(true), "true");
  EXPECT_EQ(encodeJSON(false), "false");
  EXPECT_EQ(encodeJSON(idOf(0xAB)), "\"00000000-0000-0000-0000-0000000000AB\"");
  EXPECT_EQ(encodeJSON(at(18, 21) + std::chrono::microseconds(999'999)), "\"2026-11-15T18:21:00Z\"");
}

TEST(EncodeJSON, emptyContainers_stayOnOneLine) {
  EXPECT_EQ(encodeJSON(std::vector<std::string>{}), "[]");
  EXPECT_EQ(encodeJSON(std::vector<SyncBlocker>{}), "[]");
  std::string text;
  JSONWriter writer([&](std::string_view piece) {
    text += piece;
    return true;
  });
  writer.beginObject();
  writer.key("a");
  writer.beginObject();
  writer.endObject();
  writer.key("b");
  writer.beginArray();
  writer.endArray();
  writer.endObject();
  EXPECT_TRUE(writer.finish());
  EXPECT_EQ(text, "{\n  \"a\": {},\n  \"b\": []\n}");
}

TEST(EncodeJSON, keysOfAnyText_areEscaped) {
  std::string text;
  JSONWriter writer([&](std::string_view piece) {
    text += piece;
    return true;
  });
  writer.beginObject();
  writer.key("a\"\n\xFF");
  writer.write(std::int64_t{1});
  writer.endObject();
  writer.finish();
  EXPECT_EQ(text, "{\n  \"a\\\"\\n\xEF\xBF\xBD\": 1\n}");
}

TEST(EncodeJSON, nestedArrays_areIndentedByTwo) {
  EXPECT_EQ(encodeJSON(std::vector<std::vector<std::int64_t>>{{1, 2}, {}, {3}}),
            "[\n  [\n    1,\n    2\n  ],\n  [],\n  [\n    3\n  ]\n]");
}

TEST(EncodeJSON, folder_hasTheOneForm) {
  EXPECT_EQ(encodeJSON(std::vector<WatchFolder>{makeFolder("Work", "/Users/a/Work/", 1), makeFolder("", "/", 2)}),
            R"([
  {
    "id": "00000000-0000-0000-0000-000000000001",
    "name": "Work",
    "path": "/Users/a/Work/"
  },
  {
    "id": "00000000-0000-0000-0000-000000000002",
    "name": "",
    "path": "/"
  }
])");
}

TEST(EncodeJSON, report_hasTheOneForm) {
  EXPECT_EQ(encodeJSON(makeReport()), R"({
  "actions": [
    {
      "detail": "Detail",
      "id": "00000000-0000-0000-0000-000000000009",
      "rank": 1,
      "title": "Title"
    }
  ],
  "blockers": [
    {
      "details": "Details.",
      "filePath": "/Users/test/Desktop",
      "folderName": "Work",
      "id": "00000000-0000-0000-0000-000000000001",
      "reason": "outsideICloud"
    },
    {
      "details": "Details.",
      "filePath": "/Users/test/a.txt",
      "folderName": "Work",
      "id": "00000000-0000-0000-0000-000000000001",
      "lastModified": "2026-11-15T09:00:00Z",
      "reason": "notUploaded"
    }
  ],
  "folderHealth": [
    {
      "blockerCount": 2,
      "folder": {
        "id": "00000000-0000-0000-0000-000000000007",
        "name": "Desktop",
        "path": "/Users/test/Desktop/"
      },
      "id": "00000000-0000-0000-0000-000000000007",
      "scannedFileCount": 12,
      "score": 74,
      "status": "warning"
    }
  ],
  "generatedAt": "2026-11-15T18:21:00Z",
  "localAvailabilityScore": 71,
  "metrics": {
    "errors": 5,
    "notDownloaded": 6,
    "pendingUploads": 1,
    "scannedFolders": 3,
    "totalFiles": 12,
    "unresolvedConflicts": 4
  },
  "safeToClose": true,
  "score": 36,
  "status": "danger",
  "summary": "Summary."
})");
}

/// The same documents built by another library, whose form ours is held against.
json toJSON(const WatchFolder& folder) {
  return {{"id", folder.id.text()}, {"name", folder.name}, {"path", folder.path}};
}

json toJSON(const SyncHealthReport& report) {
  json blockers = json::array();
  for (const SyncBlocker& blocker : report.blockers) {
    json object = {{"id", blocker.id.text()},
                   {"filePath", blocker.filePath},
                   {"folderName", blocker.folderName},
                   {"reason", rawValue(blocker.reason)},
                   {"details", blocker.details}};
    if (blocker.lastModified) {
      object["lastModified"] = iso8601Text(*blocker.lastModified);
    }
    blockers.push_back(std::move(object));
  }
  json folderHealth = json::array();
  for (const FolderHealth& result : report.folderHealth) {
    folderHealth.push_back({{"id", result.id.text()},
                            {"folder", toJSON(result.folder)},
                            {"scannedFileCount", result.scannedFileCount},
                            {"blockerCount", result.blockerCount},
                            {"status", rawValue(result.status)},
                            {"score", result.score}});
  }
  json actions = json::array();
  for (const RecommendedAction& action : report.actions) {
    actions.push_back(
        {{"id", action.id.text()}, {"rank", action.rank}, {"title", action.title}, {"detail", action.detail}});
  }
  return {{"status", rawValue(report.status)},
          {"score", report.score},
          {"localAvailabilityScore", report.localAvailabilityScore},
          {"safeToClose", report.safeToClose},
          {"generatedAt", iso8601Text(report.generatedAt)},
          {"blockers", std::move(blockers)},
          {"folderHealth", std::move(folderHealth)},
          {"metrics",
           {{"totalFiles", report.metrics.totalFiles},
            {"scannedFolders", report.metrics.scannedFolders},
            {"pendingUploads", report.metrics.pendingUploads},
            {"unresolvedConflicts", report.metrics.unresolvedConflicts},
            {"errors", report.metrics.errors},
            {"notDownloaded", report.metrics.notDownloaded}}},
          {"actions", std::move(actions)},
          {"summary", report.summary}};
}

/// Records with any numbers, and with texts made of what is hard to write.
class NastyRecords {
 public:
  explicit NastyRecords(std::uint32_t seed) : random_(seed) {}

  std::string text() {
    static const std::vector<std::string> pieces = {"a",
                                                    "/",
                                                    "\"",
                                                    "\\",
                                                    "\\u0041",
                                                    "\n",
                                                    "\r",
                                                    "\t",
                                                    "\b",
                                                    "\f",
                                                    std::string(1, '\0'),
                                                    "\x1b",
                                                    "\x7f",
                                                    "\xC2\x85",
                                                    "\xC3\xA9",
                                                    "e\xCC\x81",
                                                    "\xE2\x80\xAE",
                                                    "\xE2\x80\xA8",
                                                    "\xEF\xBF\xBD",
                                                    "\xEF\xBB\xBF",
                                                    "\xF0\x9F\x93\x81",
                                                    "\xFF",
                                                    "\xC0\xAF",
                                                    "\xE2\x82",
                                                    "\xF0\x9F",
                                                    "\xED\xA0\x80",
                                                    "\x80",
                                                    "\xF4\x90\x80\x80",
                                                    "}",
                                                    "[",
                                                    ",",
                                                    "  "};
    std::string text;
    for (std::size_t count = below(8); count > 0; --count) {
      text += pieces[below(pieces.size())];
    }
    return text;
  }

  std::int64_t number() {
    static constexpr std::array kEdges = {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
                                          std::numeric_limits<std::int64_t>::max()};
    return below(4) == 0 ? kEdges.at(below(kEdges.size())) : static_cast<std::int64_t>(random_());
  }

  Time time() { return Time(std::chrono::microseconds(static_cast<std::int64_t>(random_()))); }

  UUID id() {
    std::array<std::uint8_t, 16> bytes{};
    for (std::uint8_t& byte : bytes) {
      byte = static_cast<std::uint8_t>(random_());
    }
    return UUID(bytes);
  }

  HealthState state() { return kHealthStates.at(below(kHealthStates.size())).value; }

  SyncHealthReport report() {
    SyncHealthReport report;
    report.status = state();
    report.score = number();
    report.localAvailabilityScore = number();
    report.safeToClose = below(2) == 0;
    report.generatedAt = time();
    for (std::size_t count = below(5); count > 0; --count) {
      report.blockers.push_back({id(), text(), text(), kAllBlockerReasons.at(below(kAllBlockerReasons.size())), text(),
                                 below(2) == 0 ? std::optional(time()) : std::nullopt});
    }
    for (std::size_t count = below(4); count > 0; --count) {
      report.folderHealth.push_back({id(), {id(), text(), text()}, number(), number(), state(), number()});
    }
    report.metrics = {number(), number(), number(), number(), number(), number()};
    for (std::size_t count = below(4); count > 0; --count) {
      report.actions.push_back({id(), number(), text(), text()});
    }
    report.summary = text();
    return report;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  std::mt19937_64 random_;
};

TEST(EncodeJSON, randomReports_areWrittenAsAnotherLibraryWritesThem) {
  for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
    const SyncHealthReport report = NastyRecords(seed).report();
    const std::string text = encodeJSON(report);
    ASSERT_EQ(text, dump(json::parse(text))) << "seed " << seed;
    ASSERT_EQ(text, dump(toJSON(report))) << "seed " << seed;
  }
}

TEST(EncodeJSON, randomReports_writtenAgainAfterReading_areTheSameText) {
  for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
    const std::string text = encodeJSON(NastyRecords(seed).report());
    const auto report = decodeJSON<SyncHealthReport>(text);
    ASSERT_TRUE(report) << "seed " << seed;
    ASSERT_EQ(encodeJSON(*report), text) << "seed " << seed;
  }
}

TEST(JSONWriter, longDocument_goesOutInPiecesThatMakeItWhole) {
  SyncHealthReport report = makeReport();
  report.blockers = makeBlockers(BlockerReason::notUploaded, 5000);
  std::string text;
  std::size_t pieceCount = 0;
  std::size_t longest = 0;
  JSONWriter writer([&](std::string_view piece) {
    text += piece;
    ++pieceCount;
    longest = std::max(longest, piece.size());
    return true;
  });
  writer.write(report);
  EXPECT_TRUE(writer.finish());
  EXPECT_TRUE(text == dump(toJSON(report))) << "compared without a listing of the differences, which would take hours";
  EXPECT_GT(pieceCount, 3U);
  EXPECT_LT(longest, text.size() / 3) << "the writer must not hold the whole document";
}

TEST(JSONWriter, sinkThatRefuses_isNotAskedAgain) {
  SyncHealthReport report = makeReport();
  report.blockers = makeBlockers(BlockerReason::notUploaded, 5000);
  int calls = 0;
  JSONWriter writer([&](std::string_view) { return ++calls < 2; });
  writer.write(report);
  EXPECT_FALSE(writer.finish());
  EXPECT_EQ(calls, 2);
  EXPECT_FALSE(writer.finish());
  EXPECT_EQ(calls, 2);
}

TEST(JSONWriter, sinkThatRefusesTheLastPiece_failsTheWhole) {
  JSONWriter writer([](std::string_view) { return false; });
  writer.write(true);
  EXPECT_FALSE(writer.finish());
}

}  // namespace
}  // namespace cirrovane::test
