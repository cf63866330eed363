#include "tests/cli/HealthyMac.h"

#include <cstdio>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A demo Mac, whose Homebrew works.
class ToolsTest : public testing::Test {
 protected:
  ToolsTest() { EXPECT_EQ(demo({"create", root_.path()}), 0); }

  static int demo(const std::vector<std::string>& arguments) {
    return runProgram(CIRROVANE_BIN_DIR "/cirrovane-demo-mac", arguments).exitStatus.value_or(-1);
  }
  ChildResult tools(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--mac-root", root_.path(), "tools"});
    return ctl(arguments);
  }
  bool isInstalled(const std::string& name) const {
    for (const json& tool : parsed(tools({"--json"}).out)) {
      if (tool["name"] == name) {
        return tool["installed"];
      }
    }
    ADD_FAILURE() << name << " is not listed";
    return false;
  }

  TemporaryFolder root_{CIRROVANE_TEST_DIR};
};

TEST_F(ToolsTest, list_hasEveryToolWithItsFields) {
  const json list = parsed(tools({"--json"}).out);
  ASSERT_EQ(list.size(), 11U);
  EXPECT_EQ(list[1]["name"], "smartmontools");
  EXPECT_EQ(list[1]["command"], "smartctl");
  EXPECT_EQ(list[1]["installCommand"], "brew install smartmontools");
  EXPECT_EQ(list[1]["purpose"], "Reads SMART storage health details.");
  EXPECT_EQ(list[1]["unlocks"], "Deeper disk risk diagnostics in Storage tab.");
  EXPECT_EQ(list[1]["installed"], false);
  EXPECT_EQ(list[1].size(), 6U);
  EXPECT_EQ(list[0]["installed"], true);
}

TEST_F(ToolsTest, list_opensNoStore) {
  const HealthyMac mac;
  EXPECT_EQ(mac.run({"tools"}).exitStatus, 0);
  EXPECT_THAT(namesIn(mac.storeFolder()), IsEmpty());
}

TEST_F(ToolsTest, text_saysWhatIsMissingAndHowToGetIt) {
  const ChildResult result = tools({});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, StartsWith("installed      osx-cpu-temp"));
  EXPECT_THAT(result.out, HasSubstr("not installed  smartmontools"));
  EXPECT_THAT(result.out, HasSubstr("brew install smartmontools"));
}

TEST_F(ToolsTest, install_byNameOrByCommand_installs) {
  const ChildResult byCommand = tools({"install", "smartctl"});
  EXPECT_EQ(byCommand.exitStatus, 0);
  EXPECT_EQ(byCommand.out, "Install complete\n");
  EXPECT_TRUE(isInstalled("smartmontools"));
  const ChildResult byName = tools({"install", "htop", "--json"});
  EXPECT_EQ(byName.exitStatus, 0);
  EXPECT_EQ(parsed(byName.out).size(), 11U);
  EXPECT_TRUE(isInstalled("htop"));
}

TEST_F(ToolsTest, install_ofAnUnknownTool_gives3) {
  const ChildResult result = tools({"install", "nonsense"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, HasSubstr("There is no tool nonsense."));
}

TEST_F(ToolsTest, install_thatFails_gives3) {
  ASSERT_EQ(demo({"network", root_.path(), "off"}), 0);
  const ChildResult result = tools({"install", "htop"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("Install failed"));
  EXPECT_FALSE(isInstalled("htop"));
}

TEST_F(ToolsTest, install_withoutHomebrew_gives3) {
  ASSERT_EQ(std::remove((root_ / "opt/homebrew/bin/brew").c_str()), 0);
  const ChildResult result = tools({"install", "htop"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("Homebrew not found. Install Homebrew first to use one-click installs."));
}

TEST_F(ToolsTest, install_withoutAName_isWrongUsage) {
  EXPECT_EQ(tools({"install"}).exitStatus, 2);
}

}  // namespace
}  // namespace cirrovane::test
