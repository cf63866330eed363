#include "base/JSONReader.h"
#include "stores/WatchlistStore.h"
#include "tests/stores/StoreFixture.h"

#include <string>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WatchlistStoreTest : public StoreTest {
 protected:
  WatchlistStore open() { return {fileSystem_, storage_, collation_}; }
  std::string filePath() const { return storePath("watchlist.json"); }
  std::vector<WatchFolder> stored() const {
    return decodeJSON<std::vector<WatchFolder>>(readFile(filePath())).value_or(std::vector<WatchFolder>());
  }
  static std::vector<std::string> namesOf(const std::vector<WatchFolder>& folders) {
    std::vector<std::string> names;
    for (const WatchFolder& folder : folders) {
      names.push_back(folder.name);
    }
    return names;
  }
};

TEST_F(WatchlistStoreTest, firstLaunchWithICloudDrive_watchesItAndWritesAtOnce) {
  makeICloudDrive();
  const WatchlistStore store = open();
  ASSERT_EQ(store.folders().size(), 1U);
  EXPECT_EQ(store.folders()[0].name, "iCloud Drive");
  EXPECT_EQ(store.folders()[0].path, iCloudDrivePath());
  EXPECT_EQ(stored(), store.folders());
  EXPECT_EQ(store.saveFailure(), std::nullopt);
}

TEST_F(WatchlistStoreTest, firstLaunchWithoutICloudDrive_isEmptyAndWritesNothing) {
  const WatchlistStore store = open();
  EXPECT_THAT(store.folders(), IsEmpty());
  EXPECT_FALSE(fileSystem_.exists(storePath("")));
}

TEST_F(WatchlistStoreTest, fileWithAnEmptyArray_getsTheDefaultFolder) {
  makeICloudDrive();
  writeFile(filePath(), "[]");
  const WatchlistStore store = open();
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("iCloud Drive"));
  EXPECT_EQ(stored(), store.folders());
}

TEST_F(WatchlistStoreTest, corruptFile_isAnEmptyListAndStaysWhereItIs) {
  writeFile(filePath(), "[{]");
  const WatchlistStore store = open();
  EXPECT_THAT(store.folders(), IsEmpty());
  EXPECT_EQ(readFile(filePath()), "[{]");
}

TEST_F(WatchlistStoreTest, corruptFileWithICloudDrive_isKeptAsideBeforeItIsOverwritten) {
  makeICloudDrive();
  writeFile(filePath(), "[{]");
  const WatchlistStore store = open();
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("iCloud Drive"));
  EXPECT_EQ(stored(), store.folders());
  EXPECT_EQ(readFile(filePath() + ".unreadable"), "[{]");
}

TEST_F(WatchlistStoreTest, samePathTwice_isAddedOnce) {
  WatchlistStore store = open();
  store.addFolder("/Users/a/Docs");
  const std::vector<WatchFolder> before = store.folders();
  const std::string textBefore = readFile(filePath());
  int publications = 0;
  const Subscription subscription = store.publishedFolders().observe([&](const auto&) { ++publications; });
  store.addFolder("/Users/a/Docs");
  EXPECT_EQ(store.folders(), before);
  EXPECT_EQ(readFile(filePath()), textBefore);
  EXPECT_EQ(publications, 0);
}

TEST_F(WatchlistStoreTest, trailingSlashOrOtherCase_isAnotherFolder) {
  WatchlistStore store = open();
  store.addFolder("/Users/a/Docs");
  store.addFolder("/Users/a/Docs/");
  store.addFolder("/users/a/docs");
  EXPECT_EQ(store.folders().size(), 3U);
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("Docs", "Docs", "docs"));
}

TEST_F(WatchlistStoreTest, folderInAnyContainer_isNamedICloudDrive) {
  WatchlistStore store = open();
  store.addFolder("/Users/a/Library/Mobile Documents/iCloud~com~example~notes/Documents");
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("iCloud Drive"));
}

TEST_F(WatchlistStoreTest, betaAlphaAndLowerCaseAlpha_areSortedStably) {
  WatchlistStore store = open();
  store.addFolder("/x/beta");
  store.addFolder("/x/Alpha");
  store.addFolder("/x/alpha");
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("Alpha", "alpha", "beta"));
  EXPECT_EQ(stored(), store.folders());
}

TEST_F(WatchlistStoreTest, namesOfALanguage_areSortedAsItDoes) {
  WatchlistStore store = open();
  for (const char* name : {"/x/zebra", "/x/\u00c4pfel", "/x/apfel", "/x/Zoo"}) {
    store.addFolder(name);
  }
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("apfel", "\u00c4pfel", "zebra", "Zoo"));
}

TEST_F(WatchlistStoreTest, removal_keepsTheOthersInOrderAndSaves) {
  WatchlistStore store = open();
  store.addFolder("/x/a");
  store.addFolder("/x/b");
  store.addFolder("/x/c");
  store.removeFolder(store.folders()[1].id);
  EXPECT_THAT(namesOf(store.folders()), ElementsAre("a", "c"));
  EXPECT_EQ(stored(), store.folders());
}

TEST_F(WatchlistStoreTest, restored_isTheSameEntryInItsPlaceAndSaved) {
  WatchlistStore store = open();
  store.addFolder("/Users/test/Alpha");
  store.addFolder("/Users/test/Beta");
  const std::vector<WatchFolder> before = store.folders();
  store.removeFolder(UUID(before[0].id));
  store.restoreFolder(before[0]);
  store.restoreFolder(before[0]);
  EXPECT_EQ(store.folders(), before);
  EXPECT_EQ(open().folders(), before);
}

TEST_F(WatchlistStoreTest, removalOfTheLastFolder_bringsNoDefaultUntilTheNextLaunch) {
  makeICloudDrive();
  WatchlistStore store = open();
  store.removeFolder(store.folders()[0].id);
  EXPECT_THAT(store.folders(), IsEmpty());
  EXPECT_EQ(readFile(filePath()), "[]\n");
  EXPECT_THAT(namesOf(open().folders()), ElementsAre("iCloud Drive"));
}

TEST_F(WatchlistStoreTest, observers_areToldBeforeTheChange) {
  WatchlistStore store = open();
  std::vector<std::size_t> sizes;
  const Subscription subscription = store.publishedFolders().observe([&](const std::vector<WatchFolder>& next) {
    sizes.push_back(store.folders().size());
    sizes.push_back(next.size());
  });
  store.addFolder("/x/a");
  store.removeFolder(store.folders()[0].id);
  EXPECT_THAT(sizes, ElementsAre(0, 1, 1, 0));
}

TEST_F(WatchlistStoreTest, secondOpening_findsTheSameFolders) {
  WatchlistStore store = open();
  store.addFolder("/x/a");
  store.addFolder(
      "/x/\xff"
      "b");
  const WatchlistStore again = open();
  ASSERT_EQ(again.folders().size(), 2U);
  EXPECT_EQ(again.folders()[0], store.folders()[0]);
  EXPECT_EQ(again.folders()[1].id, store.folders()[1].id);
}

TEST_F(WatchlistStoreTest, fileOfAnotherWriter_loads) {
  writeFile(filePath(),
            "[\n\n  {\n    \"path\" : \"\\/Users\\/a\\/Docs\",\n    \"colour\" : null,\n    \"name\" : \"Docs\",\n"
            "    \"id\" : \"6f9619ff-8b86-d011-b42d-00cf4fc964ff\"\n  }\n]");
  const WatchlistStore store = open();
  ASSERT_EQ(store.folders().size(), 1U);
  EXPECT_EQ(store.folders()[0].path, "/Users/a/Docs");
  EXPECT_EQ(store.folders()[0].id.text(), "6F9619FF-8B86-D011-B42D-00CF4FC964FF");
}

TEST_F(WatchlistStoreTest, fileAndFolder_areTheUsersAlone) {
  WatchlistStore store = open();
  store.addFolder("/x/a");
  struct stat status {};
  ASSERT_EQ(stat(filePath().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
  ASSERT_EQ(stat(storePath("").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST_F(WatchlistStoreTest, writtenForm_isSortedAndPretty) {
  WatchlistStore store = open();
  store.addFolder("/x/a");
  EXPECT_EQ(readFile(filePath()), "[\n  {\n    \"id\": \"" + store.folders()[0].id.text() +
                                      "\",\n    \"name\": \"a\",\n    \"path\": \"/x/a\"\n  }\n]\n");
}

TEST_F(WatchlistStoreTest, fileInTheFoldersPlace_changesTheListAndReportsTheSave) {
  writeFile(homePath() + "/Library/Application Support/com.quillmere.Cirrovane", "in the way");
  WatchlistStore store = open();
  store.addFolder("/x/a");
  EXPECT_EQ(store.folders().size(), 1U);
  EXPECT_NE(store.saveFailure(), std::nullopt);
}

TEST_F(WatchlistStoreTest, noApplicationSupport_usesTheHomeFolder) {
  class Elsewhere final : public FileSystem {
   public:
    bool exists(const std::string&) const override { return false; }
    std::unique_ptr<FolderWalk> enumerate(const WalkRequest& /*request*/) const override { return nullptr; }
    std::unique_ptr<ItemBatch> readItems(const std::string& /*folder*/,
                                         const std::vector<std::string>& /*names*/) const override {
      return nullptr;
    }
    VolumeCapacities volumeCapacities(const std::string& /*folder*/) const override { return {}; }
    std::string homeDirectory() const override { return "/Users/a"; }
    std::optional<std::string> applicationSupportDirectory() const override { return std::nullopt; }
  };
  EXPECT_EQ(defaultStoragePath(Elsewhere(), "watchlist.json"),
            "/Users/a/Library/Application Support/com.quillmere.Cirrovane/watchlist.json");
}

}  // namespace
}  // namespace cirrovane::test
