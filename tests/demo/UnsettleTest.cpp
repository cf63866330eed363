#include "tests/demo/DemoMacFixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using ::testing::Contains;
using ::testing::HasSubstr;

constexpr double kLongestTest = 900;

class UnsettleTest : public DemoMacTest {
 protected:
  void SetUp() override {
    succeed("create");
    first_ = treeContent(root());
  }

  TreeContent first_;
};

TEST_F(UnsettleTest, unsettle_settledMac_restoresEverything) {
  succeed("settle");
  EXPECT_NE(treeContent(root()), first_);
  succeed("unsettle");
  EXPECT_EQ(treeContent(root()), first_);
  EXPECT_FALSE(exists(missingFolder()));
  EXPECT_EQ(permissions(watchlistFile()), 0600u);
}

TEST_F(UnsettleTest, unsettle_settledMac_isNotSafeForEveryReason) {
  succeed("settle");
  succeed("unsettle");
  EXPECT_EQ(check().exitStatus, 1);
  EXPECT_EQ(reasonsOf(report({drive()})).size(), 6u);
  EXPECT_EQ(reasonsOf(report(pathsOf(watchlist()))).size(), 8u);
}

TEST_F(UnsettleTest, unsettle_twice_isTheSameAsOnce) {
  succeed("unsettle");
  EXPECT_EQ(treeContent(root()), first_);
  succeed("unsettle");
  EXPECT_EQ(treeContent(root()), first_);
}

TEST_F(UnsettleTest, unsettle_oldMac_countsAgesFromNow) {
  const std::string file = drive() + "/Client Work/Harbour Café/Menu autumn.indd";
  const double first = modifiedAt(file);
  setModified(file, first - 86'400);
  succeed("unsettle");
  EXPECT_GE(modifiedAt(file), first);
  EXPECT_LT(modifiedAt(file), first + kLongestTest);
}

TEST_F(UnsettleTest, unsettle_changedStates_restoresThem) {
  setICloudAttribute(drive() + "/Reading list.txt", "isUploaded=false\n");
  setICloudAttribute(outsideFolder() + "/Ideas.txt", "isUploaded=false\n");
  succeed("unsettle");
  EXPECT_EQ(treeContent(root()), first_);
}

TEST_F(UnsettleTest, unsettle_sampleFilesGone_makesThemAgain) {
  std::filesystem::remove_all(drive() + "/School");
  std::filesystem::remove_all(outsideFolder());
  std::filesystem::remove(watchlistFile());
  succeed("unsettle");
  EXPECT_EQ(treeContent(root()), first_);
}

TEST_F(UnsettleTest, unsettle_sampleFileRewritten_keepsItsContent) {
  const std::string file = drive() + "/Invoices/Expenses Q4.csv";
  const auto state = iCloudAttribute(file);
  succeed("settle");
  writeFile(file, "my own");
  succeed("unsettle");
  EXPECT_EQ(readFile(file), "my own");
  EXPECT_EQ(iCloudAttribute(file), state);
}

TEST_F(UnsettleTest, unsettle_addedFiles_leavesThemAlone) {
  const std::string file = drive() + "/School/Mine.txt";
  const std::string link = drive() + "/Reading list.txt";
  writeFile(file, "mine");
  setICloudAttribute(file, "isUploading=true\nmine=yes\n");
  setModified(file, 1'700'000'000);
  std::filesystem::remove(link);
  std::filesystem::create_symlink(file, link);
  succeed("unsettle");
  EXPECT_EQ(readFile(file), "mine");
  EXPECT_EQ(iCloudAttribute(file), "isUploading=true\nmine=yes\n");
  EXPECT_EQ(modifiedAt(file), 1'700'000'000);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST_F(UnsettleTest, unsettle_filesInTheMissingFolder_keepsThemAndSaysSo) {
  succeed("settle");
  writeFile(missingFolder() + "/Ticket.pdf", "mine");
  const ChildResult result = demo({"unsettle", root()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr(missingFolder()));
  EXPECT_EQ(readFile(missingFolder() + "/Ticket.pdf"), "mine");
  EXPECT_EQ(watchlist().size(), 5u);

  std::filesystem::remove(missingFolder() + "/Ticket.pdf");
  succeed("unsettle");
  EXPECT_EQ(treeContent(root()), first_);
}

TEST_F(UnsettleTest, unsettle_changedWatchlist_restoresTheFirstFoldersAndKeepsTheOthers) {
  const json before = watchlist();
  // "Invoices" was taken off and added again by the application, which makes a new entry of it.
  json list = json::array(
      {{{"id", "00000000-0000-4000-8000-000000000001"}, {"name", "iCloud Drive"}, {"path", drive() + "/Invoices"}},
       {{"id", "00000000-0000-4000-8000-000000000002"}, {"name", "artwork"}, {"path", drive() + "/Artwork"}}});
  writeWatchlist(list);
  succeed("unsettle");
  json expected = before;
  expected.insert(expected.begin(), list[1]);
  EXPECT_EQ(watchlist(), expected);
}

TEST_F(UnsettleTest, unsettle_changedFacts_keepsThem) {
  EXPECT_EQ(demo({"fact", root(), "lowPowerMode", "true"}).exitStatus, 0);
  const std::string facts = readFile(root() + "/machine.json");
  succeed("unsettle");
  EXPECT_EQ(readFile(root() + "/machine.json"), facts);
}

TEST_F(UnsettleTest, unsettle_noDemoMac_refuses) {
  std::filesystem::remove(root() + "/.cirrovane-demo-mac");
  std::filesystem::remove(watchlistFile());
  const TreeContent before = treeContent(root());
  const ChildResult result = demo({"unsettle", root()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("is no demo Mac"));
  EXPECT_EQ(treeContent(root()), before);
}

}  // namespace
}  // namespace cirrovane::test
