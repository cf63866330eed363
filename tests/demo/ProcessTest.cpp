#include "tests/demo/DemoMacFixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::HasSubstr;

class ProcessTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  std::string list() const { return root() + "/processes.txt"; }
  ChildResult pgrep(const std::string& name) const { return onMac("/usr/bin/pgrep", {"-x", name}); }

  void expectSaid(const std::string& name, const std::string& state, const std::string& said) const {
    const ChildResult result = demo({"process", root(), name, state});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, said);
    EXPECT_EQ(result.err, "");
  }
};

TEST_F(ProcessTest, process_off_isFoundNoMore) {
  expectSaid("bird", "off", "bird is now off.\n");
  EXPECT_EQ(pgrep("bird").exitStatus, 1);
  EXPECT_EQ(pgrep("cloudd").exitStatus, 0);
}

TEST_F(ProcessTest, process_on_isFound) {
  expectSaid("smartctl", "on", "smartctl is now running.\n");
  expectSaid("photoanalysisd", "on", "photoanalysisd is now running.\n");
  EXPECT_EQ(pgrep("smartctl").exitStatus, 0);
  EXPECT_NE(pgrep("smartctl").out, pgrep("photoanalysisd").out);
}

TEST_F(ProcessTest, process_offAndOn_runsUnderANewNumber) {
  const std::string before = pgrep("bird").out;
  expectSaid("bird", "off", "bird is now off.\n");
  expectSaid("bird", "on", "bird is now running.\n");
  EXPECT_EQ(pgrep("bird").exitStatus, 0);
  EXPECT_NE(pgrep("bird").out, before);
}

TEST_F(ProcessTest, process_asItIs_changesNothing) {
  const std::string before = readFile(list());
  expectSaid("bird", "on", "bird is already running.\n");
  expectSaid("smartctl", "off", "smartctl is already off.\n");
  EXPECT_EQ(readFile(list()), before);
}

TEST_F(ProcessTest, process_listWrittenByAPerson_keepsItsOtherLines) {
  writeFile(list(), "# mine\n\n 12\t bird \n13 Google Chrome\nbird\n1500 x\n14 bird");
  expectSaid("bird", "off", "bird is now off.\n");
  EXPECT_EQ(readFile(list()), "# mine\n\n13 Google Chrome\nbird\n1500 x\n");
  expectSaid("bird", "on", "bird is now running.\n");
  EXPECT_EQ(readFile(list()), "# mine\n\n13 Google Chrome\nbird\n1500 x\n1501 bird\n");
}

TEST_F(ProcessTest, process_noList_beginsOne) {
  std::filesystem::remove(list());
  expectSaid("bird", "off", "bird is already off.\n");
  expectSaid("bird", "on", "bird is now running.\n");
  EXPECT_EQ(pgrep("bird").exitStatus, 0);
}

TEST_F(ProcessTest, process_changed_leavesNoOtherFile) {
  const std::size_t before = treeContent(root()).size();
  expectSaid("bird", "off", "bird is now off.\n");
  EXPECT_EQ(treeContent(root()).size(), before);
}

TEST_F(ProcessTest, process_listThatCannotBeRead_saysSo) {
  std::filesystem::remove(list());
  makeFolder(list());
  const ChildResult result = demo({"process", root(), "bird", "on"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("processes.txt cannot be read"));
}

TEST_F(ProcessTest, process_noDemoMac_refuses) {
  makeFolder(folder_ / "empty");
  const ChildResult result = demo({"process", folder_ / "empty", "bird", "on"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("is no demo Mac"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "empty"));
}

TEST_F(ProcessTest, process_wrongUsage_exitsWithTwoAndChangesNothing) {
  const std::string before = readFile(list());
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"process"},
                                                    {"process", root()},
                                                    {"process", root(), "bird"},
                                                    {"process", root(), "bird", "ON"},
                                                    {"process", root(), "bird", "true"},
                                                    {"process", root(), "bird", "off", "more"},
                                                    {"process", "", "bird", "off"},
                                                    {"process", root(), "", "on"},
                                                    {"process", root(), "a b", "on"},
                                                    {"process", root(), "a\tb", "on"},
                                                    {"process", root(), "a\nb", "on"},
                                                    {"process", root(), "/usr/bin/bird", "on"}}) {
    const ChildResult result = demo(arguments);
    EXPECT_EQ(result.exitStatus, 2) << ::testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
  EXPECT_EQ(readFile(list()), before);
}

}  // namespace
}  // namespace cirrovane::test
