#include "tests/demo/DemoMacFixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class SettleTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  void expectSafe() const {
    for (const ChildResult& result : {check(), check({drive()}), check(pathsOf(watchlist()))}) {
      EXPECT_EQ(result.exitStatus, 0) << result.out;
      EXPECT_THAT(json::parse(result.out).at("blockers"), IsEmpty());
    }
  }
};

TEST_F(SettleTest, settle_demoMac_isSafe) {
  succeed("settle");
  expectSafe();
}

TEST_F(SettleTest, settle_demoMac_makesMissingFolderAndUnwatchesOutsideOne) {
  const json before = watchlist();
  const std::string out = succeed("settle").out;
  EXPECT_TRUE(std::filesystem::is_directory(missingFolder()));
  EXPECT_TRUE(exists(outsideFolder()));
  EXPECT_THAT(out, HasSubstr(missingFolder()));
  EXPECT_THAT(out, HasSubstr(outsideFolder()));

  json expected = json::array();
  for (const json& folder : before) {
    if (folder.at("path") != outsideFolder()) {
      expected.push_back(folder);
    }
  }
  EXPECT_EQ(expected.size(), 4u);
  EXPECT_EQ(readFile(watchlistFile()), expected.dump(2) + "\n");
  EXPECT_EQ(permissions(watchlistFile()), 0600u);
}

TEST_F(SettleTest, settle_demoMac_keepsDatesAndContents) {
  const std::string file = drive() + "/Client Work/Lindqvist Architects/Brochure v3.indd";
  const double date = modifiedAt(file);
  const std::string content = readFile(file);
  succeed("settle");
  EXPECT_EQ(modifiedAt(file), date);
  EXPECT_EQ(readFile(file), content);
}

TEST_F(SettleTest, settle_settledMac_changesNothing) {
  succeed("settle");
  const TreeContent before = treeContent(root());
  EXPECT_THAT(succeed("settle").out, HasSubstr("; 0 had to change"));
  EXPECT_EQ(treeContent(root()), before);
}

TEST_F(SettleTest, settle_folderInPlaceOfTheWatchlist_saysSo) {
  std::filesystem::remove(watchlistFile());
  makeFolder(watchlistFile());
  const ChildResult result = demo({"settle", root()});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("watchlist.json cannot be read: "));
}

TEST_F(SettleTest, settle_addedFiles_settlesThemToo) {
  const std::string added = drive() + "/School/Added/Plain.txt";
  writeFile(added);
  const std::map<std::string, std::string> states = {
      {drive() + "/Pending.txt", "isUploaded=false\nisUploading=true\n"},
      {drive() + "/Broken line.txt", "isUploaded\n"},
      {drive() + "/Broken value.txt", "isUploaded=perhaps\ndownloadingStatus=\n"},
      {drive() + "/Broken text.txt", "uploadingError=\xff\n"},
      {drive() + "/Package.pages/Part", "isUploaded=true\nisUploading=true\nhasUnresolvedConflicts=true\n"},
      {home() + "/Desktop/Conflict.txt", "isUploaded=false\nisUploading=false\nhasUnresolvedConflicts=true\n"},
  };
  for (const auto& [path, state] : states) {
    writeFile(path);
    setICloudAttribute(path, state);
  }
  setICloudAttribute(drive() + "/School/Added", "no line of a state\n");
  succeed("settle");
  expectSafe();
  EXPECT_TRUE(iCloudAttribute(added));
  for (const auto& [path, state] : states) {
    EXPECT_EQ(iCloudAttribute(path), iCloudAttribute(added)) << path;
  }
}

TEST_F(SettleTest, settle_addedFilesOutsideICloud_leavesThemWithoutState) {
  for (const std::string& path : {home() + "/Documents/Local.txt", drive() + "/.DS_Store"}) {
    writeFile(path);
    succeed("settle");
    EXPECT_EQ(iCloudAttribute(path), std::nullopt) << path;
  }
}

TEST_F(SettleTest, settle_stateWithUnknownLines_keepsThem) {
  const std::string file = drive() + "/Reading list.txt";
  setICloudAttribute(file, "sharedBy=Anna\nisUploaded=false\n");
  succeed("settle");
  EXPECT_THAT(*iCloudAttribute(file), HasSubstr("sharedBy=Anna\nisUploaded=true\n"));
}

TEST_F(SettleTest, settle_linkToOutside_leavesTheOutsideAlone) {
  writeFile(folder_ / "elsewhere/File.txt");
  setICloudAttribute(folder_ / "elsewhere/File.txt", "isUploaded=false\n");
  std::filesystem::create_directory_symlink(folder_ / "elsewhere", drive() + "/Link");
  std::filesystem::create_symlink(folder_ / "elsewhere/File.txt", drive() + "/Link.txt");
  succeed("settle");
  expectSafe();
  EXPECT_EQ(iCloudAttribute(folder_ / "elsewhere/File.txt"), "isUploaded=false\n");
}

TEST_F(SettleTest, settle_addedWatchedFolders_makesOrUnwatchesThem) {
  const std::string inside = drive() + "/Garden/Plans";
  const std::string outside = home() + "/Movies";
  const std::string otherMac = folder_ / "other/Library/Mobile Documents/com~apple~CloudDocs/Gone";
  json list = watchlist();
  for (const std::string& path : {inside, outside, otherMac}) {
    list.push_back({{"id", "00000000-0000-4000-8000-000000000001"}, {"name", "Mine"}, {"path", path}});
  }
  writeWatchlist(list);
  succeed("settle");
  expectSafe();
  EXPECT_THAT(pathsOf(watchlist()), Contains(inside));
  EXPECT_THAT(pathsOf(watchlist()), Not(Contains(outside)));
  EXPECT_THAT(pathsOf(watchlist()), Not(Contains(otherMac)));
  EXPECT_FALSE(exists(outside));
  EXPECT_FALSE(exists(folder_ / "other"));
}

TEST_F(SettleTest, settle_unreadableWatchlist_leavesIt) {
  for (const std::string text : {"", "{}", "[{\"id\": 1}]", "nonsense"}) {
    writeFile(watchlistFile(), text);
    succeed("settle");
    EXPECT_EQ(readFile(watchlistFile()), text);
  }
  std::filesystem::remove(watchlistFile());
  succeed("settle");
  EXPECT_FALSE(exists(watchlistFile()));
}

TEST_F(SettleTest, settle_movedMac_watchesTheFoldersInTheirNewPlace) {
  std::filesystem::rename(root(), folder_ / "first");
  std::filesystem::create_directory(root());
  std::filesystem::rename(folder_ / "first", root() + "/moved");
  EXPECT_EQ(demo({"settle", root() + "/moved"}).exitStatus, 0);
  const std::string file = root() + "/moved" + watchlistFile().substr(root().size());
  for (const std::string& path : pathsOf(json::parse(readFile(file)))) {
    EXPECT_TRUE(path.starts_with(root() + "/moved/")) << path;
    EXPECT_TRUE(exists(path)) << path;
  }
  EXPECT_FALSE(exists(missingFolder()));
}

TEST_F(SettleTest, settle_noDemoMac_refuses) {
  std::filesystem::remove(root() + "/.cirrovane-demo-mac");
  const TreeContent before = treeContent(root());
  for (const std::string& target : {root(), folder_ / "nothing"}) {
    const ChildResult result = demo({"settle", target});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_THAT(result.err, HasSubstr("is no demo Mac"));
  }
  EXPECT_EQ(treeContent(root()), before);
  EXPECT_FALSE(exists(folder_ / "nothing"));
}

}  // namespace
}  // namespace cirrovane::test
