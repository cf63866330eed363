#include "platform/linux/LinuxBundle.h"
#include "tests/support/FakeBundle.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class LinuxBundleTest : public testing::Test {
 protected:
  void describe(const std::string& facts) const { writeFile(folder_ / "machine.json", facts); }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  MacRoot root_ = std::move(*MacRoot::open(folder_.path()));
  LinuxBundle bundle_{root_};
};

TEST_F(LinuxBundleTest, describedBundle_isTaken) {
  describe(R"({"bundle": {"path": "/Applications/Cirrovane.app",
                          "info": {"CFBundleShortVersionString": "1.2", "CFBundleVersion": "45"}}})");
  EXPECT_EQ(bundle_.location(), "/Applications/Cirrovane.app");
  EXPECT_EQ(bundle_.infoText("CFBundleShortVersionString"), "1.2");
  EXPECT_EQ(bundle_.infoText("CFBundleVersion"), "45");
  EXPECT_TRUE(isApplicationBundle(bundle_));
}

TEST_F(LinuxBundleTest, descriptionWithoutABundle_isABareProgramOfNoVersion) {
  for (const char* facts : {"{}", R"({"bundle": {}})", R"({"bundle": {"info": {}}})"}) {
    describe(facts);
    EXPECT_EQ(bundle_.location(), "") << facts;
    EXPECT_EQ(bundle_.infoText("CFBundleVersion"), std::nullopt) << facts;
    EXPECT_FALSE(isApplicationBundle(bundle_)) << facts;
  }
}

TEST_F(LinuxBundleTest, valuesOfOtherTypes_areAbsent) {
  describe(R"({"bundle": {"path": 7, "info": {"CFBundleVersion": 45, "SUFeedURL": null, "SUPublicEDKey": ["x"]}}})");
  EXPECT_EQ(bundle_.location(), "");
  for (const char* key : {"CFBundleVersion", "SUFeedURL", "SUPublicEDKey", "path"}) {
    EXPECT_EQ(bundle_.infoText(key), std::nullopt) << key;
  }
  describe(R"({"bundle": {"path": "/a.app", "info": "text"}})");
  EXPECT_EQ(bundle_.infoText("CFBundleVersion"), std::nullopt);
}

TEST_F(LinuxBundleTest, blankText_isAText) {
  describe(R"({"bundle": {"info": {"SUFeedURL": ""}}})");
  EXPECT_EQ(bundle_.infoText("SUFeedURL"), "");
}

TEST_F(LinuxBundleTest, description_isReadAfresh) {
  describe(R"({"bundle": {"path": "/a.app"}})");
  EXPECT_EQ(bundle_.location(), "/a.app");
  describe(R"({"bundle": {"path": "/b.app"}})");
  EXPECT_EQ(bundle_.location(), "/b.app");
}

TEST_F(LinuxBundleTest, descriptionThatBecameUnreadable_isNone) {
  for (const char* facts : {"", "[]", R"({"bundle": "text"})", R"({"bundle": null})"}) {
    describe(facts);
    EXPECT_EQ(bundle_.location(), "") << facts;
    EXPECT_EQ(bundle_.infoText("CFBundleVersion"), std::nullopt) << facts;
  }
}

TEST_F(LinuxBundleTest, host_isTheBareProgramItself) {
  EXPECT_EQ(bundle_.location(), std::filesystem::read_symlink("/proc/self/exe"));
  EXPECT_FALSE(isApplicationBundle(bundle_));
}

TEST_F(LinuxBundleTest, installedProgram_isAnApplicationInItsPrefix) {
  for (const std::string& prefix : {folder_ / "usr", folder_ / "opt/Cirrovane 1.0"}) {
    writeFile(prefix + "/share/applications/com.quillmere.Cirrovane.desktop", "");
    EXPECT_EQ(applicationLocation(prefix + "/bin/cirrovane"), prefix + "/Cirrovane.app");
  }
}

TEST_F(LinuxBundleTest, programThatNoMenuOffers_isBare) {
  writeFile(folder_ / "usr/share/applications/com.quillmere.Cirrovane.desktop", "");
  writeFile(folder_ / "build/share/applications/other.desktop", "");
  for (const std::string& program : {folder_ / "build/bin/cirrovane", folder_ / "usr/sbin/cirrovane",
                                     folder_ / "usr/bin/more/cirrovane", std::string("cirrovane"), std::string()}) {
    EXPECT_EQ(applicationLocation(program), program);
  }
}

TEST_F(LinuxBundleTest, host_hasThisBuildsVersionAndNothingElse) {
  EXPECT_EQ(bundle_.infoText("CFBundleShortVersionString"), CIRROVANE_VERSION);
  EXPECT_EQ(bundle_.infoText("CFBundleVersion"), CIRROVANE_BUILD_NUMBER);
  EXPECT_EQ(bundle_.infoText("SUFeedURL"), std::nullopt);
  EXPECT_EQ(bundle_.infoText(""), std::nullopt);
}

TEST(Bundle, applicationBundle_isOneWhoseExtensionIsExactlyApp) {
  const auto isApplication = [](const std::string& path) {
    FakeBundle bundle;
    bundle.path = path;
    return isApplicationBundle(bundle);
  };
  for (const char* path : {"/Applications/Cirrovane.app", "/Applications/Cirrovane.app/", "Cirrovane.app",
                           "/Applications/Cirrovane 2.0.app//"}) {
    EXPECT_TRUE(isApplication(path)) << path;
  }
  for (const char* path : {"", "/", "/usr/bin/cirrovane", "/Applications/Cirrovane.App", "/Applications/Cirrovane.apps",
                           "/Applications/Cirrovane.app.old", "/Applications/app", "/Applications/.app",
                           "/Applications/Cirrovaneapp", "/Applications/Cirrovane.app/Contents/MacOS/Cirrovane"}) {
    EXPECT_FALSE(isApplication(path)) << path;
  }
}

}  // namespace
}  // namespace cirrovane::test
