// Watched folders that come, go, move, and are reached by links.

#include "tests/platform/WatchedDisk.h"
#include "tests/support/ICloudAttribute.h"

#include <cerrno>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class InotifyWatchWay : public WatchedDisk {
 protected:
  /// Expects that the watched folder is told of as a whole, and is watched once it is walked again.
  void expectBack(const std::string& folder) {
    EXPECT_THAT(changes(), Contains(folder + "/**"));
    walk(at(folder));
    EXPECT_TRUE(tellsOfFileIn(folder));
  }
};

TEST_F(InotifyWatchWay, missingFolder_stands_andIsToldWhenItComes) {
  EXPECT_THAT(watch({at("a/b/w")}).standings, ElementsAre(std::nullopt));
  makeFolder(at("a/b"));
  EXPECT_THAT(changes(), Contains("a/b/w/**"));
  makeFolder(at("a/b/w"));
  expectBack("a/b/w");
}

TEST_F(InotifyWatchWay, folder_movedAwayAndBack_isToldEachTime) {
  makeFolder(at("w/below"));
  watch({at("w")});
  renameItem(at("w"), at("elsewhere"));
  EXPECT_THAT(changes(), ElementsAre("w/**"));
  writeFile(at("elsewhere/below/file"));
  EXPECT_THAT(changes(), IsEmpty());
  renameItem(at("elsewhere"), at("w"));
  expectBack("w");
  EXPECT_TRUE(tellsOfFileIn("w/below"));
}

TEST_F(InotifyWatchWay, folder_removedAndMadeAnew_isWatchedAgain) {
  makeFolder(at("w"));
  watch({at("w")});
  removeItem(at("w"));
  EXPECT_THAT(changes(), Contains("w/**"));
  makeFolder(at("w"));
  expectBack("w");
}

TEST_F(InotifyWatchWay, folder_replacedByAFileAndByAFolder_isToldEachTime) {
  makeFolder(at("w"));
  watch({at("w")});
  removeItem(at("w"));
  writeFile(at("w"));
  EXPECT_THAT(changes(), Contains("w/**"));
  removeItem(at("w"));
  makeFolder(at("w"));
  expectBack("w");
}

TEST_F(InotifyWatchWay, ancestor_renamedAndBack_isToldEachTime) {
  makeFolder(at("a/b/w"));
  watch({at("a/b/w")});
  renameItem(at("a"), at("other"));
  EXPECT_THAT(changes(), ElementsAre("a/b/w/**"));
  writeFile(at("other/b/w/file"));
  EXPECT_THAT(changes(), IsEmpty());
  renameItem(at("other"), at("a"));
  expectBack("a/b/w");
}

TEST_F(InotifyWatchWay, ancestor_replacedByAnother_isTold) {
  makeFolder(at("a/b/w"));
  makeFolder(at("other/b/w"));
  watch({at("a/b/w")});
  renameItem(at("a"), at("former"));
  renameItem(at("other"), at("a"));
  expectBack("a/b/w");
  writeFile(at("former/b/w/file"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchWay, ancestor_withOtherItemsThatChange_isNotTold) {
  makeFolder(at("a/w"));
  writeFile(at("a/file"));
  watch({at("a/w")});
  writeFile(at("a/file"), "x");
  makeFolder(at("a/other"));
  removeItem(at("a/other"));
  writeFile(at("beside"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchWay, ancestor_closedAndOpened_isToldWhateverWeMayRead) {
  makeFolder(at("a/w"));
  watch({at("a/w")});
  chmod(at("a").c_str(), 0);
  EXPECT_THAT(changes(), ElementsAre("a/w/**"));
  chmod(at("a").c_str(), 0755);
  expectBack("a/w");
}

TEST_F(InotifyWatchWay, folder_thatMayNotBeListed_standsAndIsToldWhenItMay) {
  makeFolder(at("w"));
  setICloudAttribute(at("w"), "isListable=false");
  EXPECT_THAT(watch({at("w")}).standings, ElementsAre(std::nullopt));
  writeFile(at("w/file"));
  // Nothing has listed it, so nothing of it is watched: the refusal took place.
  EXPECT_THAT(changes(), IsEmpty());
  setICloudAttribute(at("w"), "isListable=true");
  expectBack("w");
}

TEST_F(InotifyWatchWay, link_asWatchedFolder_isFollowed) {
  makeFolder(at("real/below"));
  makeLink(at("real"), at("link"));
  watch({at("link")});
  EXPECT_TRUE(tellsOfFileIn("link/below"));
}

TEST_F(InotifyWatchWay, link_toAnotherFolder_isToldAndTheFormerIsNotWatched) {
  makeFolder(at("one"));
  makeFolder(at("two"));
  makeLink("one", at("link"));
  watch({at("link")});
  makeLink("two", at("link.new"));
  renameItem(at("link.new"), at("link"));
  expectBack("link");
  writeFile(at("one/file"));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(InotifyWatchWay, linkChain_changedAnywhere_isTold) {
  makeFolder(at("places/real/w"));
  makeLink("../places/real", at("links-to-real"));
  makeFolder(at("inner"));
  removeItem(at("links-to-real"));
  makeLink("../places/real", at("inner/second"));
  makeLink("inner/second", at("first"));
  // The link is no end of the way: it goes on below.
  watch({at("first/w")});
  EXPECT_TRUE(tellsOfFileIn("first/w"));

  makeFolder(at("places/other/w"));
  removeItem(at("inner/second"));
  EXPECT_THAT(changes(), Contains("first/w/**"));
  makeLink(at("places/other"), at("inner/second"));
  expectBack("first/w");

  renameItem(at("places"), at("places-moved"));
  EXPECT_THAT(changes(), Contains("first/w/**"));
  renameItem(at("places-moved"), at("places"));
  expectBack("first/w");
}

TEST_F(InotifyWatchWay, link_thatLeadsNowhere_isToldWhenItsTargetComes) {
  makeLink("to/come", at("link"));
  EXPECT_THAT(watch({at("link")}).standings, ElementsAre(std::nullopt));
  makeFolder(at("to"));
  EXPECT_THAT(changes(), Contains("link/**"));
  makeFolder(at("to/come"));
  expectBack("link");
}

TEST_F(InotifyWatchWay, links_inACircle_standAndAreToldWhenOneIsReplaced) {
  makeLink("two", at("one"));
  makeLink("one", at("two"));
  EXPECT_THAT(watch({at("one")}).standings, ElementsAre(std::nullopt));
  removeItem(at("two"));
  EXPECT_THAT(changes(), Contains("one/**"));
  makeFolder(at("two"));
  expectBack("one");
}

TEST_F(InotifyWatchWay, folder_createdBetweenTwoLooks_isNeverMissed) {
  watch({at("a/w")});
  for (int round = 0; round < 50; ++round) {
    makeFolder(at("a/w"));
    EXPECT_THAT(changes(), Contains("a/w/**"));
    removeItem(at("a"));
    EXPECT_THAT(changes(), Contains("a/w/**"));
  }
}

TEST_F(InotifyWatchWay, folderThatCannotBeWatched_isToldOfByTheFolderAbove) {
  makeFolder(at("a/b/w"));
  InotifyCalls calls;
  calls.addWatch = [blind = at("a/b")](int instance, const char* path, std::uint32_t mask) {
    std::string target(4096, '\0');
    target.resize(static_cast<std::size_t>(std::max<ssize_t>(0, readlink(path, target.data(), target.size()))));
    if (target == blind) {
      errno = EACCES;
      return -1;
    }
    return inotify_add_watch(instance, path, mask);
  };
  EXPECT_THAT(watch({at("a/b/w")}, calls).standings, ElementsAre(std::nullopt));
  EXPECT_TRUE(tellsOfFileIn("a/b/w"));
  renameItem(at("a/b"), at("a/c"));
  EXPECT_THAT(changes(), ElementsAre("a/b/w/**"));
  renameItem(at("a/c"), at("a/b"));
  EXPECT_THAT(changes(), ElementsAre("a/b/w/**"));
  renameItem(at("a/b/w"), at("a/b/v"));
  // Its coming could not be told: no claim is made.
  const NotedFolderNews::News told = news();
  EXPECT_THAT(texts(told.changes), ElementsAre("a/b/w/**"));
  EXPECT_THAT(told.standings.back().value_or("stands"), testing::HasSubstr("cannot be watched"));
}

}  // namespace
}  // namespace cirrovane::test
