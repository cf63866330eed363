#include "platform/linux/host/ICUCollation.h"
#include "platform/linux/host/LinuxUserDefaults.h"
#include "platform/posix/PosixFileStorage.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <sys/stat.h>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class LinuxUserDefaultsTest : public testing::Test {
 protected:
  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  PosixFileStorage storage_;
  LinuxUserDefaults defaults() const {
    return {[this] { return folder_ / "Preferences"; }, storage_};
  }
  LinuxUserDefaults defaults_ = defaults();
  std::string path_ = folder_ / "Preferences/com.quillmere.Cirrovane.json";
};

TEST_F(LinuxUserDefaultsTest, nothingSet_isAbsent) {
  EXPECT_EQ(defaults_.value("motionEnabled"), std::nullopt);
  EXPECT_EQ(defaults_.boolean("motionEnabled"), std::nullopt);
  EXPECT_EQ(defaults_.text("visualStyle"), std::nullopt);
}

TEST_F(LinuxUserDefaultsTest, setValues_areReadBackByAnotherProcess) {
  EXPECT_EQ(defaults_.set("motionEnabled", false), std::nullopt);
  EXPECT_EQ(defaults_.set("visualStyle", std::string("classic")), std::nullopt);
  const LinuxUserDefaults other = defaults();
  EXPECT_EQ(other.boolean("motionEnabled"), false);
  EXPECT_EQ(other.text("visualStyle"), "classic");
}

TEST_F(LinuxUserDefaultsTest, literalText_isATextAndNoTruthValue) {
  EXPECT_EQ(defaults_.set("visualStyle", "classic"), std::nullopt);
  EXPECT_EQ(defaults_.text("visualStyle"), "classic");
  EXPECT_EQ(defaults_.boolean("visualStyle"), std::nullopt);
}

TEST_F(LinuxUserDefaultsTest, types_areToldApart) {
  writeFile(path_, R"({"number": 1, "truth": true, "text": "true", "nothing": null, "list": []})");
  EXPECT_EQ(defaults_.value("number"), DefaultsValue(1.0));
  EXPECT_EQ(defaults_.value("list"), DefaultsValue(OtherDefaultsValue()));
  EXPECT_EQ(defaults_.value("truth"), DefaultsValue(true));
  EXPECT_EQ(defaults_.value("text"), DefaultsValue(std::string("true")));
  EXPECT_EQ(defaults_.value("nothing"), std::nullopt);
  EXPECT_EQ(defaults_.boolean("number"), std::nullopt);
  EXPECT_EQ(defaults_.boolean("text"), std::nullopt);
  EXPECT_EQ(defaults_.text("truth"), std::nullopt);
}

TEST_F(LinuxUserDefaultsTest, numbers_asChoices_areTrueUnlessZero) {
  writeFile(path_, R"({"one": 1, "two": 2, "below": -1, "half": 0.5, "huge": 18446744073709551615, "zero": 0,
                       "none": 0.0})");
  for (const char* key : {"one", "two", "below", "half", "huge"}) {
    EXPECT_EQ(defaults_.choice(key), true) << key;
  }
  for (const char* key : {"zero", "none"}) {
    EXPECT_EQ(defaults_.choice(key), false) << key;
  }
}

TEST_F(LinuxUserDefaultsTest, otherValues_asChoices_areTheirOwnOrAbsent) {
  writeFile(path_, R"({"on": true, "off": false, "text": "1", "list": [1], "nothing": null})");
  EXPECT_EQ(defaults_.choice("on"), true);
  EXPECT_EQ(defaults_.choice("off"), false);
  for (const char* key : {"text", "list", "nothing", "never"}) {
    EXPECT_EQ(defaults_.choice(key), std::nullopt) << key;
  }
}

TEST_F(LinuxUserDefaultsTest, settingOneKey_keepsTheOthersAndWhatAnotherProcessSet) {
  writeFile(path_, R"({"foreign": [1, 2]})");
  LinuxUserDefaults other = defaults();
  EXPECT_EQ(defaults_.set("a", true), std::nullopt);
  EXPECT_EQ(other.set("b", true), std::nullopt);
  EXPECT_EQ(defaults_.set("a", false), std::nullopt);
  EXPECT_EQ(readFile(path_), "{\n  \"a\": false,\n  \"b\": true,\n  \"foreign\": [\n    1,\n    2\n  ]\n}\n");
}

TEST_F(LinuxUserDefaultsTest, damagedFile_countsAsEmpty) {
  writeFile(path_, "{\"a\": tr");
  EXPECT_EQ(defaults_.value("a"), std::nullopt);
  EXPECT_EQ(defaults_.set("a", true), std::nullopt);
  EXPECT_EQ(defaults_.boolean("a"), true);
}

TEST_F(LinuxUserDefaultsTest, file_isTheUsersAlone) {
  EXPECT_EQ(defaults_.set("a", true), std::nullopt);
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(LinuxUserDefaultsTest, folderThatCannotBeMade_isAFailure) {
  writeFile(folder_ / "Preferences", "in the way");
  EXPECT_NE(defaults_.set("a", true), std::nullopt);
}

TEST(ICUCollation, case_isNoDifferenceAndAccentsAre) {
  const ICUCollation collation("en_US");
  EXPECT_EQ(collation.compare("Alpha", "alpha"), std::weak_ordering::equivalent);
  EXPECT_EQ(collation.compare("alpha", "BETA"), std::weak_ordering::less);
  EXPECT_EQ(collation.compare("beta", "Alpha"), std::weak_ordering::greater);
  EXPECT_NE(collation.compare("apfel", "\u00e4pfel"), std::weak_ordering::equivalent);
}

TEST(ICUCollation, language_decidesTheOrder) {
  EXPECT_EQ(ICUCollation("de_DE").compare("\u00e4", "z"), std::weak_ordering::less);
  EXPECT_EQ(ICUCollation("sv_SE").compare("\u00e4", "z"), std::weak_ordering::greater);
}

TEST(ICUCollation, machineWithoutALanguage_stillIgnoresCase) {
  EXPECT_EQ(ICUCollation("en_US_POSIX").compare("Alpha", "alpha"), std::weak_ordering::equivalent);
}

TEST(ICUCollation, invalidText_comparesSomehow) {
  const ICUCollation collation("en_US");
  EXPECT_EQ(collation.compare("\xff", "\xff"), std::weak_ordering::equivalent);
  EXPECT_EQ(collation.compare("", "\xff"), std::weak_ordering::less);
}

}  // namespace
}  // namespace cirrovane::test
