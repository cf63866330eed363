#include "base/JSONReader.h"
#include "tests/core/Builders.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

constexpr std::string_view kID = "01234567-89AB-CDEF-0F1E-2D3C4B5A6978";

std::string folderJSON(const std::string& members) {
  return "{\"id\": \"" + std::string(kID) + "\"" + members + "}";
}

std::string repeated(std::string_view text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t index = 0; index < count; ++index) {
    all += text;
  }
  return all;
}

TEST(ParseJSON, anyDocument_isRead) {
  EXPECT_EQ(parseJSON("[]"), nlohmann::json::array());
  EXPECT_EQ(parseJSON(" \n\t{\"a\": [1, true, null]} \r\n"), (nlohmann::json{{"a", {1, true, nullptr}}}));
  EXPECT_EQ(parseJSON("\"\xC3\xA4\""), nlohmann::json("\xC3\xA4"));
  EXPECT_EQ(parseJSON("\"\\ud83d\\udcc1\\u0000\\/\""), nlohmann::json(std::string("\xF0\x9F\x93\x81\0/", 6)));
}

TEST(ParseJSON, textThatIsNoJSON_isNone) {
  for (const std::string_view text : {std::string_view(""),           std::string_view(" "),
                                      std::string_view("x"),          std::string_view("["),
                                      std::string_view("{"),          std::string_view("]"),
                                      std::string_view("[}"),         std::string_view("[1,]"),
                                      std::string_view("[1 2]"),      std::string_view("{\"a\": 1,}"),
                                      std::string_view("{\"a\"}"),    std::string_view("{a: 1}"),
                                      std::string_view("{'a': 1}"),   std::string_view("[] []"),
                                      std::string_view("[]x"),        std::string_view("// c\n[]"),
                                      std::string_view("[/* c */]"),  std::string_view("NaN"),
                                      std::string_view("Infinity"),   std::string_view("-"),
                                      std::string_view("01"),         std::string_view("+1"),
                                      std::string_view("1."),         std::string_view(".5"),
                                      std::string_view("0x10"),       std::string_view("1e400"),
                                      std::string_view("\"a"),        std::string_view("\"\\"),
                                      std::string_view("\"\\x41\""),  std::string_view("\"\\u12\""),
                                      std::string_view("\"a\nb\""),   std::string_view("\"a\tb\""),
                                      std::string_view("tru"),        std::string_view("True"),
                                      std::string_view("nul"),        std::string_view("\0", 1),
                                      std::string_view("\"a\0b\"", 5)}) {
    EXPECT_FALSE(parseJSON(text)) << text;
  }
}

TEST(ParseJSON, bytesAfterTheDocument_areNoneWhateverTheyAre) {
  EXPECT_FALSE(parseJSON(std::string_view("[]\0", 3)));
  EXPECT_FALSE(parseJSON(std::string_view("[]\0garbage", 10)));
  EXPECT_FALSE(parseJSON(std::string_view("[]\n\0[]", 6)));
  EXPECT_FALSE(parseJSON("[]\xFF"));
}

TEST(ParseJSON, textThatIsNotUTF8_isNone) {
  for (const char* text : {"\"\xFF\"", "\"\xC3\"", "\"\xC0\xAF\"", "\"\xED\xA0\x80\"", "\"\xF4\x90\x80\x80\"",
                           "\"\\ud800\"", "\"\\udc00\"", "\"\\ud800x\"", "{\"\xFF\": 1}"}) {
    EXPECT_FALSE(parseJSON(text)) << text;
  }
}

TEST(ParseJSON, hundredThousandLevels_areNone) {
  constexpr std::size_t kLevels = 100'000;
  EXPECT_FALSE(parseJSON(repeated("[", kLevels)));
  EXPECT_FALSE(parseJSON(repeated("[", kLevels) + repeated("]", kLevels)));
  EXPECT_FALSE(parseJSON(repeated("{\"a\":", kLevels)));
  EXPECT_FALSE(parseJSON(repeated("{\"a\":", kLevels) + "1" + repeated("}", kLevels)));
  EXPECT_FALSE(parseJSON(repeated("[{\"a\":", kLevels)));
  EXPECT_FALSE(parseJSON(repeated("[\"\\\"\",", kLevels)));
}

TEST(ParseJSON, documentsAsDeepAsOurs_areRead) {
  EXPECT_TRUE(parseJSON(repeated("[", 20) + repeated("]", 20)));
  EXPECT_TRUE(parseJSON(repeated("{\"a\":", 20) + "1" + repeated("}", 20)));
}

TEST(ParseJSON, manyBracketsSideBySideOrInStrings_areNotDeep) {
  EXPECT_TRUE(parseJSON("[" + repeated("[],{},", 10'000) + "[]]"));
  EXPECT_TRUE(parseJSON("[\"" + repeated("[{", 10'000) + "\"]"));
  EXPECT_TRUE(parseJSON("[\"" + repeated("\\\"[", 10'000) + "\"]"));
  EXPECT_TRUE(parseJSON("[\"\\\\\", \"" + repeated("[", 10'000) + "\"]"));
}

TEST(ReadInteger, wholeRange_isRead) {
  EXPECT_EQ(decodeJSON<std::int64_t>("0"), 0);
  EXPECT_EQ(decodeJSON<std::int64_t>("-0"), 0);
  EXPECT_EQ(decodeJSON<std::int64_t>("-7"), -7);
  EXPECT_EQ(decodeJSON<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(decodeJSON<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(ReadInteger, beyondSixtyFourBits_isNone) {
  for (const char* text : {"9223372036854775808", "-9223372036854775809", "18446744073709551615",
                           "18446744073709551616", "123456789012345678901234567890", "1e400"}) {
    EXPECT_FALSE(decodeJSON<std::int64_t>(text)) << text;
  }
}

TEST(ReadInteger, anyOtherType_isNone) {
  for (const char* text : {"1.5", "\"1\"", "true", "null", "[]", "[1]", "{}"}) {
    EXPECT_FALSE(decodeJSON<std::int64_t>(text)) << text;
  }
}

TEST(ReadDouble, anyNumber_isRead) {
  EXPECT_EQ(decodeJSON<double>("1.5"), 1.5);
  EXPECT_EQ(decodeJSON<double>("-2"), -2.0);
  EXPECT_EQ(decodeJSON<double>("18446744073709551616"), 18446744073709551616.0);
  EXPECT_EQ(decodeJSON<double>("1e3"), 1000.0);
}

TEST(ReadDouble, anyOtherType_isNone) {
  for (const char* text : {"\"1.5\"", "true", "null", "[]", "{}", "1e400"}) {
    EXPECT_FALSE(decodeJSON<double>(text)) << text;
  }
}

TEST(ReadBool, onlyTrueAndFalse_areRead) {
  EXPECT_EQ(decodeJSON<bool>("true"), true);
  EXPECT_EQ(decodeJSON<bool>("false"), false);
  for (const char* text : {"0", "1", "\"true\"", "null", "[]", "{}"}) {
    EXPECT_FALSE(decodeJSON<bool>(text)) << text;
  }
}

TEST(ReadString, anyOtherType_isNone) {
  EXPECT_EQ(decodeJSON<std::string>("\"a\""), "a");
  for (const char* text : {"1", "1.5", "true", "null", "[]", "{}"}) {
    EXPECT_FALSE(decodeJSON<std::string>(text)) << text;
  }
}

TEST(ReadUUID, eitherCase_isReadAndAnythingElseIsNone) {
  EXPECT_EQ(decodeJSON<UUID>("\"01234567-89ab-cdef-0f1e-2d3c4b5a6978\""), UUID::fromText(kID));
  for (const char* text : {"\"\"", "\"0123456789ABCDEF0F1E2D3C4B5A6978\"", "1", "null", "[]", "{}"}) {
    EXPECT_FALSE(decodeJSON<UUID>(text)) << text;
  }
}

TEST(ReadTime, textOfATime_isReadAndAnythingElseIsNone) {
  EXPECT_EQ(decodeJSON<Time>("\"2026-11-15T09:00:00Z\""), at(9));
  EXPECT_EQ(decodeJSON<Time>("\"2026-11-15T09:00:00.999Z\""), at(9)) << "a fraction is dropped";
  for (const char* text : {"\"\"", "\"2026-11-15\"", "1794766870", "1794766870.5", "null", "[]", "{}"}) {
    EXPECT_FALSE(decodeJSON<Time>(text)) << text;
  }
}

TEST(ReadArray, oneBadElement_makesTheWholeNone) {
  using Numbers = std::vector<std::int64_t>;
  EXPECT_EQ(decodeJSON<Numbers>("[3, 1, 2]"), (Numbers{3, 1, 2}));
  EXPECT_EQ(decodeJSON<Numbers>("[]"), Numbers());
  for (const char* text : {"[1, \"2\", 3]", "[1, null]", "[[1]]", "{}", "{\"0\": 1}", "null", "1", "\"[]\""}) {
    EXPECT_FALSE(decodeJSON<Numbers>(text)) << text;
  }
}

TEST(ReadArray, targetWithElements_losesThem) {
  std::vector<std::int64_t> target = {7, 8, 9};
  EXPECT_TRUE(readJSON(nlohmann::json::parse("[1]"), target));
  EXPECT_EQ(target, (std::vector<std::int64_t>{1}));
}

TEST(ReadRecord, unknownKeys_areIgnoredWhateverTheyHold) {
  const WatchFolder expected = {.id = *UUID::fromText(kID), .name = "n", .path = "/p"};
  EXPECT_EQ(decodeJSON<WatchFolder>(folderJSON(", \"name\": \"n\", \"path\": \"/p\", \"extra\": [{\"id\": 1}, null], "
                                               "\"Name\": 2, \"\": {}, \"path \": 1e300")),
            expected);
}

TEST(ReadRecord, keyTwice_takesTheLast) {
  const auto folder = decodeJSON<WatchFolder>(
      folderJSON(", \"name\": \"first\", \"path\": \"/1\", \"name\": \"second\", \"path\": \"/2\""));
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->name, "second");
  EXPECT_EQ(folder->path, "/2");
  EXPECT_TRUE(decodeJSON<WatchFolder>(folderJSON(", \"path\": \"/1\", \"name\": 1, \"name\": \"second\"")))
      << "an earlier value of the wrong type is no obstacle";
  EXPECT_FALSE(decodeJSON<WatchFolder>(folderJSON(", \"path\": \"/1\", \"name\": \"first\", \"name\": 2")));
}

TEST(ReadRecord, keyInOtherCapitalisation_isMissing) {
  EXPECT_FALSE(decodeJSON<WatchFolder>(folderJSON(", \"Name\": \"n\", \"path\": \"/p\"")));
}

TEST(ReadRecord, optionalTargetWithValue_losesItWhenTheKeyIsMissing) {
  SyncBlocker target = makeBlocker(BlockerReason::uploadError, "/a", at(9));
  nlohmann::json json = nlohmann::json::parse(encodeJSON(makeBlocker(BlockerReason::notUploaded, "/b")));
  EXPECT_TRUE(readJSON(json, target));
  EXPECT_EQ(target.lastModified, std::nullopt);
}

TEST(ReadRecord, deepValueUnderUnknownKey_cannotCrash) {
  EXPECT_FALSE(decodeJSON<WatchFolder>(
      folderJSON(", \"name\": \"n\", \"path\": \"/p\", \"x\": " + repeated("[", 100'000) + repeated("]", 100'000))));
}

}  // namespace
}  // namespace cirrovane::test
