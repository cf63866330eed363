#include "tests/demo/DemoMacFixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

class BrewTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  ChildResult brew(const std::vector<std::string>& arguments) const {
    return onMac("/opt/homebrew/bin/brew", arguments);
  }
  std::string tool(const std::string& name) const { return root() + "/opt/homebrew/bin/" + name; }
};

TEST_F(BrewTest, install_everyFormula_makesItsCommand) {
  const std::map<std::string, std::string> commands = {{"smartmontools", "smartctl"},
                                                       {"iperf3", "iperf3"},
                                                       {"ifstat", "ifstat"},
                                                       {"mtr", "mtr"},
                                                       {"htop", "htop"},
                                                       {"speedtest-cli", "speedtest-cli"},
                                                       {"btop", "btop"},
                                                       {"fswatch", "fswatch"},
                                                       {"lnav", "lnav"}};
  for (const auto& [formula, command] : commands) {
    EXPECT_FALSE(exists(tool(command))) << command;
    const ChildResult result = brew({"install", formula});
    EXPECT_EQ(result.exitStatus, 0) << formula;
    EXPECT_THAT(result.out, AllOf(StartsWith("==> Fetching " + formula + "\n==> Pouring " + formula + "--"),
                                  HasSubstr("/opt/homebrew/bin/" + command)));
    EXPECT_EQ(result.err, "") << formula;

    const ChildResult found = onMac("/usr/bin/which", {command}, {{}, {{"PATH", "/opt/homebrew/bin"}}});
    EXPECT_EQ(found.exitStatus, 0) << command;
    EXPECT_EQ(found.out, "/opt/homebrew/bin/" + command + "\n");

    const ChildResult answer = onMac("/opt/homebrew/bin/" + command, {});
    EXPECT_EQ(answer.exitStatus, 0) << command;
    EXPECT_THAT(answer.out, StartsWith(command + " is installed on this demo Mac"));
  }
}

TEST_F(BrewTest, install_severalFormulas_makesAll) {
  EXPECT_EQ(brew({"install", "htop", "jq", "smartmontools"}).exitStatus, 0);
  EXPECT_TRUE(exists(tool("htop")));
  EXPECT_TRUE(exists(tool("smartctl")));
}

TEST_F(BrewTest, install_done_leavesNothingElse) {
  const std::size_t before = treeContent(root()).size();
  EXPECT_EQ(brew({"install", "htop"}).exitStatus, 0);
  EXPECT_EQ(treeContent(root()).size(), before + 1);
}

TEST_F(BrewTest, install_temperatureSensorTakenAway_measuresAgain) {
  std::filesystem::remove(tool("osx-cpu-temp"));
  EXPECT_EQ(brew({"install", "osx-cpu-temp"}).exitStatus, 0);
  EXPECT_EQ(onMac("/opt/homebrew/bin/osx-cpu-temp", {}).out, "61.8\u00b0C\n");
}

TEST_F(BrewTest, install_installed_saysSoAndSucceedsEvenWithoutNetwork) {
  writeFile(root() + "/network.txt", "off\n");
  for (const std::string formula : {"osx-cpu-temp", "jq"}) {
    const ChildResult result = brew({"install", formula});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, MatchesRegex("Warning: " + formula + " [0-9.]+ is already installed and up-to-date.\n"));
  }
}

TEST_F(BrewTest, install_unknownFormula_fails) {
  for (const std::string formula : {"cheese", "", "*", "../bin/sh", "smartctl"}) {
    const TreeContent before = treeContent(root());
    const ChildResult result = brew({"install", formula});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "Error: No available formula with the name \"" + formula + "\".\n");
    EXPECT_EQ(treeContent(root()), before);
  }
}

TEST_F(BrewTest, install_networkOff_failsAndInstallsNothing) {
  writeFile(root() + "/network.txt", "off\n");
  const ChildResult result = brew({"install", "htop"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, AllOf(HasSubstr("Could not resolve host"), HasSubstr("Error: htop: ")));
  EXPECT_FALSE(exists(tool("htop")));
}

TEST_F(BrewTest, install_cannotBeWritten_failsAndLeavesNothing) {
  std::filesystem::remove(root() + "/opt/homebrew/Library/tool");
  const TreeContent before = treeContent(root());
  const ChildResult result = brew({"install", "htop"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, HasSubstr("Error: htop: Could not be installed.\n"));
  EXPECT_EQ(treeContent(root()), before);
}

TEST_F(BrewTest, version_asked_prints) {
  const ChildResult result = brew({"--version"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, MatchesRegex("Homebrew [0-9.]+\n"));
}

TEST_F(BrewTest, wrongUsage_anyKind_fails) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, {"install"}, {"bake"}, {"install", "--cheese"}}) {
    const ChildResult result = brew(arguments);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
}

}  // namespace
}  // namespace cirrovane::test
