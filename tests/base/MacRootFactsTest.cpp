#include "base/MacRootFacts.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

struct KindCase {
  FactKind kind;
  std::vector<std::string_view> right;
  std::vector<std::string_view> wrong;
};

const std::vector<KindCase>& kindCases() {
  static const std::vector<KindCase> kCases = {
      {FactKind::absolutePath, {R"("/")", R"("/Users/demo")"}, {R"("")", R"("Users")", "1", "null"}},
      {FactKind::object, {"{}", R"({"a": 1})"}, {"[]", R"("{}")", "null"}},
      {FactKind::boolean, {"true", "false"}, {"0", R"("true")", "null"}},
      {FactKind::text, {R"("")", R"("a")"}, {"1", "[]", "null"}},
      {FactKind::number, {"0", "-1", "0.5"}, {R"("1")", "true", "null"}},
      {FactKind::listOfTexts, {"[]", R"(["a", ""])"}, {"{}", R"(["a", 1])", R"("a")"}},
      {FactKind::listOfNumbers, {"[]", "[1, 0.5]"}, {"{}", R"([1, "2"])", "1"}},
      {FactKind::listOfObjects, {"[]", "[{}, {}]"}, {"{}", "[{}, []]", "[null]"}},
  };
  return kCases;
}

TEST(MacRootFacts, value_isOfItsKindWhateverTheOrderOfItsKeys) {
  for (const KindCase& tested : kindCases()) {
    for (const std::string_view text : tested.right) {
      EXPECT_TRUE(isOfKind(json::parse(text), tested.kind)) << text;
      EXPECT_TRUE(isOfKind(ordered_json::parse(text), tested.kind)) << text;
    }
    for (const std::string_view text : tested.wrong) {
      EXPECT_FALSE(isOfKind(json::parse(text), tested.kind)) << text;
      EXPECT_FALSE(isOfKind(ordered_json::parse(text), tested.kind)) << text;
    }
  }
}

TEST(MacRootFacts, everyFact_isFoundByItsKeyAndHasAnExampleOfItsKind) {
  EXPECT_EQ(macRootFacts().size(), 14U);
  for (const MacRootFact& fact : macRootFacts()) {
    EXPECT_EQ(findMacRootFact(fact.key), &fact);
    // What follows the value is a remark for a person.
    const json example = json::parse(fact.example.substr(0, fact.example.find(" (")));
    EXPECT_TRUE(isOfKind(example, fact.kind)) << fact.key;
  }
  EXPECT_EQ(findMacRootFact("thermalstate"), nullptr);
  EXPECT_EQ(findMacRootFact(""), nullptr);
}

TEST(MacRootFacts, complaint_namesWhatIsWrongFirst) {
  const auto complaint = [](std::string_view text) {
    return complaintAboutFacts(json::parse(text, nullptr, /*allow_exceptions=*/false)).value_or("");
  };
  EXPECT_EQ(complaint("{"), "it is not JSON");
  EXPECT_EQ(complaint("[]"), "it is not a JSON object");
  EXPECT_EQ(complaint(R"({"lowPowerMode": 1, "home": "demo"})"), R"("home" must be an absolute path)");
  EXPECT_EQ(complaint(R"({"loadAverages": [true]})"), R"("loadAverages" must be a list of numbers)");
  EXPECT_EQ(complaint(R"({"lowPowerMode": null})"), R"("lowPowerMode" must be true or false)");
  EXPECT_EQ(complaint(R"({"home": "/Users/demo", "mine": [1]})"), "");
  EXPECT_EQ(complaint("{}"), "");
}

}  // namespace
}  // namespace cirrovane::test
