#include "diagnostics/OptionalTool.h"
#include "diagnostics/ToolInstaller.h"
#include "tests/support/FakeCommandRunner.h"
#include "tests/support/FakeSystemInformation.h"

#include <optional>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class ToolInstallerTest : public testing::Test {
 protected:
  ToolInstallerTest() { system_.facts.environment["PATH"] = "/usr/bin:/bin"; }

  FakeCommandRunner commands_;
  FakeSystemInformation system_;
  ToolInstaller installer_{commands_, system_};
};

TEST(OptionalTool, catalogue_hasElevenToolsOfTheirOwnCommands) {
  std::set<std::string> commands;
  for (const OptionalTool& tool : optionalTools()) {
    commands.emplace(tool.command);
    EXPECT_EQ(tool.installCommand, "brew install " + std::string(tool.name));
    EXPECT_TRUE(tool.purpose.ends_with('.')) << tool.name;
    EXPECT_TRUE(tool.unlocks.ends_with('.')) << tool.name;
  }
  EXPECT_EQ(commands.size(), 11U);
  EXPECT_EQ(optionalTools()[0].name, "osx-cpu-temp");
  EXPECT_EQ(optionalTools()[1].name, "smartmontools");
  EXPECT_EQ(optionalTools()[1].command, "smartctl");
  EXPECT_EQ(optionalTools()[10].name, "lnav");
}

TEST_F(ToolInstallerTest, brewPath_onAppleSilicon_comesFirst) {
  EXPECT_EQ(installer_.brewPath(), std::nullopt);
  commands_.makeExecutable("/usr/local/bin/brew");
  EXPECT_EQ(installer_.brewPath(), "/usr/local/bin/brew");
  commands_.makeExecutable("/opt/homebrew/bin/brew");
  EXPECT_EQ(installer_.brewPath(), "/opt/homebrew/bin/brew");
}

TEST_F(ToolInstallerTest, tool_inTheSearchPath_isInstalled) {
  system_.facts.environment["PATH"] = "/somewhere::/else";
  EXPECT_FALSE(installer_.checkInstalled("jq"));
  commands_.makeExecutable("/else/jq");
  EXPECT_TRUE(installer_.checkInstalled("jq"));
}

TEST_F(ToolInstallerTest, tool_ofHomebrew_isFoundWithoutASearchPath) {
  commands_.makeExecutable("/opt/homebrew/bin/jq");
  EXPECT_TRUE(installer_.checkInstalled("jq"));
  system_.facts.environment["PATH"] = "";
  EXPECT_TRUE(installer_.checkInstalled("jq"));
  system_.facts.environment.erase("PATH");
  EXPECT_TRUE(installer_.checkInstalled("jq"));
}

TEST_F(ToolInstallerTest, tool_inEachOfTheUsualFolders_isInstalled) {
  for (const std::string folder : {"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin", "/bin", "/usr/sbin", "/sbin"}) {
    FakeCommandRunner commands;
    commands.makeExecutable(folder + "/htop");
    EXPECT_TRUE(ToolInstaller(commands, system_).checkInstalled("htop")) << folder;
  }
}

TEST_F(ToolInstallerTest, emptyPieceOfTheSearchPath_isNoFolder) {
  system_.facts.environment["PATH"] = ":";
  commands_.makeExecutable("/jq");
  EXPECT_FALSE(installer_.checkInstalled("jq"));
}

TEST_F(ToolInstallerTest, command_withASlash_isThatPathAlone) {
  commands_.makeExecutable("/usr/bin/jq");
  EXPECT_TRUE(installer_.checkInstalled("/usr/bin/jq"));
  EXPECT_FALSE(installer_.checkInstalled("/opt/jq"));
  EXPECT_FALSE(installer_.checkInstalled("bin/jq"));
}

TEST_F(ToolInstallerTest, install_runsHomebrewWithTheFormula) {
  commands_.answer({"/opt/homebrew/bin/brew", "install", "smartmontools"}, std::string("poured"));
  EXPECT_TRUE(installer_.runBrewInstall("/opt/homebrew/bin/brew", "smartmontools"));
  EXPECT_THAT(commands_.ran(), ElementsAre(ElementsAre("/opt/homebrew/bin/brew", "install", "smartmontools")));
}

TEST_F(ToolInstallerTest, install_thatFailsDiesOrCannotStart_isNone) {
  EXPECT_FALSE(installer_.runBrewInstall("/opt/homebrew/bin/brew", "jq"));
  commands_.answer({"/opt/homebrew/bin/brew", "install", "jq"}, CommandResult{1, ""});
  EXPECT_FALSE(installer_.runBrewInstall("/opt/homebrew/bin/brew", "jq"));
  commands_.answer({"/opt/homebrew/bin/brew", "install", "jq"}, CommandResult{std::nullopt, ""});
  EXPECT_FALSE(installer_.runBrewInstall("/opt/homebrew/bin/brew", "jq"));
}

TEST_F(ToolInstallerTest, install_takesAsLongAsItTakes) {
  installer_.runBrewInstall("/opt/homebrew/bin/brew", "jq");
  EXPECT_THAT(commands_.limits(), testing::ElementsAre(std::nullopt));
}

}  // namespace
}  // namespace cirrovane::test
