#include "platform/linux/macroot/RootDisk.h"
#include "platform/posix/PosixCommandRunner.h"
#include "tests/support/TemporaryFolder.h"

#include <optional>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class RootCommandsTest : public testing::Test {
 protected:
  void describe(const std::string& facts) const { writeFile(folder_ / "machine.json", facts); }
  /// A command of the Mac's disk that tells about itself.
  void addCommand(const std::string& path, const std::string& script) const {
    writeFile(folder_.path() + path, "#!/bin/sh\n" + script + "\n");
    chmod((folder_.path() + path).c_str(), 0755);
  }
  std::optional<std::string> outputOf(const std::string& path) const {
    const MacRoot root = *MacRoot::open(folder_.path());
    const auto result = commandRunnerOf(root)->run(path, {}, CommandOutput::collected, std::nullopt);
    return result ? std::optional(result->output) : std::nullopt;
  }
  bool isExecutable(const std::string& path) const {
    const MacRoot root = *MacRoot::open(folder_.path());
    return commandRunnerOf(root)->isExecutable(path);
  }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

TEST_F(RootCommandsTest, path_ofTheMac_leadsIntoTheRoot) {
  addCommand("/usr/bin/tool", "echo \"$0\"");
  EXPECT_EQ(outputOf("/usr/bin/tool"), folder_.path() + "/usr/bin/tool\n");
  EXPECT_TRUE(isExecutable("/usr/bin/tool"));
}

TEST_F(RootCommandsTest, path_insideOfTheRootAlready_staysAsItIs) {
  addCommand("/usr/bin/tool", "echo \"$0\"");
  EXPECT_EQ(outputOf(folder_ / "usr/bin/tool"), folder_.path() + "/usr/bin/tool\n");
  EXPECT_TRUE(isExecutable(folder_ / "usr/bin/tool"));
}

TEST_F(RootCommandsTest, path_besideTheRootWithItsNameAsBeginning_leadsIntoTheRoot) {
  addCommand(folder_.path() + "-other/tool", "echo inside");
  EXPECT_EQ(outputOf(folder_.path() + "-other/tool"), "inside\n");
}

TEST_F(RootCommandsTest, path_upAndAwayFromTheRoot_staysInside) {
  EXPECT_EQ(outputOf("/../../../../../../../../bin/echo"), std::nullopt);
  EXPECT_EQ(outputOf(folder_ / "../../../../../../../../../bin/echo"), std::nullopt);
}

TEST_F(RootCommandsTest, command_ofTheHostAlone_isNotLaunched) {
  EXPECT_EQ(outputOf("/bin/echo"), std::nullopt);
  EXPECT_FALSE(isExecutable("/bin/echo"));
}

TEST(PosixCommandRunner, command_withNothingSaid_isTheHosts) {
  const auto result = PosixCommandRunner().run("/bin/echo", {"a"}, CommandOutput::collected, std::nullopt);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->output, "a\n");
}

TEST_F(RootCommandsTest, environment_described_isWhatChildrenGet) {
  describe(R"({"environment": {"PATH": "/bin:/usr/bin", "ONE": "1", "number": 5}})");
  addCommand("/tool", "env | grep -v -e ^PWD= -e ^_= | sort");
  EXPECT_EQ(outputOf("/tool"), "ONE=1\nPATH=/bin:/usr/bin\n");
}

TEST_F(RootCommandsTest, environment_notDescribed_isOurs) {
  describe("{}");
  setenv("CIRROVANE_TEST_VARIABLE", "ours", 1);
  addCommand("/tool", "echo $CIRROVANE_TEST_VARIABLE");
  EXPECT_EQ(outputOf("/tool"), "ours\n");
  unsetenv("CIRROVANE_TEST_VARIABLE");
}

TEST_F(RootCommandsTest, environment_changedBetweenRuns_isReadAfresh) {
  describe(R"({"environment": {"WORD": "one"}})");
  addCommand("/tool", "echo $WORD");
  const MacRoot root = *MacRoot::open(folder_.path());
  const auto runner = commandRunnerOf(root);
  EXPECT_EQ(runner->run("/tool", {}, CommandOutput::collected, std::nullopt)->output, "one\n");
  describe(R"({"environment": {"WORD": "two"}})");
  EXPECT_EQ(runner->run("/tool", {}, CommandOutput::collected, std::nullopt)->output, "two\n");
}

}  // namespace
}  // namespace cirrovane::test
