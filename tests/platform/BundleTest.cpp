#include "platform/linux/host/HostBundle.h"
#include "platform/linux/macroot/RootBundle.h"
#include "tests/support/FakeBundle.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class RootBundleTest : public testing::Test {
 protected:
  void describe(const std::string& facts) const { writeFile(folder_ / "machine.json", facts); }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const RootBundle bundle_{*MacRoot::open((writeFile(folder_ / "machine.json", "{}"), folder_.path()))};
};

TEST_F(RootBundleTest, describedBundle_isTaken) {
  describe(R"({"bundle": {"path": "/Applications/Cirrovane.app",
                          "info": {"CFBundleShortVersionString": "1.2", "CFBundleVersion": "45"}}})");
  EXPECT_EQ(bundle_.location(), "/Applications/Cirrovane.app");
  EXPECT_EQ(bundle_.infoText("CFBundleShortVersionString"), "1.2");
  EXPECT_EQ(bundle_.infoText("CFBundleVersion"), "45");
  EXPECT_TRUE(isApplicationBundle(bundle_));
}

TEST_F(RootBundleTest, descriptionWithoutABundle_isABareProgramOfNoVersion) {
  for (const char* facts : {"{}", R"({"bundle": {}})", R"({"bundle": {"info": {}}})"}) {
    describe(facts);
    EXPECT_EQ(bundle_.location(), "") << facts;
    EXPECT_EQ(bundle_.infoText("CFBundleVersion"), std::nullopt) << facts;
    EXPECT_FALSE(isApplicationBundle(bundle_)) << facts;
  }
}

TEST_F(RootBundleTest, valuesOfOtherTypes_areAbsent) {
  describe(R"({"bundle": {"path": 7, "info": {"CFBundleVersion": 45, "SUFeedURL": null, "SUPublicEDKey": ["x"]}}})");
  EXPECT_EQ(bundle_.location(), "");
  for (const char* key : {"CFBundleVersion", "SUFeedURL", "SUPublicEDKey", "path"}) {
    EXPECT_EQ(bundle_.infoText(key), std::nullopt) << key;
  }
  describe(R"({"bundle": {"path": "/a.app", "info": "text"}})");
  EXPECT_EQ(bundle_.infoText("CFBundleVersion"), std::nullopt);
}

TEST_F(RootBundleTest, blankText_isAText) {
  describe(R"({"bundle": {"info": {"SUFeedURL": ""}}})");
  EXPECT_EQ(bundle_.infoText("SUFeedURL"), "");
}

TEST_F(RootBundleTest, description_isReadAfresh) {
  describe(R"({"bundle": {"path": "/a.app"}})");
  EXPECT_EQ(bundle_.location(), "/a.app");
  describe(R"({"bundle": {"path": "/b.app"}})");
  EXPECT_EQ(bundle_.location(), "/b.app");
}

TEST_F(RootBundleTest, descriptionThatBecameUnreadable_isNone) {
  for (const char* facts : {"", "[]", R"({"bundle": "text"})", R"({"bundle": null})"}) {
    describe(facts);
    EXPECT_EQ(bundle_.location(), "") << facts;
    EXPECT_EQ(bundle_.infoText("CFBundleVersion"), std::nullopt) << facts;
  }
}

TEST(HostBundle, location_isTheBareProgramItself) {
  const HostBundle bundle;
  EXPECT_EQ(bundle.location(), std::filesystem::read_symlink("/proc/self/exe"));
  EXPECT_FALSE(isApplicationBundle(bundle));
}

TEST(HostBundle, installedProgram_isAnApplicationInItsPrefix) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  for (const std::string& prefix : {folder / "usr", folder / "opt/Cirrovane 1.0"}) {
    writeFile(prefix + "/share/applications/com.quillmere.Cirrovane.desktop", "");
    EXPECT_EQ(applicationLocation(prefix + "/bin/cirrovane"), prefix + "/Cirrovane.app");
  }
}

TEST(HostBundle, programThatNoMenuOffers_isBare) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  writeFile(folder / "usr/share/applications/com.quillmere.Cirrovane.desktop", "");
  writeFile(folder / "build/share/applications/other.desktop", "");
  for (const std::string& program : {folder / "build/bin/cirrovane", folder / "usr/sbin/cirrovane",
                                     folder / "usr/bin/more/cirrovane", std::string("cirrovane"), std::string()}) {
    EXPECT_EQ(applicationLocation(program), program);
  }
}

TEST(HostBundle, info_isThisBuildsVersionAndNothingElse) {
  const HostBundle bundle;
  EXPECT_EQ(bundle.infoText("CFBundleShortVersionString"), CIRROVANE_VERSION);
  EXPECT_EQ(bundle.infoText("CFBundleVersion"), CIRROVANE_BUILD_NUMBER);
  EXPECT_EQ(bundle.infoText("SUFeedURL"), std::nullopt);
  EXPECT_EQ(bundle.infoText(""), std::nullopt);
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
