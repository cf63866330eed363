#include "core/ICloudScanEngine.h"
#include "platform/macos/plain/MacWalk.h"
#include "tests/macos/FakeMacDisk.h"
#include "tests/support/ManualClock.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr const char* kFolder = "/Users/test/Library/Mobile Documents/com~apple~CloudDocs/Work";

/// What a walk told of one item, kept beyond its batch.
struct ToldItem {
  std::string path;
  bool hasValues = false;
  bool isDirectory = false;
  bool isEntered = false;
  std::optional<bool> isUploaded;
  std::optional<std::string> uploadingError;
  std::optional<Time> modified;
};

std::vector<ToldItem> itemsOf(const ItemBatch& batch) {
  std::vector<ToldItem> told;
  for (const Item& item : batch.items()) {
    ToldItem& copy = told.emplace_back();
    copy.path = batch.path(item);
    copy.hasValues = item.values.has_value();
    copy.isEntered = item.isEntered;
    EXPECT_TRUE(copy.path.ends_with(item.name));
    if (item.values) {
      copy.isDirectory = item.values->isDirectory;
      copy.isUploaded = item.values->isUploaded;
      copy.modified = item.values->contentModificationDate;
      if (item.values->uploadingError) {
        copy.uploadingError = std::string(*item.values->uploadingError);
      }
    }
  }
  return told;
}

std::vector<ToldItem> restOf(FolderWalk& walk) {
  std::vector<ToldItem> told;
  while (const ItemBatch* batch = walk.next()) {
    EXPECT_FALSE(batch->items().empty());
    std::ranges::move(itemsOf(*batch), std::back_inserter(told));
  }
  return told;
}

std::vector<std::string> pathsOf(const std::vector<ToldItem>& items) {
  std::vector<std::string> paths;
  std::ranges::transform(items, std::back_inserter(paths), &ToldItem::path);
  return paths;
}

/// The order that one reader would walk in: a folder's entries, then each of its subfolders with all below.
void tellInOrder(const FakeMacNode& folder, const std::string& path, std::vector<std::string>& paths) {
  for (const auto& child : folder.children) {
    paths.push_back(path + "/" + child->name);
  }
  for (const auto& child : folder.children) {
    if (child->type == kFolderType) {
      tellInOrder(*child, path + "/" + child->name, paths);
    }
  }
}

/// Walks by this many threads; 0: on the caller's own.
class MacWalk : public testing::TestWithParam<std::size_t> {
 protected:
  std::unique_ptr<FolderWalk> start(const WalkRequest& request) const {
    return startMacWalk(request, disk_, materialization_, GetParam());
  }
  std::unique_ptr<FolderWalk> start() const { return start({kFolder}); }
  std::vector<ToldItem> walk() const { return restOf(*start()); }
  std::unique_ptr<ItemBatch> read(const std::vector<std::string>& names) const {
    return readMacItems(kFolder, names, disk_, materialization_);
  }
  FakeMacNode& root() { return disk_->root(); }
  static std::string below(const std::string& name) { return std::string(kFolder) + "/" + name; }

  const std::shared_ptr<FakeMacDisk> disk_ = std::make_shared<FakeMacDisk>(kFolder);
  FakeMaterialization materialization_;
};

INSTANTIATE_TEST_SUITE_P(Threads, MacWalk, testing::Values(0, 1, 4, 8));

TEST_P(MacWalk, nestedFolders_comeInTheOrderOfOneReader) {
  disk_->listAtMost(3);
  for (int outer = 0; outer < 5; ++outer) {
    FakeMacNode& folder = root().addFolder("folder " + std::to_string(outer));
    for (int inner = 0; inner < 4; ++inner) {
      folder.add("file " + std::to_string(inner));
      folder.addFolder("deep " + std::to_string(inner)).add("last");
    }
    folder.addFolder("empty");
    root().add("file " + std::to_string(outer));
  }
  std::vector<std::string> expected;
  tellInOrder(root(), kFolder, expected);
  const auto walk = start();
  EXPECT_EQ(pathsOf(restOf(*walk)), expected);
  EXPECT_TRUE(walk->isComplete());
}

TEST_P(MacWalk, whatTheKernelAndTheCloudSay_arrives) {
  FakeMacNode& file = root().add("file");
  file.modifiedSeconds = 1'700'000'000;
  file.isUploaded = false;
  file.uploadingError = "No room.";
  root().addFolder("folder");
  const auto items = walk();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_TRUE(items[0].hasValues);
  EXPECT_FALSE(items[0].isDirectory);
  EXPECT_EQ(items[0].isUploaded, false);
  EXPECT_EQ(items[0].uploadingError, "No room.");
  EXPECT_EQ(items[0].modified, Time(std::chrono::seconds(1'700'000'000)));
  EXPECT_TRUE(items[1].isDirectory);
  EXPECT_TRUE(items[1].isEntered);
}

TEST_P(MacWalk, hiddenItems_areSkippedWithAllBelow) {
  root().add(".hidden");
  root().addFolder(".folder").add("file");
  root().add("marked").flags = kHiddenFlag;
  FakeMacNode& marked = root().addFolder("marked folder");
  marked.flags = kHiddenFlag;
  marked.add("file");
  root().add("shown").flags = 1;
  EXPECT_EQ(pathsOf(walk()), std::vector<std::string>{below("shown")});
}

TEST_P(MacWalk, packages_areItemsOfTheCloudAndNotEntered) {
  disk_->definePackage("photoslibrary");
  FakeMacNode& library = root().addFolder("Photos.photoslibrary");
  library.add("inside");
  library.isUploaded = false;
  root().addFolder("v1.2").add("file");
  root().addFolder("v1.3").addFolder("More.photoslibrary");
  const auto items = walk();
  EXPECT_EQ(pathsOf(items), (std::vector<std::string>{below("Photos.photoslibrary"), below("v1.2"), below("v1.3"),
                                                      below("v1.2/file"), below("v1.3/More.photoslibrary")}));
  EXPECT_TRUE(items[0].isDirectory);
  EXPECT_FALSE(items[0].isEntered);
  EXPECT_EQ(items[0].isUploaded, false);
  EXPECT_EQ(disk_->extensionsAsked(), (std::vector<std::string>{"photoslibrary", "2", "3"}));
}

TEST_P(MacWalk, filesAndPackages_areAllThatTheCloudIsAskedAbout) {
  disk_->definePackage("app");
  root().addFolder("A.app");
  root().addFolder("folder").add("file");
  root().add("link", kLinkType);
  root().add("fifo", kFIFOType);
  root().add("flat.app");
  const auto items = walk();
  EXPECT_EQ(items.size(), 6U);
  EXPECT_TRUE(std::ranges::all_of(items, &ToldItem::hasValues));
  EXPECT_EQ(disk_->pathsAsked(), (std::vector<std::string>{below("A.app"), below("flat.app"), below("folder/file")}));
}

TEST_P(MacWalk, links_areItemsOfTheirOwnAndNeverFollowed) {
  root().add("link", kLinkType);
  // Took the place of a folder after that was listed.
  FakeMacNode& replaced = root().addFolder("replaced");
  replaced.add("file");
  replaced.openError = ELOOP;
  const auto walk = start();
  EXPECT_EQ(pathsOf(restOf(*walk)), (std::vector<std::string>{below("link"), below("replaced")}));
  EXPECT_TRUE(walk->isComplete());
}

TEST_P(MacWalk, itemWithoutAURL_hasNoValuesAndHidesNoOther) {
  root().add("before");
  root().add("without").hasURL = false;
  root().add("after");
  const auto items = walk();
  ASSERT_EQ(items.size(), 3U);
  EXPECT_TRUE(items[0].hasValues);
  EXPECT_FALSE(items[1].hasValues);
  EXPECT_TRUE(items[2].hasValues);
}

TEST_P(MacWalk, entryThatTheKernelCouldNotRead_hasNoValues) {
  root().add("gone").entryError = ENOENT;
  FakeMacNode& folder = root().addFolder("gone folder");
  folder.entryError = EIO;
  folder.add("file");
  const auto items = walk();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_FALSE(items[0].hasValues);
  EXPECT_FALSE(items[1].hasValues);
}

TEST_P(MacWalk, names_comeByteForByteAsTheyAreStored) {
  // An accent behind its letter, one within it, bytes that are no text, and what a URL would take for its own.
  const std::vector<std::string> names = {"cafe\xCC\x81", "caf\xC3\xA9", "\xFF\xFE", "100%41", "a?b#c", "line\nbreak"};
  std::vector<std::string> paths;
  for (const std::string& name : names) {
    root().addFolder(name + " folder").add(name).isUploaded = false;
    paths.push_back(below(name + " folder/" + name));
  }
  const auto items = walk();
  ASSERT_EQ(items.size(), 2 * names.size());
  for (std::size_t index = 0; index < names.size(); ++index) {
    EXPECT_EQ(items[index].path, below(names[index] + " folder"));
    EXPECT_EQ(items[names.size() + index].path, paths[index]);
    EXPECT_EQ(items[names.size() + index].isUploaded, false);
  }
  std::ranges::sort(paths);
  EXPECT_EQ(disk_->pathsAsked(), paths);
}

TEST_P(MacWalk, twoHundredThousandEntries_keepTheirOrderAndValues) {
  constexpr int kCount = 200'000;
  for (int number = 0; number < kCount; ++number) {
    FakeMacNode& file = root().add(std::to_string(number));
    if (number % 100 == 0) {
      file.uploadingError = std::to_string(number);
    }
  }
  const auto walk = start();
  int number = 0;
  while (const ItemBatch* batch = walk->next()) {
    for (const Item& item : batch->items()) {
      ASSERT_EQ(item.name, std::to_string(number));
      ASSERT_TRUE(item.values);
      ASSERT_EQ(item.values->uploadingError.has_value(), number % 100 == 0);
      if (item.values->uploadingError) {
        ASSERT_EQ(item.values->uploadingError, item.name);
      }
      ++number;
    }
  }
  EXPECT_EQ(number, kCount);
  EXPECT_TRUE(walk->isComplete());
  EXPECT_EQ(disk_->unguardedCalls(), 0);
}

TEST_P(MacWalk, rootThatIsRefused_isIncompleteWithoutItems) {
  root().add("file");
  for (const int error : {EPERM, EACCES, EIO, ENOENT, ENOTDIR, ELOOP, EMFILE, ENFILE, ENOMEM, ETIMEDOUT}) {
    root().openError = error;
    const auto walk = start();
    EXPECT_TRUE(restOf(*walk).empty()) << error;
    EXPECT_FALSE(walk->isComplete()) << error;
  }
}

TEST_P(MacWalk, rootWhoseListingIsRefused_isIncompleteWithoutItems) {
  root().add("file");
  for (const int error : {EPERM, EACCES, EIO, ENOENT, ERANGE}) {
    root().listError = error;
    const auto walk = start();
    EXPECT_TRUE(restOf(*walk).empty()) << error;
    EXPECT_FALSE(walk->isComplete()) << error;
  }
}

TEST_P(MacWalk, rootThatIsInTheCloudAlone_isCompleteWithoutItems) {
  root().add("file");
  root().openError = EDEADLK;
  const auto unopened = start();
  EXPECT_TRUE(restOf(*unopened).empty());
  EXPECT_TRUE(unopened->isComplete());
  root().openError = 0;
  root().listError = EDEADLK;
  const auto unlisted = start();
  EXPECT_TRUE(restOf(*unlisted).empty());
  EXPECT_TRUE(unlisted->isComplete());
}

TEST_P(MacWalk, rootThatFailsInItsMiddle_isIncompleteWithWhatWasSeen) {
  disk_->listAtMost(2);
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    root().add(name);
  }
  root().entriesBeforeError = 4;
  // Also where it vanishes, and where it goes to the cloud meanwhile: what was begun here has to end here.
  for (const int error : {EIO, EPERM, ENOENT, ESTALE, EDEADLK}) {
    root().listError = error;
    const auto walk = start();
    EXPECT_EQ(restOf(*walk).size(), 4U) << error;
    EXPECT_FALSE(walk->isComplete()) << error;
  }
}

TEST_P(MacWalk, folderBelowThatIsRefusedVanishesOrIsInTheCloud_isPassedOver) {
  for (const int error : {EPERM, EACCES, EIO, ENOENT, ENOTDIR, EDEADLK}) {
    FakeMacNode& closed = root().addFolder("closed " + std::to_string(error));
    closed.openError = error;
    closed.add("unseen");
    FakeMacNode& unlisted = root().addFolder("unlisted " + std::to_string(error));
    unlisted.listError = error;
    unlisted.add("unseen");
    FakeMacNode& broken = root().addFolder("broken " + std::to_string(error));
    broken.listError = error;
    broken.entriesBeforeError = 1;
    broken.add("seen");
    broken.add("unseen");
  }
  root().add("file");
  const auto walk = start();
  const auto items = restOf(*walk);
  EXPECT_EQ(items.size(), 6U * 3 + 1 + 6);
  EXPECT_TRUE(std::ranges::all_of(items, &ToldItem::hasValues));
  EXPECT_TRUE(std::ranges::none_of(items, [](const ToldItem& item) { return item.path.ends_with("/unseen"); }));
  EXPECT_TRUE(walk->isComplete());
}

TEST_P(MacWalk, folderBelowThatThereIsNoDescriptorFor_isAnItemWithoutValues) {
  root().add("file");
  for (const int error : {EMFILE, ENFILE, ENOMEM}) {
    FakeMacNode& folder = root().addFolder(std::to_string(error));
    folder.openError = error;
    folder.add("unseen");
  }
  const auto walk = start();
  const auto items = restOf(*walk);
  ASSERT_EQ(items.size(), 7U);
  for (std::size_t index = 0; index < 3; ++index) {
    EXPECT_EQ(items[4 + index].path, items[1 + index].path);
    EXPECT_FALSE(items[4 + index].hasValues);
  }
  EXPECT_TRUE(walk->isComplete());
}

TEST_P(MacWalk, bytesWithoutMeaning_areNeverAnEmptyFolder) {
  FakeMacNode& folder = root().addFolder("folder");
  folder.isGarbled = true;
  const auto belowRoot = start();
  const auto items = restOf(*belowRoot);
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[1].path, below("folder"));
  EXPECT_FALSE(items[1].hasValues);
  EXPECT_TRUE(belowRoot->isComplete());
  root().isGarbled = true;
  const auto ofRoot = start();
  EXPECT_TRUE(restOf(*ofRoot).empty());
  EXPECT_FALSE(ofRoot->isComplete());
}

TEST_P(MacWalk, everyCall_isMadeWhereNothingCanBeFetched) {
  disk_->definePackage("app");
  disk_->listAtMost(2);
  for (int number = 0; number < 20; ++number) {
    root().addFolder(std::to_string(number) + ".app");
    root().addFolder(std::to_string(number)).add("file");
  }
  EXPECT_EQ(walk().size(), 60U);
  ASSERT_NE(read({"0", "0.app"}), nullptr);
  EXPECT_GT(disk_->calls(), 100);
  EXPECT_EQ(disk_->unguardedCalls(), 0);
  EXPECT_FALSE(FakeMaterialization::isOff()) << "the caller's thread has its own policy back";
}

TEST_P(MacWalk, policyThatIsRefused_letsNothingBeLookedAt) {
  root().add("file");
  materialization_.refuse();
  const auto walk = start();
  EXPECT_TRUE(restOf(*walk).empty());
  EXPECT_FALSE(walk->isComplete());
  const auto batch = read({"file", ".hidden"});
  ASSERT_NE(batch, nullptr);
  const auto items = itemsOf(*batch);
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].path, below("file"));
  EXPECT_FALSE(items[0].hasValues);
  EXPECT_EQ(disk_->calls(), 0);
}

TEST_P(MacWalk, rootThatIsALink_showsThePathThatWasAskedForAndAsksByTheRealOne) {
  root().addFolder("folder").add("file").isUploaded = false;
  disk_->linkTo("/link");
  const auto walk = start({"/link"});
  const auto items = restOf(*walk);
  EXPECT_EQ(pathsOf(items), (std::vector<std::string>{"/link/folder", "/link/folder/file"}));
  EXPECT_EQ(items.at(1).isUploaded, false);
  EXPECT_EQ(disk_->pathsAsked(), std::vector<std::string>{below("folder/file")});
}

TEST_P(MacWalk, pathWithANUL_isNotTakenForWhatStandsBeforeIt) {
  using namespace std::string_literals;
  EXPECT_EQ(start({kFolder + "\0x"s}), nullptr);
  EXPECT_EQ(readMacItems(kFolder + "\0x"s, {"file"}, disk_, materialization_), nullptr);
}

TEST_P(MacWalk, shallowWalk_tellsTheFoldersOwnEntriesAlone) {
  root().add("file");
  root().addFolder("folder").add("below");
  EXPECT_EQ(pathsOf(restOf(*start({.folder = kFolder, .isDeep = false}))),
            (std::vector<std::string>{below("file"), below("folder")}));
}

/// Notes the folders that it is told of.
class NotedFolders final : public ListingObserver {
 public:
  void beforeListing(const std::string& folder, int descriptor) override {
    const std::lock_guard lock(mutex_);
    folders_.insert(folder);
    EXPECT_GE(fcntl(descriptor, F_GETFD), 0);
  }
  std::set<std::string> folders() const {
    const std::lock_guard lock(mutex_);
    return folders_;
  }

 private:
  mutable std::mutex mutex_;
  std::set<std::string> folders_;
};

TEST_P(MacWalk, observer_isToldOfEachFolderBeforeItsItems) {
  disk_->definePackage("app");
  root().addFolder("A.app").add("file");
  root().addFolder("folder").addFolder("deep").add("file");
  root().addFolder("closed").openError = EACCES;
  NotedFolders noted;
  const auto walk = start({.folder = kFolder, .observer = &noted});
  while (const ItemBatch* batch = walk->next()) {
    EXPECT_TRUE(noted.folders().contains(batch->folderPath())) << batch->folderPath();
  }
  EXPECT_EQ(noted.folders(), (std::set<std::string>{kFolder, below("folder"), below("folder/deep")}));
}

TEST_P(MacWalk, walkThatIsLeftAtAnyPoint_ends) {
  disk_->listAtMost(2);
  for (int number = 0; number < 40; ++number) {
    root().addFolder(std::to_string(number)).add("file");
  }
  for (int taken = 0; taken < 30; taken += 3) {
    const auto walk = start();
    for (int batch = 0; batch < taken; ++batch) {
      walk->next();
    }
  }
  EXPECT_EQ(disk_->unguardedCalls(), 0);
}

TEST_P(MacWalk, namedItems_areThoseThatAWalkWouldShowInTheOrderAskedFor) {
  disk_->definePackage("app");
  root().add("file").isUploaded = false;
  root().add(".dot");
  root().add("marked").flags = kHiddenFlag;
  root().add("unread").entryError = EIO;
  root().addFolder("folder");
  root().addFolder("A.app").isUploaded = true;
  const auto batch = read({"folder", "missing", ".dot", "marked", "file", "A.app", "unread", "folder/..", ""});
  ASSERT_NE(batch, nullptr);
  EXPECT_EQ(batch->folderPath(), kFolder);
  const auto items = itemsOf(*batch);
  EXPECT_EQ(pathsOf(items),
            (std::vector<std::string>{below("folder"), below("file"), below("A.app"), below("unread")}));
  EXPECT_TRUE(items[0].isEntered);
  EXPECT_EQ(items[1].isUploaded, false);
  EXPECT_EQ(items[2].isUploaded, true);
  EXPECT_FALSE(items[2].isEntered);
  EXPECT_FALSE(items[3].hasValues);
  EXPECT_EQ(read({"missing"}), nullptr);
}

TEST_P(MacWalk, namedItemsOfAFolderThatThereIsNoDescriptorFor_haveNoValues) {
  root().openError = EMFILE;
  const auto batch = read({"file"});
  ASSERT_NE(batch, nullptr);
  EXPECT_FALSE(itemsOf(*batch)[0].hasValues);
}

// Walks over everything

std::vector<std::string> describedItems(FolderWalk& walk) {
  std::vector<std::string> told;
  while (const ItemBatch* batch = walk.next()) {
    for (const Item& item : batch->items()) {
      const char* kind = item.kind == ItemKind::folder ? " folder" : item.kind == ItemKind::file ? " file" : " other";
      const char* why = item.concealment == Concealment::hidden    ? " hidden"
                        : item.concealment == Concealment::package ? " package"
                                                                   : "";
      told.push_back(batch->path(item).substr(std::string(kFolder).size()) + kind + why +
                     (item.isUnlisted ? " unlisted" : ""));
    }
  }
  return told;
}

TEST_P(MacWalk, overEverything_meetsHiddenItemsAndWhatPackagesHold) {
  disk_->definePackage("pages");
  root().addFolder("Song.pages").add("take");
  root().addFolder(".git").add("config");
  root().add("flagged").flags = kHiddenFlag;
  root().add("link", kLinkType);
  FakeMacNode& flagged = root().addFolder("Flagged.pages");
  flagged.flags = kHiddenFlag;
  const auto walk = start({kFolder, true, nullptr, WalkScope::everything, true});
  EXPECT_EQ(describedItems(*walk),
            (std::vector<std::string>{"/Song.pages folder package", "/.git folder hidden", "/flagged file hidden",
                                      "/link other", "/Flagged.pages folder hidden", "/Song.pages/take file",
                                      "/.git/config file"}));
  EXPECT_EQ(disk_->unguardedCalls(), 0);
}

TEST_P(MacWalk, overEverything_asksTheCloudAboutFoldersToo) {
  root().addFolder("folder").isUploaded = false;
  root().add("link", kLinkType);
  const auto walk = start({kFolder, true, nullptr, WalkScope::everything});
  const auto items = restOf(*walk);
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0].isUploaded, false);
  EXPECT_EQ(items[0].modified, std::nullopt);
  EXPECT_EQ(disk_->pathsAsked(), (std::vector<std::string>{below("folder")}));
}

TEST_P(MacWalk, overEverything_tellsOfFoldersThatAreRefusedAndOfNoneElsewhere) {
  root().addFolder("refused").openError = EPERM;
  root().addFolder("elsewhere").openError = EDEADLK;
  root().addFolder("gone").openError = ENOENT;
  FakeMacNode& broken = root().addFolder("broken");
  broken.add("a");
  broken.listError = EIO;
  broken.entriesBeforeError = 1;
  const auto walk = start({kFolder, true, nullptr, WalkScope::everything});
  EXPECT_EQ(describedItems(*walk),
            (std::vector<std::string>{"/refused folder", "/elsewhere folder", "/gone folder", "/broken folder",
                                      "/refused folder unlisted", "/broken/a file", "/broken folder unlisted"}));
  EXPECT_TRUE(walk->isComplete());
}

TEST(MacWalkThreadCount, anyMachine_readsOnFourToEight) {
  EXPECT_EQ(macWalkThreadCount(0), 4U);
  EXPECT_EQ(macWalkThreadCount(2), 4U);
  EXPECT_EQ(macWalkThreadCount(6), 6U);
  EXPECT_EQ(macWalkThreadCount(24), 8U);
}

/// A fake Mac's files, as the scan sees them.
class ScannedMac final : public FileSystem {
 public:
  explicit ScannedMac(std::shared_ptr<const FakeMacDisk> disk) : disk_(std::move(disk)) {}
  bool exists(const std::string& /*path*/) const override { return true; }
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override {
    return startMacWalk(request, disk_, materialization_, 4);
  }
  std::unique_ptr<ItemBatch> readItems(const std::string& folder,
                                       const std::vector<std::string>& names) const override {
    return readMacItems(folder, names, disk_, materialization_);
  }
  VolumeCapacities volumeCapacities(const std::string& /*folder*/) const override { return {}; }
  std::string homeDirectory() const override { return "/Users/test"; }
  std::optional<std::string> applicationSupportDirectory() const override { return std::nullopt; }

 private:
  std::shared_ptr<const FakeMacDisk> disk_;
  FakeMaterialization materialization_;
};

class ScannedMacFolder : public testing::Test {
 protected:
  ScannedMacFolder() { disk_->root().add("clean").isUploaded = true; }
  SyncHealthReport scan() const {
    const ScannedMac fileSystem(disk_);
    const ManualClock clock;
    return ICloudScanEngine(fileSystem, clock).scan({{UUID(), "Work", kFolder}});
  }
  void expectUnavailable() const {
    const SyncHealthReport report = scan();
    ASSERT_EQ(report.blockers.size(), 1U);
    EXPECT_EQ(report.blockers[0].reason, BlockerReason::unavailableFolder);
    EXPECT_EQ(report.blockers[0].details, "The folder exists but cannot be read.");
    EXPECT_EQ(report.metrics.errors, 1);
    EXPECT_FALSE(report.safeToClose);
  }

  const std::shared_ptr<FakeMacDisk> disk_ = std::make_shared<FakeMacDisk>(kFolder);
};

TEST_F(ScannedMacFolder, clean_isSafe) {
  const SyncHealthReport report = scan();
  EXPECT_EQ(report.metrics.totalFiles, 1);
  EXPECT_TRUE(report.safeToClose);
}

TEST_F(ScannedMacFolder, inTheCloudAlone_isAnEmptyFolderToTheScan) {
  disk_->root().openError = EDEADLK;
  const SyncHealthReport report = scan();
  EXPECT_TRUE(report.blockers.empty());
  EXPECT_EQ(report.metrics.errors, 0);
  EXPECT_EQ(report.metrics.totalFiles, 0);
  EXPECT_TRUE(report.safeToClose);
}

TEST_F(ScannedMacFolder, refused_isUnavailableToTheScan) {
  for (const int error : {EPERM, EACCES, EIO}) {
    disk_->root().openError = error;
    expectUnavailable();
  }
}

TEST_F(ScannedMacFolder, refusedInItsMiddle_isUnavailableToTheScan) {
  disk_->root().listError = EPERM;
  disk_->root().entriesBeforeError = 1;
  expectUnavailable();
}

TEST_F(ScannedMacFolder, withAnItemThatHasNoURL_isNotSafe) {
  disk_->root().add("unknown").hasURL = false;
  const SyncHealthReport report = scan();
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_FALSE(report.safeToClose);
}

}  // namespace
}  // namespace cirrovane::test
