#include "platform/linux/macroot/MacRoot.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;

class MacRootOnDisk : public testing::Test {
 protected:
  void describe(const std::string& text) const { writeFile(folder_ / "machine.json", text); }
  std::string refusal() const {
    const auto root = MacRoot::open(folder_.path());
    EXPECT_FALSE(root) << "the description was taken";
    return root ? "" : root.message();
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

TEST_F(MacRootOnDisk, folder_withoutDescription_standsForThisMachinesFacts) {
  const auto root = MacRoot::open(folder_.path());
  ASSERT_TRUE(root);
  EXPECT_EQ(root->path(), folder_.path());
  EXPECT_FALSE(root->isDescribed());
  EXPECT_FALSE(root->isHost());
  EXPECT_EQ(root->facts(), nlohmann::json::object());
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/demo");
}

TEST_F(MacRootOnDisk, trailingSlashes_areTakenOff) {
  const auto root = MacRoot::open(folder_.path() + "///");
  ASSERT_TRUE(root);
  EXPECT_EQ(root->path(), folder_.path());
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/demo");
}

TEST_F(MacRootOnDisk, missingFolder_isRefusedByName) {
  const auto root = MacRoot::open(folder_ / "missing");
  ASSERT_FALSE(root);
  EXPECT_THAT(root.message(), HasSubstr(folder_ / "missing"));
}

TEST_F(MacRootOnDisk, fileInPlaceOfAFolder_isRefused) {
  writeFile(folder_ / "file");
  EXPECT_FALSE(MacRoot::open(folder_ / "file"));
}

TEST_F(MacRootOnDisk, linkToAFolder_isARoot) {
  makeFolder(folder_ / "real");
  ASSERT_EQ(symlink("real", (folder_ / "link").c_str()), 0);
  const auto root = MacRoot::open(folder_ / "link");
  ASSERT_TRUE(root);
  EXPECT_EQ(root->homeDirectory(), folder_ / "link/Users/demo");
}

TEST_F(MacRootOnDisk, emptyDescription_isThatOfAMachineWithoutFacts) {
  describe("{}");
  const auto root = MacRoot::open(folder_.path());
  ASSERT_TRUE(root);
  EXPECT_TRUE(root->isDescribed());
  EXPECT_EQ(root->facts(), nlohmann::json::object());
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/demo");
}

TEST_F(MacRootOnDisk, fullDescription_isTaken) {
  const std::string text = R"({
    "home": "/Users/someone",
    "bundle": {"path": "/Applications/Cirrovane.app", "info": {"CFBundleVersion": "45"}},
    "environment": {"PATH": "/usr/bin:/bin"},
    "ubiquityIdentityToken": true,
    "runningApplications": ["com.apple.finder"],
    "volume": {"availableForImportantUsage": 212500000000, "total": 494384795648},
    "powerSources": [{"Current Capacity": 87, "Max Capacity": 100, "Is Charging": true}],
    "lowPowerMode": false,
    "thermalState": "nominal",
    "loadAverages": [1.52, 1.31, 1.20],
    "physicalMemory": 17179869184,
    "uptimeSeconds": 273600,
    "notificationAuthorization": "notDetermined",
    "a key of tomorrow": [null]
  })";
  describe(text);
  const auto root = MacRoot::open(folder_.path());
  ASSERT_TRUE(root);
  EXPECT_EQ(root->facts(), nlohmann::json::parse(text));
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/someone");
}

TEST_F(MacRootOnDisk, home_withTrailingSlashes_losesThem) {
  describe(R"({"home": "/Users/someone//"})");
  EXPECT_EQ(MacRoot::open(folder_.path())->homeDirectory(), folder_ / "Users/someone");
  describe(R"({"home": "/"})");
  EXPECT_EQ(MacRoot::open(folder_.path())->homeDirectory(), folder_.path());
}

TEST_F(MacRootOnDisk, textThatIsNoJSON_isRefusedByFileName) {
  for (const char* text : {"", " ", "{", "{\"home\": }", "{'home': 1}", "{} {}", "\xFF", "{\"home\": \"\xFF\"}",
                           "{\"lowPowerMode\": True}", "// comment\n{}"}) {
    describe(text);
    EXPECT_THAT(refusal(), HasSubstr(folder_ / "machine.json")) << text;
  }
}

TEST_F(MacRootOnDisk, JSONThatIsNoObject_isRefused) {
  for (const char* text : {"[]", "null", "1", "\"home\"", "true", "[{}]"}) {
    describe(text);
    EXPECT_THAT(refusal(), HasSubstr("object")) << text;
  }
}

TEST_F(MacRootOnDisk, deeplyNestedText_doesNotBreakTheProgram) {
  const std::string open(1'000'000, '[');
  describe(open);
  EXPECT_THAT(refusal(), HasSubstr("machine.json"));
  describe("{\"x\": " + open + std::string(open.size(), ']') + "}");
  EXPECT_TRUE(MacRoot::open(folder_.path()));
}

struct FactCase {
  const char* key;
  /// Values of a wrong type.
  std::vector<const char*> wrong;
};

class MacRootFact : public MacRootOnDisk, public testing::WithParamInterface<FactCase> {};

TEST_P(MacRootFact, value_ofAWrongType_isRefusedByItsKey) {
  for (const char* value : GetParam().wrong) {
    describe(std::string("{\"") + GetParam().key + "\": " + value + "}");
    EXPECT_THAT(refusal(), HasSubstr(std::string("\"") + GetParam().key + "\"")) << value;
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, MacRootFact,
    testing::Values(FactCase{"home", {"null", "1", "[]", "\"\"", "\"Users/demo\"", "{}"}},
                    FactCase{"bundle", {"null", "\"/Applications\"", "[]"}},
                    FactCase{"environment", {"null", "\"PATH=/bin\"", "[]"}},
                    FactCase{"ubiquityIdentityToken", {"null", "1", "\"true\""}},
                    FactCase{"runningApplications", {"null", "\"x\"", "{}", "[1]", "[\"x\", null]"}},
                    FactCase{"volume", {"null", "1", "[]"}}, FactCase{"powerSources", {"null", "{}", "[1]", "[[]]"}},
                    FactCase{"lowPowerMode", {"null", "0", "\"false\""}}, FactCase{"thermalState", {"null", "1", "[]"}},
                    FactCase{"loadAverages", {"null", "1.5", "[\"1\"]", "{}"}},
                    FactCase{"physicalMemory", {"null", "\"1\"", "[]"}},
                    FactCase{"uptimeSeconds", {"null", "\"1\"", "true"}},
                    FactCase{"notificationAuthorization", {"null", "true", "[]"}}),
    [](const auto& tested) { return std::string(tested.param.key); });

TEST_F(MacRootOnDisk, description_isReadAfreshAtEachUse) {
  describe(R"({"home": "/Users/first"})");
  const auto root = MacRoot::open(folder_.path());
  ASSERT_TRUE(root);
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/first");
  describe(R"({"home": "/Users/second", "lowPowerMode": true})");
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/second");
  EXPECT_EQ(root->facts().at("lowPowerMode"), true);
  std::filesystem::remove(folder_ / "machine.json");
  EXPECT_TRUE(root->isDescribed());
  EXPECT_EQ(root->facts(), nlohmann::json::object());
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/demo");
}

TEST_F(MacRootOnDisk, description_thatComesLater_isNotHeeded) {
  const auto root = MacRoot::open(folder_.path());
  ASSERT_TRUE(root);
  describe(R"({"home": "/Users/late", "environment": {}})");
  EXPECT_FALSE(root->isDescribed());
  EXPECT_EQ(root->homeDirectory(), folder_ / "Users/demo");
  EXPECT_EQ(root->environment(), std::nullopt);
}

TEST_F(MacRootOnDisk, description_thatBreaksLater_isOneWithoutFacts) {
  describe(R"({"home": "/Users/first"})");
  const auto root = MacRoot::open(folder_.path());
  ASSERT_TRUE(root);
  for (const char* text : {"{", "[]", R"({"home": 1})", R"({"home": "/x", "volume": 1})"}) {
    describe(text);
    EXPECT_TRUE(root->isDescribed());
    EXPECT_EQ(root->facts(), nlohmann::json::object()) << text;
    EXPECT_EQ(root->homeDirectory(), folder_ / "Users/demo") << text;
  }
}

TEST_F(MacRootOnDisk, folderInPlaceOfTheDescription_isRefused) {
  makeFolder(folder_ / "machine.json");
  EXPECT_THAT(refusal(), HasSubstr(folder_ / "machine.json"));
}

TEST_F(MacRootOnDisk, fifoInPlaceOfTheDescription_isRefusedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo((folder_ / "machine.json").c_str(), 0600), 0);
  EXPECT_THAT(refusal(), HasSubstr(folder_ / "machine.json"));
}

TEST_F(MacRootOnDisk, endlessFileInPlaceOfTheDescription_isRefused) {
  ASSERT_EQ(symlink("/dev/zero", (folder_ / "machine.json").c_str()), 0);
  EXPECT_THAT(refusal(), HasSubstr(folder_ / "machine.json"));
}

TEST_F(MacRootOnDisk, danglingLinkInPlaceOfTheDescription_isRefused) {
  ASSERT_EQ(symlink("nowhere", (folder_ / "machine.json").c_str()), 0);
  EXPECT_THAT(refusal(), HasSubstr(folder_ / "machine.json"));
}

TEST_F(MacRootOnDisk, descriptionThatMayNotBeRead_isRefused) {
  describe("{}");
  ASSERT_EQ(chmod((folder_ / "machine.json").c_str(), 0), 0);
  const WithoutPrivileges privileges;
  ASSERT_LT(open((folder_ / "machine.json").c_str(), O_RDONLY | O_CLOEXEC), 0);
  ASSERT_EQ(errno, EACCES);
  EXPECT_THAT(refusal(), HasSubstr(folder_ / "machine.json"));
}

TEST(MacRootOfTheHost, rootWithoutDescription_isThisMachine) {
  const auto root = MacRoot::open("/");
  ASSERT_TRUE(root);
  EXPECT_EQ(root->path(), "/");
  EXPECT_FALSE(root->isDescribed());
  EXPECT_TRUE(root->isHost());
}

}  // namespace
}  // namespace cirrovane::test
