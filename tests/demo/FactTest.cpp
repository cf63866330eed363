#include "tests/demo/DemoMacFixture.h"

#include <filesystem>
#include <sys/stat.h>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using nlohmann::ordered_json;
using ::testing::HasSubstr;

class FactTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  std::string file() const { return root() + "/machine.json"; }
  ordered_json facts() const { return ordered_json::parse(readFile(file())); }

  void expectRefusal(const std::string& key, const std::string& value, const std::string& message) const {
    const std::string before = readFile(file());
    const ChildResult result = demo({"fact", root(), key, value});
    EXPECT_EQ(result.exitStatus, 2) << key << " " << value;
    EXPECT_THAT(result.err, HasSubstr(message));
    EXPECT_EQ(readFile(file()), before);
  }
};

TEST_F(FactTest, fact_everyKey_takesItsValueInPlace) {
  ordered_json expected = facts();
  const ordered_json changes = ordered_json::parse(R"({
    "home": "/Users/anna",
    "bundle": {"path": "/Applications/Other.app", "info": {"SUFeedURL": "https://example.com/feed"}},
    "environment": {},
    "ubiquityIdentityToken": false,
    "runningApplications": [],
    "volume": {"total": 1},
    "powerSources": [{"Current Capacity": 3, "Is Charging": false}],
    "lowPowerMode": true,
    "thermalState": "critical",
    "loadAverages": [9.25, 1, 0],
    "physicalMemory": 8589934592,
    "uptimeSeconds": 0.5,
    "notificationAuthorization": "denied"})");
  for (const auto& change : changes.items()) {
    const ChildResult result = demo({"fact", root(), change.key(), change.value().dump()});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    expected[change.key()] = change.value();
    EXPECT_EQ(facts().dump(), expected.dump());
  }
  EXPECT_NE(check({drive()}).exitStatus, 3);
}

TEST_F(FactTest, fact_null_removesTheKey) {
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(demo({"fact", root(), "powerSources", "null"}).exitStatus, 0);
    EXPECT_FALSE(facts().contains("powerSources"));
    EXPECT_EQ(facts().size(), 12u);
  }
}

TEST_F(FactTest, fact_written_leavesNoOtherFile) {
  const TreeContent before = treeContent(root());
  EXPECT_EQ(demo({"fact", root(), "lowPowerMode", "true"}).exitStatus, 0);
  EXPECT_EQ(treeContent(root()).size(), before.size());
}

TEST_F(FactTest, fact_handMadeMac_keepsItsOtherKeys) {
  writeFile(folder_ / "other/machine.json", "{\"mine\": [1], \"lowPowerMode\": false}");
  EXPECT_EQ(demo({"fact", folder_ / "other", "lowPowerMode", "true"}).exitStatus, 0);
  EXPECT_EQ(ordered_json::parse(readFile(folder_ / "other/machine.json")).dump(),
            R"({"mine":[1],"lowPowerMode":true})");
}

TEST_F(FactTest, fact_unknownKey_refuses) {
  expectRefusal("thermalstate", "\"fair\"", "is no fact");
  expectRefusal("a\n\x1b[1mb\x7f", "1", "\"a\\x0a\\x1b[1mb\\x7f\" is no fact of a machine.");
}

TEST_F(FactTest, fact_valueOfWrongType_refusesWithExample) {
  expectRefusal("home", "\"Users/demo\"",
                "home must be an absolute path as a text, or null to remove it; for example \"/Users/demo\".");
  expectRefusal("lowPowerMode", "1", "true or false");
  expectRefusal("loadAverages", "[1, \"2\"]", "list of numbers");
  expectRefusal("powerSources", "{}", "for example");
}

TEST_F(FactTest, fact_valueThatIsNoJSON_refuses) {
  expectRefusal("thermalState", "serious", "is not JSON");
  expectRefusal("thermalState", "", "is not JSON");
  expectRefusal("thermalState", "\"\xff\"", "is not JSON");
}

TEST_F(FactTest, fact_folderWithoutMachine_saysSo) {
  makeFolder(folder_ / "empty");
  const ChildResult result = demo({"fact", folder_ / "empty", "lowPowerMode", "true"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("create"));
  EXPECT_FALSE(exists(folder_ / "empty/machine.json"));
}

TEST_F(FactTest, fact_brokenMachine_leavesItAndSaysSo) {
  for (const std::string text : {"[]", "{", ""}) {
    writeFile(file(), text);
    const ChildResult result = demo({"fact", root(), "lowPowerMode", "true"});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_THAT(result.err, HasSubstr("is not a JSON object"));
    EXPECT_EQ(readFile(file()), text);
  }
}

TEST_F(FactTest, fact_folderOrFIFOInPlaceOfTheMachine_saysSoAndDoesNotWait) {
  const auto expectUnreadable = [this] {
    const ChildResult result = demo({"fact", root(), "lowPowerMode", "true"});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_THAT(result.err, HasSubstr("machine.json cannot be read: "));
  };
  std::filesystem::remove(file());
  makeFolder(file());
  expectUnreadable();
  std::filesystem::remove(file());
  ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
  expectUnreadable();
}

}  // namespace
}  // namespace cirrovane::test
