// What a watch tells of changes below watched folders.

#include "tests/platform/WatchedDisk.h"
#include "tests/support/ICloudAttribute.h"

#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

class InotifyWatchTest : public WatchedDisk {};

TEST_F(InotifyWatchTest, start_onFolderThatIsThere_stands) {
  makeFolder(at("w"));
  EXPECT_THAT(watch({at("w")}).standings, ElementsAre(std::nullopt));
}

TEST_F(InotifyWatchTest, nothing_changed_tellsNothing) {
  writeFile(at("w/below/file"));
  const NotedFolderNews::News told = watch({at("w")});
  EXPECT_THAT(told.changes, IsEmpty());
  EXPECT_THAT(told.losses, IsEmpty());
  walk(at("w"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, proof_beforeStart_isRefusedWithAReason) {
  watch_ = std::make_unique<InotifyWatch>(noted_);
  watch_->prove();
  const NotedFolderNews::News told = noted_.take();
  ASSERT_EQ(told.standings.size(), 1U);
  EXPECT_EQ(told.standings[0], "No folder is watched yet.");
}

TEST_F(InotifyWatchTest, file_createdWrittenAndRemoved_isToldByItsName) {
  makeFolder(at("w/a/b"));
  watch({at("w")});
  writeFile(at("w/a/b/file"), "one");
  EXPECT_THAT(changes(), ElementsAre("w/a/b file"));
  writeFile(at("w/a/b/file"), "two");
  EXPECT_THAT(changes(), ElementsAre("w/a/b file"));
  removeItem(at("w/a/b/file"));
  EXPECT_THAT(changes(), ElementsAre("w/a/b file"));
}

TEST_F(InotifyWatchTest, file_writtenThroughOpenDescriptor_isToldBeforeItIsClosed) {
  writeFile(at("w/file"));
  watch({at("w")});
  const FileDescriptor file(open(at("w/file").c_str(), O_WRONLY | O_CLOEXEC));
  ASSERT_EQ(write(file.get(), "x", 1), 1);
  EXPECT_THAT(changes(), ElementsAre("w file"));
}

TEST_F(InotifyWatchTest, fileState_changed_isTold) {
  writeFile(at("w/file"));
  watch({at("w")});
  setICloudAttribute(at("w/file"), "isUploaded=false");
  EXPECT_THAT(changes(), ElementsAre("w file"));
  chmod(at("w/file").c_str(), 0600);
  EXPECT_THAT(changes(), ElementsAre("w file"));
}

TEST_F(InotifyWatchTest, file_renamed_isToldByBothNames) {
  writeFile(at("w/a/old"));
  makeFolder(at("w/b"));
  watch({at("w")});
  renameItem(at("w/a/old"), at("w/b/new"));
  EXPECT_THAT(changes(), ElementsAre("w/a old", "w/b new"));
}

TEST_F(InotifyWatchTest, file_savedByRenameOverIt_isTold) {
  writeFile(at("w/file"));
  writeFile(at("other"));
  watch({at("w")});
  renameItem(at("other"), at("w/file"));
  EXPECT_THAT(changes(), ElementsAre("w file"));
}

TEST_F(InotifyWatchTest, sameFile_changedOften_isToldOnceInOneCall) {
  makeFolder(at("w"));
  std::atomic<bool> isHeld = true;
  std::atomic<bool> mayGoOn = false;
  noted_.beforeChange = [&](const auto&) {
    if (isHeld.exchange(false)) {
      mayGoOn.wait(false);
    }
  };
  watch({at("w")});
  writeFile(at("w/first"));
  // The thread is held in its first call, so that all this is read in one.
  while (isHeld) {
    std::this_thread::yield();
  }
  for (int round = 0; round < 50; ++round) {
    writeFile(at("w/file"), std::to_string(round));
    writeFile(at("w/other"), std::to_string(round));
  }
  mayGoOn = true;
  mayGoOn.notify_all();
  const NotedFolderNews::News told = news();
  EXPECT_LE(told.calls, 3);
  EXPECT_LE(told.changes.size(), 6U);
  EXPECT_THAT(texts(told.changes), IsSupersetOf({"w file", "w other"}));
}

TEST_F(InotifyWatchTest, hiddenItems_areNotTold) {
  makeFolder(at("w/.hidden"));
  watch({at("w")});
  writeFile(at("w/.file"), "x");
  writeFile(at("w/.hidden/file"), "x");
  makeFolder(at("w/.new/below"));
  removeItem(at("w/.file"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, rename_betweenHiddenAndVisible_isToldByTheVisibleName) {
  writeFile(at("w/.file"));
  writeFile(at("w/.folder/below/file"));
  watch({at("w")});
  renameItem(at("w/.file"), at("w/file"));
  EXPECT_THAT(changes(), ElementsAre("w file"));
  renameItem(at("w/file"), at("w/.file"));
  EXPECT_THAT(changes(), ElementsAre("w file"));
  renameItem(at("w/.folder"), at("w/folder"));
  EXPECT_THAT(changes(), ElementsAre("w folder", "w/folder/**"));
  walk(at("w/folder"));
  EXPECT_TRUE(tellsOfFileIn("w/folder/below"));
  renameItem(at("w/folder"), at("w/.folder"));
  EXPECT_THAT(changes(), ElementsAre("w folder"));
  writeFile(at("w/.folder/below/more"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, package_isToldAsAnItem_itsContentIsNot) {
  writeFile(at("w/Album.app/Contents/file"));
  watch({at("w")});
  writeFile(at("w/Album.app/Contents/file"), "x");
  writeFile(at("w/Album.app/new"));
  EXPECT_THAT(changes(), IsEmpty());
  setICloudAttribute(at("w/Album.app"), "isUploaded=false");
  EXPECT_THAT(changes(), ElementsAre("w Album.app"));
  makeFolder(at("w/Other.app"));
  EXPECT_THAT(changes(), ElementsAre("w Other.app"));
}

TEST_F(InotifyWatchTest, package_renamedToPlainFolderAndBack_beginsAndEnds) {
  writeFile(at("w/Album.app/below/file"));
  watch({at("w")});
  renameItem(at("w/Album.app"), at("w/Album"));
  EXPECT_THAT(changes(), ElementsAre("w Album", "w Album.app", "w/Album/**"));
  walk(at("w/Album"));
  EXPECT_TRUE(tellsOfFileIn("w/Album/below"));
  renameItem(at("w/Album"), at("w/Album.app"));
  EXPECT_THAT(changes(), ElementsAre("w Album", "w Album.app"));
  writeFile(at("w/Album.app/below/more"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, folder_created_isToldWithAllBelow) {
  makeFolder(at("w"));
  watch({at("w")});
  makeFolder(at("w/new/below"));
  EXPECT_THAT(changes(), Contains("w/new/**"));
  walk(at("w/new"));
  EXPECT_TRUE(tellsOfFileIn("w/new/below"));
}

TEST_F(InotifyWatchTest, folderState_changed_isToldAsItemAndAsFolder) {
  makeFolder(at("w/a/b"));
  watch({at("w")});
  setICloudAttribute(at("w/a/b"), "isListable=false");
  EXPECT_THAT(changes(), ElementsAre("w/a b", "w/a/b "));
}

TEST_F(InotifyWatchTest, deepTree_movedIn_isToldAndWatchedOnceWalked) {
  writeFile(at("elsewhere/1/2/3/file"));
  makeFolder(at("w/a"));
  watch({at("w")});
  renameItem(at("elsewhere"), at("w/a/tree"));
  EXPECT_THAT(changes(), ElementsAre("w/a tree", "w/a/tree/**"));
  walk(at("w/a/tree"));
  EXPECT_TRUE(tellsOfFileIn("w/a/tree/1/2/3"));
}

TEST_F(InotifyWatchTest, deepTree_movedOut_isToldAtItsFolderAndNoMoreAfter) {
  writeFile(at("w/a/tree/1/2/3/file"));
  watch({at("w")});
  renameItem(at("w/a/tree"), at("elsewhere"));
  EXPECT_THAT(changes(), ElementsAre("w/a tree"));
  writeFile(at("elsewhere/1/2/3/more"));
  writeFile(at("elsewhere/more"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, deepTree_removed_isTold) {
  writeFile(at("w/a/tree/1/file"));
  watch({at("w")});
  removeItem(at("w/a/tree"));
  EXPECT_THAT(changes(), Contains("w/a tree"));
  makeFolder(at("w/a/tree/1"));
  EXPECT_THAT(changes(), Contains("w/a/tree/**"));
  walk(at("w/a/tree"));
  EXPECT_TRUE(tellsOfFileIn("w/a/tree/1"));
}

TEST_F(InotifyWatchTest, folder_movedWithinTheTree_isToldByItsNewPathAlone) {
  writeFile(at("w/a/x/deep/file"));
  makeFolder(at("w/b"));
  watch({at("w")});
  renameItem(at("w/a/x"), at("w/b/y"));
  EXPECT_THAT(changes(), ElementsAre("w/a x", "w/b y", "w/b/y/**"));
  walk(at("w/b/y"));
  EXPECT_TRUE(tellsOfFileIn("w/b/y/deep"));
}

TEST_F(InotifyWatchTest, folder_walkedByItsNewPathBeforeTheMoveIsRead_staysWatched) {
  writeFile(at("w/a/x/deep/file"));
  makeFolder(at("w/b"));
  watch({at("w")});
  renameItem(at("w/a/x"), at("w/b/y"));
  walk(at("w/b/y"));
  EXPECT_THAT(changes(), IsSupersetOf({"w/a x", "w/b y", "w/b/y/**"}));
  EXPECT_TRUE(tellsOfFileIn("w/b/y/deep"));
}

TEST_F(InotifyWatchTest, folder_replacedByAnotherOfItsName_isToldWithAllBelow) {
  writeFile(at("w/a/x/file"));
  writeFile(at("other/x/deep/file"));
  watch({at("w")});
  renameItem(at("w/a/x"), at("elsewhere"));
  renameItem(at("other/x"), at("w/a/x"));
  EXPECT_THAT(changes(), IsSupersetOf({"w/a x", "w/a/x/**"}));
  walk(at("w/a/x"));
  writeFile(at("elsewhere/stale"));
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_TRUE(tellsOfFileIn("w/a/x/deep"));
}

TEST_F(InotifyWatchTest, folders_thatChangePlaces_areBothToldWithAllBelow) {
  writeFile(at("w/a/one/file"));
  writeFile(at("w/b/two/file"));
  watch({at("w")});
  ASSERT_EQ(renameat2(AT_FDCWD, at("w/a/one").c_str(), AT_FDCWD, at("w/b/two").c_str(), RENAME_EXCHANGE), 0);
  EXPECT_THAT(changes(), ElementsAre("w/a one", "w/a/one/**", "w/b two", "w/b/two/**"));
  walk(at("w/a/one"));
  walk(at("w/b/two"));
  EXPECT_TRUE(tellsOfFileIn("w/a/one"));
  EXPECT_TRUE(tellsOfFileIn("w/b/two"));
}

TEST_F(InotifyWatchTest, folders_thatChangePlacesAndAreWalkedHalfway_areBothToldWithAllBelow) {
  writeFile(at("w/a/one/file"));
  writeFile(at("w/b/two/file"));
  watch({at("w")});
  ASSERT_EQ(renameat2(AT_FDCWD, at("w/a/one").c_str(), AT_FDCWD, at("w/b/two").c_str(), RENAME_EXCHANGE), 0);
  walk(at("w/b/two"));
  walk(at("w/a/one"));
  EXPECT_THAT(changes(), IsSupersetOf({"w/a/one/**", "w/b/two/**"}));
  walk(at("w/a/one"));
  walk(at("w/b/two"));
  EXPECT_TRUE(tellsOfFileIn("w/a/one"));
  EXPECT_TRUE(tellsOfFileIn("w/b/two"));
}

TEST_F(InotifyWatchTest, folders_thatChangePlacesBetweenTwoReadings_areBothWatched) {
  // One event is as long as another here. Some of these numbers of them end the first reading in the middle of the
  // exchange.
  constexpr int kEventsRead = 2048;
  for (int before = kEventsRead - 6; before <= kEventsRead; ++before) {
    makeFolder(at("w/a/one"));
    makeFolder(at("w/b/two"));
    writeFile(at("w/p"));
    writeFile(at("w/q"));
    std::atomic<bool> isHeld = false;
    std::atomic<bool> mayGoOn = false;
    noted_.beforeChange = [&](const std::vector<FolderChange>& changes) {
      if (!isHeld.exchange(true)) {
        isHeld.notify_all();
        mayGoOn.wait(false);
        return;
      }
      // Walked before the next reading.
      for (const FolderChange& change : changes) {
        if (change.isDeep) {
          walk(change.folder);
        }
      }
    };
    watch({at("w")});
    writeFile(at("w/first"));
    isHeld.wait(false);
    for (int event = 0; event < before; ++event) {
      chmod(at(event % 2 == 0 ? "w/p" : "w/q").c_str(), 0600);
    }
    ASSERT_EQ(renameat2(AT_FDCWD, at("w/a/one").c_str(), AT_FDCWD, at("w/b/two").c_str(), RENAME_EXCHANGE), 0);
    mayGoOn = true;
    mayGoOn.notify_all();
    news();
    EXPECT_TRUE(tellsOfFileIn("w/a/one")) << before;
    EXPECT_TRUE(tellsOfFileIn("w/b/two")) << before;
    watch_.reset();
    noted_.beforeChange = nullptr;
    removeItem(at("w"));
  }
}

TEST_F(InotifyWatchTest, lateWalk_withAFolderThatLostItsPath_doesNotEndTheWatchOfTheRightOne) {
  makeFolder(at("w/x"));
  watch({at("w")});
  const FileDescriptor late(open(at("w/x").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  renameItem(at("w/x"), at("elsewhere"));
  makeFolder(at("w/x"));
  EXPECT_THAT(changes(), Contains("w/x/**"));
  walk(at("w/x"));
  watch_->listings().beforeListing(at("w/x"), late.get());
  EXPECT_TRUE(tellsOfFileIn("w/x"));
  writeFile(at("elsewhere/stale"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, walk_afterALateOneWithTheWrongFolder_watchesTheRightOne) {
  makeFolder(at("w/x"));
  watch({at("w")});
  const FileDescriptor late(open(at("w/x").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  renameItem(at("w/x"), at("elsewhere"));
  makeFolder(at("w/x"));
  EXPECT_THAT(changes(), Contains("w/x/**"));
  watch_->listings().beforeListing(at("w/x"), late.get());
  walk(at("w/x"));
  EXPECT_TRUE(tellsOfFileIn("w/x"));
}

TEST_F(InotifyWatchTest, links_belowAreItemsAndNeverFollowed) {
  makeFolder(at("elsewhere/below"));
  makeFolder(at("w"));
  makeLink(at("elsewhere"), at("w/link"));
  watch({at("w")});
  writeFile(at("elsewhere/file"));
  writeFile(at("elsewhere/below/file"));
  EXPECT_THAT(changes(), IsEmpty());
  removeItem(at("w/link"));
  makeLink(at("elsewhere/below"), at("w/link"));
  EXPECT_THAT(changes(), ElementsAre("w link"));
}

TEST_F(InotifyWatchTest, watchedFolders_nested_tellByTheirOnePath) {
  makeFolder(at("w/sub/deep"));
  watch({at("w"), at("w/sub")});
  EXPECT_TRUE(tellsOfFileIn("w/sub/deep"));
  EXPECT_TRUE(tellsOfFileIn("w"));
  removeItem(at("w/sub"));
  EXPECT_THAT(changes(), IsSupersetOf({"w sub", "w/sub/**"}));
  makeFolder(at("w/sub"));
  EXPECT_THAT(changes(), IsSupersetOf({"w sub", "w/sub/**"}));
}

TEST_F(InotifyWatchTest, watchedFolders_reachedByTwoPaths_tellByBoth) {
  makeFolder(at("w/sub/deep"));
  makeLink(at("w/sub"), at("link"));
  watch({at("w"), at("link")});
  writeFile(at("w/sub/deep/file"));
  EXPECT_THAT(changes(), ElementsAre("link/deep file", "w/sub/deep file"));
  makeFolder(at("w/sub/new"));
  EXPECT_THAT(changes(), ElementsAre("link new", "link/new/**", "w/sub new", "w/sub/new/**"));
  walk(at("w/sub/new"));
  walk(at("link/new"));
  renameItem(at("w/sub/new"), at("w/moved"));
  EXPECT_THAT(changes(), ElementsAre("link new", "w moved", "w/moved/**", "w/sub new"));
  walk(at("w/moved"));
  EXPECT_TRUE(tellsOfFileIn("w/moved"));
}

TEST_F(InotifyWatchTest, folder_forgotten_isToldByNoPathButTheOthers) {
  makeFolder(at("w/sub/deep"));
  makeLink(at("w/sub"), at("link"));
  watch({at("w"), at("link")});
  watch_->forget(at("w/sub"));
  writeFile(at("w/sub/deep/file"));
  EXPECT_THAT(changes(), ElementsAre("link/deep file"));
  watch_->forget(at("link/deep"));
  writeFile(at("w/sub/deep/file"), "x");
  EXPECT_THAT(changes(), IsEmpty());
  walk(at("w/sub"));
  EXPECT_TRUE(tellsOfFileIn("w/sub/deep"));
}

TEST_F(InotifyWatchTest, start_withOtherFolders_endsTheFormerOnes) {
  makeFolder(at("one"));
  makeFolder(at("two"));
  watch({at("one")});
  watch_->start({at("two")});
  ASSERT_TRUE(noted_.waitUntil([](const auto& news) { return !news.standings.empty(); }));
  walk(at("one"));
  walk(at("two"));
  news();
  writeFile(at("one/file"));
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_TRUE(tellsOfFileIn("two"));
}

TEST_F(InotifyWatchTest, names_ofAnyBytes_areToldAsTheyAre) {
  const std::string name = "a\nb \xFF\xFE \\";
  makeFolder(at("w/" + name));
  watch({at("w")});
  writeFile(at("w/" + name + "/" + name));
  EXPECT_THAT(changes(), ElementsAre("w/" + name + " " + name));
}

TEST_F(InotifyWatchTest, folder_deeperThanAnyPath_isWatchedAndForgotten) {
  constexpr int kDepth = 60;
  const std::string name(200, 'n');
  makeFolder(at("w/top"));
  std::string path = at("w/top");
  FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int depth = 0; depth < kDepth; ++depth) {
    ASSERT_EQ(mkdirat(folder.get(), name.c_str(), 0755), 0);
    folder = FileDescriptor(openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    path.append("/").append(name);
  }
  watch({at("w")});
  const FileDescriptor file(openat(folder.get(), "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
  const NotedFolderNews::News told = news();
  EXPECT_THAT(told.changes, ElementsAre(FolderChange{path, "file", false}));
  renameItem(at("w/top"), at("elsewhere"));
  EXPECT_THAT(changes(), ElementsAre("w top"));
  ASSERT_EQ(write(file.get(), "x", 1), 1);
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchTest, end_whileEventsArrive_comesToAnEnd) {
  makeFolder(at("w"));
  std::atomic<bool> isOver = false;
  watch({at("w")});
  std::thread writer([&] {
    for (int round = 0; !isOver; ++round) {
      writeFile(at("w/file" + std::to_string(round % 8)), "x");
    }
  });
  for (int round = 0; round < 20; ++round) {
    EXPECT_TRUE(noted_.waitUntil([](const auto& news) { return news.calls > 0; }));
    watch({at("w")});
  }
  watch_.reset();
  noted_.take();
  isOver = true;
  writer.join();
  EXPECT_THAT(noted_.take().changes, IsEmpty());
}

TEST_F(InotifyWatchTest, walks_onSeveralThreadsWhileFoldersChange_leaveAllWatched) {
  for (int folder = 0; folder < 40; ++folder) {
    makeFolder(at("w/" + std::to_string(folder) + "/below"));
  }
  watch({at("w")});
  std::atomic<bool> isOver = false;
  std::vector<std::thread> walkers;
  for (int walker = 0; walker < 2; ++walker) {
    walkers.emplace_back([&] {
      while (!isOver) {
        walk(at("w"));
      }
    });
  }
  for (int round = 0; round < 200; ++round) {
    const std::string folder = at("w/" + std::to_string(round % 40));
    renameItem(folder, at("elsewhere"));
    makeFolder(folder + "/below");
    removeItem(at("elsewhere"));
  }
  isOver = true;
  for (std::thread& walker : walkers) {
    walker.join();
  }
  // As an index does it: each folder that was told of is walked again.
  for (const FolderChange& change : news().changes) {
    if (change.isDeep) {
      walk(change.folder);
    }
  }
  news();
  for (int folder = 0; folder < 40; ++folder) {
    EXPECT_TRUE(tellsOfFileIn("w/" + std::to_string(folder) + "/below")) << folder;
  }
}

}  // namespace
}  // namespace cirrovane::test
