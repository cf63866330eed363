#include "tests/demo/DemoMacFixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::HasSubstr;

class NetworkTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  std::string reachability() const { return onMac("/usr/sbin/scutil", {"-r", "www.apple.com"}).out; }

  void expectSaid(const std::string& state, const std::string& said) const {
    const ChildResult result = demo({"network", root(), state});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, said);
    EXPECT_EQ(result.err, "");
  }
};

TEST_F(NetworkTest, network_offAndOn_commandsFollow) {
  for (int times = 0; times < 2; ++times) {
    expectSaid("off", "The network is off.\n");
    EXPECT_EQ(reachability(), "Not Reachable\n");
  }
  for (int times = 0; times < 2; ++times) {
    expectSaid("on", "The network is on.\n");
    EXPECT_EQ(reachability(), "Reachable\n");
  }
}

TEST_F(NetworkTest, network_changed_leavesNoOtherFile) {
  const std::size_t before = treeContent(root()).size();
  expectSaid("off", "The network is off.\n");
  EXPECT_EQ(readFile(root() + "/network.txt"), "off\n");
  EXPECT_EQ(treeContent(root()).size(), before);
}

TEST_F(NetworkTest, network_cannotBeWritten_saysSo) {
  std::filesystem::remove(root() + "/network.txt");
  makeFolder(root() + "/network.txt");
  const ChildResult result = demo({"network", root(), "off"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("network.txt cannot be written"));
}

TEST_F(NetworkTest, network_noDemoMac_refuses) {
  makeFolder(folder_ / "empty");
  const ChildResult result = demo({"network", folder_ / "empty", "off"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("is no demo Mac"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "empty"));
}

TEST_F(NetworkTest, network_wrongUsage_exitsWithTwoAndChangesNothing) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"network"},
                                                    {"network", root()},
                                                    {"network", root(), "Off"},
                                                    {"network", root(), "0"},
                                                    {"network", "", "off"},
                                                    {"network", root(), "off", "more"}}) {
    const ChildResult result = demo(arguments);
    EXPECT_EQ(result.exitStatus, 2) << ::testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
  EXPECT_EQ(readFile(root() + "/network.txt"), "on\n");
}

}  // namespace
}  // namespace cirrovane::test
