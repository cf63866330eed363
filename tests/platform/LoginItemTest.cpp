#include "platform/linux/host/AutostartEntry.h"
#include "platform/linux/host/AutostartLoginItem.h"
#include "platform/linux/macroot/RootLoginItem.h"
#include "platform/posix/PosixFileStorage.h"
#include "tests/support/FakeFileStorage.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;

bool everyProgramIsThere(const std::string& /*path*/) {
  return true;
}

bool starts(const std::string& keys) {
  return startsAtLogin("[Desktop Entry]\n" + keys, everyProgramIsThere);
}

TEST(AutostartEntry, ofAProgram_startsItUnlessHidden) {
  EXPECT_TRUE(startsAtLogin(*autostartEntry("/usr/bin/cirrovane", false), everyProgramIsThere));
  EXPECT_FALSE(startsAtLogin(*autostartEntry("/usr/bin/cirrovane", true), everyProgramIsThere));
}

TEST(AutostartEntry, oddPath_isQuotedForTheFileAndForTheCommandLine) {
  const std::string path = R"(/a b/"$x`\50%)";
  const std::string entry = *autostartEntry(path, false);
  EXPECT_THAT(entry, HasSubstr(R"(Exec="/a b/\\"\\$x\\`\\\\50%%")"
                               "\n"));
  std::string tried;
  EXPECT_TRUE(startsAtLogin(entry, [&tried](const std::string& program) {
    tried = program;
    return true;
  }));
  EXPECT_EQ(tried, path);
}

TEST(AutostartEntry, pathThatNoEntryCanName_isRefused) {
  for (const char* path : {"", "cirrovane", "/a\nExec=b", "/a\x7F"}) {
    EXPECT_FALSE(autostartEntry(path, false)) << path;
  }
}

TEST(StartsAtLogin, entryThatAnybodyWrote_countsByItsKeys) {
  EXPECT_TRUE(starts("Type=Application\nExec=a"));
  EXPECT_TRUE(starts("  Type = Application \r\n# Hidden=true\nExec = a --panel\nHidden=false"));
  EXPECT_TRUE(starts("Type=Application\nExec=a\n[Desktop Action panel]\nHidden=true"));
  EXPECT_FALSE(starts("Type=Application\nExec=a\nHidden=true"));
  EXPECT_FALSE(starts("Type=Application\nExec=a\nX-GNOME-Autostart-enabled=false"));
  EXPECT_FALSE(starts("Type=Application"));
  EXPECT_FALSE(starts("Exec=a"));
  EXPECT_FALSE(startsAtLogin("Type=Application\nExec=a", everyProgramIsThere));
  EXPECT_FALSE(startsAtLogin("", everyProgramIsThere));
}

TEST(StartsAtLogin, programThatIsGone_isNotStarted) {
  const std::string entry = *autostartEntry("/usr/bin/cirrovane", false);
  EXPECT_FALSE(startsAtLogin(entry, [](const std::string&) { return false; }));
}

class AutostartLoginItemTest : public testing::Test {
 protected:
  AutostartLoginItem item(const FileStorage& storage) const {
    return {[this] { return folder_ / "config"; }, [this] { return program_; }, storage};
  }
  LoginItemState state() const { return *item(storage_).state(); }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  PosixFileStorage storage_;
  std::string program_ = "/bin/sh";
  std::string file_ = folder_ / "config/autostart/com.quillmere.Cirrovane.desktop";
};

TEST_F(AutostartLoginItemTest, switchedOnAndOff_isSoForEverybody) {
  EXPECT_EQ(state(), LoginItemState::off);
  EXPECT_EQ(item(storage_).setOn(true), std::nullopt);
  EXPECT_EQ(state(), LoginItemState::on);
  EXPECT_THAT(readFile(file_), HasSubstr("\nExec=\"/bin/sh\"\n"));
  EXPECT_EQ(item(storage_).setOn(false), std::nullopt);
  EXPECT_EQ(state(), LoginItemState::off);
  EXPECT_THAT(readFile(file_), HasSubstr("\nHidden=true\n"));
}

TEST_F(AutostartLoginItemTest, entryHiddenByTheUser_isOffUntilSwitchedOn) {
  writeFile(file_, "[Desktop Entry]\nType=Application\nExec=cirrovane\nHidden=true\n");
  EXPECT_EQ(state(), LoginItemState::off);
  EXPECT_EQ(item(storage_).setOn(true), std::nullopt);
  EXPECT_EQ(state(), LoginItemState::on);
}

TEST_F(AutostartLoginItemTest, programByItsNameAlone_isLookedForAsADesktopDoes) {
  writeFile(file_, "[Desktop Entry]\nType=Application\nExec=sh\nTryExec=sh\n");
  EXPECT_EQ(state(), LoginItemState::on);
  writeFile(file_, "[Desktop Entry]\nType=Application\nExec=a\nTryExec=no-such-program-anywhere\n");
  EXPECT_EQ(state(), LoginItemState::off);
}

TEST_F(AutostartLoginItemTest, programOfAnUnknownPlace_isUnavailable) {
  program_ = "";
  EXPECT_FALSE(item(storage_).state());
  EXPECT_NE(item(storage_).setOn(true), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(AutostartLoginItemTest, writeThatFails_saysWhy) {
  FakeFileStorage broken;
  broken.failure = Failure{"The disk is full."};
  EXPECT_EQ(item(broken).setOn(true), broken.failure);
  EXPECT_EQ(*item(broken).state(), LoginItemState::off);
}

TEST(RunningProgram, isThisTest) {
  EXPECT_EQ(runningProgram(), std::filesystem::read_symlink("/proc/self/exe"));
}

class RootLoginItemTest : public testing::Test {
 protected:
  RootLoginItemTest() { describe(R"("bundle": {"path": "/Applications/Cirrovane.app"})"); }

  void describe(const std::string& facts) const { writeFile(folder_ / "machine.json", "{" + facts + "}"); }
  RootLoginItem item() const { return {*MacRoot::open(folder_.path()), storage_}; }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  PosixFileStorage storage_;
};

TEST_F(RootLoginItemTest, switchedOnAndOff_isSoInItsOwnHome) {
  EXPECT_EQ(*item().state(), LoginItemState::off);
  EXPECT_EQ(item().setOn(true), std::nullopt);
  EXPECT_EQ(*item().state(), LoginItemState::on);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Users/demo/Library/LoginItems/com.quillmere.Cirrovane.json"));
  EXPECT_EQ(item().setOn(false), std::nullopt);
  EXPECT_EQ(*item().state(), LoginItemState::off);
}

TEST_F(RootLoginItemTest, approvalNeeded_isAskedForOnlyWhenSwitchedOn) {
  describe(R"("bundle": {"path": "/Applications/Cirrovane.app"}, "loginItemApproval": "needed")");
  EXPECT_EQ(*item().state(), LoginItemState::off);
  EXPECT_EQ(item().setOn(true), std::nullopt);
  EXPECT_EQ(*item().state(), LoginItemState::needsApproval);
}

TEST_F(RootLoginItemTest, bareExecutable_isUnavailable) {
  describe(R"("bundle": {"path": "/usr/local/bin/cirrovane"})");
  EXPECT_EQ(item().state().message(), "Only an installed application can be opened at login.");
}

TEST_F(RootLoginItemTest, fileThatIsNone_countsAsOff) {
  for (const char* text : {"", "[]", "{}", R"({"isOn": 1})", "{"}) {
    writeFile(folder_ / "Users/demo/Library/LoginItems/com.quillmere.Cirrovane.json", text);
    EXPECT_EQ(*item().state(), LoginItemState::off) << text;
  }
}

}  // namespace
}  // namespace cirrovane::test
