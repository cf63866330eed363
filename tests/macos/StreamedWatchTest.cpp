#include "platform/macos/plain/StreamedWatch.h"
#include "tests/macos/ManualSerialQueue.h"
#include "tests/support/NotedFolderNews.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::UnorderedElementsAre;

/// A system whose stream tells what the test says, and of each cookie unless it died.
class FakeStreamSystem {
 public:
  using Tell = std::function<void(std::vector<StreamEvent>)>;

  bool refuses = false;
  bool isDead = false;
  std::map<std::string, std::string> links;
  std::set<std::string> packages;
  /// The paths of each stream that was made.
  std::vector<std::vector<std::string>> streams;
  int living = 0;

  StreamSystem calls(std::string ownFolder) {
    ownFolder_ = std::move(ownFolder);
    StreamSystem system;
    system.makeStream = [this](const std::vector<std::string>& paths, Tell tell) {
      return make(paths, std::move(tell));
    };
    system.withoutLinks = [this](const std::string& path) { return links.contains(path) ? links.at(path) : path; };
    system.isPackage = [this](const std::string& path) { return packages.contains(path); };
    return system;
  }

  void tell(std::vector<StreamEvent> events) const {
    // A copy: the stream may end by what it tells.
    const Tell tell = tell_;
    tell(std::move(events));
  }
  void tell(const std::string& path, std::uint32_t flags) const { tell({{path, flags}}); }

  /// Tells of the cookies that lie in the folder of our own.
  void returnCookies() const {
    std::vector<StreamEvent> events;
    for (const std::string& path : cookies()) {
      events.push_back({path, stream_flag::itemCreated});
    }
    if (!isDead && !events.empty()) {
      tell(std::move(events));
    }
  }
  std::vector<std::string> cookies() const {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(ownFolder_)) {
      paths.push_back(entry.path().native());
    }
    return paths;
  }

 private:
  class Stream final : public EventStream {
   public:
    explicit Stream(FakeStreamSystem& system) : system_(system) { ++system_.living; }
    ~Stream() override { --system_.living; }
    void flush() override {}

   private:
    FakeStreamSystem& system_;
  };

  std::unique_ptr<EventStream> make(const std::vector<std::string>& paths, Tell tell) {
    if (refuses) {
      return nullptr;
    }
    streams.push_back(paths);
    tell_ = std::move(tell);
    return std::make_unique<Stream>(*this);
  }

  std::string ownFolder_;
  Tell tell_;
};

class StreamedWatchTest : public testing::Test {
 protected:
  void start(const std::vector<std::string>& folders) {
    watch_->start(folders);
    queue_->run();
    system_.returnCookies();
  }
  NotedFolderNews::News news() {
    queue_->run();
    return noted_.take();
  }
  std::vector<FolderChange> changesBy(const std::string& path, std::uint32_t flags) {
    system_.tell(path, flags);
    return news().changes;
  }

  TemporaryFolder own_{CIRROVANE_TEST_DIR};
  NotedFolderNews noted_;
  FakeStreamSystem system_;
  std::shared_ptr<ManualSerialQueue> queue_ = std::make_shared<ManualSerialQueue>();
  std::unique_ptr<StreamedWatch> watch_ =
      std::make_unique<StreamedWatch>(noted_, system_.calls(own_.path()), queue_, own_.path());
};

constexpr std::uint32_t kModified = 0x1000;
constexpr std::uint32_t kXattr = 0x8000;

TEST_F(StreamedWatchTest, start_stands_onceACookieCameBack) {
  watch_->start({"/w"});
  queue_->run();
  EXPECT_THAT(noted_.take().standings, IsEmpty());
  EXPECT_THAT(system_.streams, ElementsAre(ElementsAre(own_.path(), "/w")));
  system_.returnCookies();
  EXPECT_THAT(news().standings, ElementsAre(std::nullopt));
  EXPECT_THAT(system_.cookies(), IsEmpty());
}

TEST_F(StreamedWatchTest, start_thatTheSystemRefuses_saysSo) {
  system_.refuses = true;
  start({"/w"});
  EXPECT_THAT(news().standings,
              ElementsAre(Optional(std::string("The system does not tell of changes in the watched folders."))));
}

TEST_F(StreamedWatchTest, start_withoutAFolderOfOurOwn_saysSo) {
  std::filesystem::remove(own_.path());
  watch_->start({"/w"});
  EXPECT_THAT(news().standings,
              ElementsAre(Optional(testing::StartsWith("Whether changes are told cannot be tried: "))));
  std::filesystem::create_directory(own_.path());
}

TEST_F(StreamedWatchTest, start_withADeadStream_isRefusedAfterFiveSeconds) {
  system_.isDead = true;
  start({"/w"});
  queue_->advance(seconds(4));
  EXPECT_THAT(news().standings, IsEmpty());
  queue_->advance(seconds(1));
  EXPECT_THAT(news().standings, ElementsAre(Optional(std::string("The system no longer tells of changes."))));
  EXPECT_EQ(system_.living, 0);
  EXPECT_THAT(system_.cookies(), IsEmpty());
}

TEST_F(StreamedWatchTest, secondStart_afterADeadStream_standsAgain) {
  system_.isDead = true;
  start({"/w"});
  queue_->advance(seconds(5));
  news();
  system_.isDead = false;
  start({"/w"});
  EXPECT_THAT(news().standings, ElementsAre(std::nullopt));
}

TEST_F(StreamedWatchTest, proof_isGivenByACookieThatWasWrittenAfterItWasAskedFor) {
  start({"/w"});
  news();
  watch_->prove();
  EXPECT_EQ(news().proofs, 0);
  system_.returnCookies();
  EXPECT_EQ(news().proofs, 1);
}

TEST_F(StreamedWatchTest, proof_byADeadStream_isRefusedAfterFiveSeconds) {
  start({"/w"});
  news();
  system_.isDead = true;
  watch_->prove();
  queue_->advance(seconds(5));
  const NotedFolderNews::News told = news();
  EXPECT_EQ(told.proofs, 0);
  EXPECT_THAT(told.standings, ElementsAre(Optional(std::string("The system no longer tells of changes."))));
  watch_->prove();
  EXPECT_THAT(news().standings, ElementsAre(Optional(std::string("The system no longer tells of changes."))));
}

TEST_F(StreamedWatchTest, proof_beforeStart_isRefused) {
  watch_->prove();
  EXPECT_THAT(news().standings, ElementsAre(Optional(std::string("No folder is watched yet."))));
}

TEST_F(StreamedWatchTest, quietTime_isTriedEveryFiveMinutes) {
  start({"/w"});
  news();
  for (int round = 0; round < 3; ++round) {
    queue_->advance(seconds(300));
    EXPECT_EQ(system_.cookies().size(), 1U);
    system_.returnCookies();
  }
  EXPECT_THAT(news().standings, IsEmpty());
  system_.isDead = true;
  queue_->advance(seconds(305));
  EXPECT_THAT(news().standings, ElementsAre(Optional(std::string("The system no longer tells of changes."))));
}

TEST_F(StreamedWatchTest, everyDrop_isALoss) {
  start({"/w"});
  news();
  for (const std::uint32_t flag :
       {stream_flag::mustScanSubDirs, stream_flag::userDropped, stream_flag::kernelDropped,
        stream_flag::eventIdsWrapped, stream_flag::mustScanSubDirs | stream_flag::userDropped}) {
    system_.tell("/w/a", flag);
    EXPECT_THAT(news().losses, ElementsAre("More changed at once than the system can tell.")) << flag;
  }
  EXPECT_EQ(system_.streams.size(), 1U);
}

TEST_F(StreamedWatchTest, mountsAndMovedRoots_areLossesThatFollowTheFolders) {
  start({"/w"});
  news();
  const std::pair<std::uint32_t, const char*> expected[] = {
      {stream_flag::rootChanged, "A watched folder moved."},
      {stream_flag::mount, "A volume was mounted or unmounted."},
      {stream_flag::unmount, "A volume was mounted or unmounted."}};
  std::size_t streams = 1;
  for (const auto& [flag, words] : expected) {
    system_.links["/w"] = "/real/" + std::to_string(flag);
    system_.tell("/w", flag);
    EXPECT_THAT(news().losses, ElementsAre(words));
    EXPECT_EQ(system_.streams.size(), ++streams);
    EXPECT_EQ(system_.streams.back().back(), system_.links["/w"]);
    EXPECT_EQ(system_.living, 1);
  }
  EXPECT_THAT(changesBy(system_.links["/w"] + "/file", kModified), ElementsAre(FolderChange{"/w", "file", false}));
}

TEST_F(StreamedWatchTest, movedRoot_whileAProofIsAskedFor_isProvedByTheNewStream) {
  start({"/w"});
  news();
  watch_->prove();
  queue_->run();
  system_.tell("/w", stream_flag::rootChanged);
  queue_->run();
  system_.returnCookies();
  EXPECT_EQ(news().proofs, 1);
  queue_->advance(seconds(10));
  EXPECT_THAT(news().standings, IsEmpty());
}

TEST_F(StreamedWatchTest, wake_isALossAndTriesTheStream) {
  start({"/w"});
  news();
  watch_->wakeNotice()();
  EXPECT_THAT(news().losses, ElementsAre("The Mac slept."));
  EXPECT_EQ(system_.cookies().size(), 1U);
  system_.isDead = true;
  queue_->advance(seconds(5));
  EXPECT_THAT(news().standings, ElementsAre(Optional(std::string("The system no longer tells of changes."))));
}

TEST_F(StreamedWatchTest, wake_withAProofUnderWay_givesItTheTimeOfANewOne) {
  start({"/w"});
  news();
  watch_->prove();
  queue_->advance(seconds(4));
  watch_->wakeNotice()();
  queue_->advance(seconds(4));
  EXPECT_THAT(noted_.take().standings, IsEmpty());
  system_.returnCookies();
  EXPECT_EQ(news().proofs, 1);
}

TEST_F(StreamedWatchTest, linkToAnotherFolder_isALossWhenItIsNextProved) {
  system_.links["/link"] = "/one";
  start({"/link"});
  news();
  system_.links["/link"] = "/two";
  watch_->prove();
  EXPECT_THAT(news().losses, ElementsAre("A watched folder moved."));
  system_.returnCookies();
  EXPECT_EQ(news().proofs, 1);
  EXPECT_THAT(changesBy("/two/a/file", kModified), ElementsAre(FolderChange{"/link/a", "file", false}));
  EXPECT_THAT(changesBy("/one/a/file", kModified), IsEmpty());
}

TEST_F(StreamedWatchTest, item_isToldByEveryWatchedFolderThatItIsIn) {
  system_.links["/link"] = "/w/a";
  start({"/w", "/link", "/other"});
  news();
  EXPECT_THAT(changesBy("/w/a/file", kModified),
              ElementsAre(FolderChange{"/link", "file", false}, FolderChange{"/w/a", "file", false}));
  EXPECT_THAT(changesBy("/wide/file", kModified), IsEmpty());
}

TEST_F(StreamedWatchTest, folder_isToldWithWhatItBrings) {
  start({"/w"});
  news();
  constexpr std::uint32_t kFolder = stream_flag::itemIsDir;
  EXPECT_THAT(changesBy("/w/a", kFolder | stream_flag::itemCreated),
              UnorderedElementsAre(FolderChange{"/w", "a", false}, FolderChange{"/w/a", {}, true}));
  EXPECT_THAT(changesBy("/w/a", kFolder | stream_flag::itemRenamed),
              UnorderedElementsAre(FolderChange{"/w", "a", false}, FolderChange{"/w/a", {}, true}));
  EXPECT_THAT(changesBy("/w/a", kFolder | stream_flag::itemRemoved), ElementsAre(FolderChange{"/w", "a", false}));
  EXPECT_THAT(changesBy("/w/a", kFolder | kXattr),
              UnorderedElementsAre(FolderChange{"/w", "a", false}, FolderChange{"/w/a", {}, false}));
  EXPECT_THAT(changesBy("/w", kFolder | kXattr), ElementsAre(FolderChange{"/w", {}, true}));
}

TEST_F(StreamedWatchTest, whatAWalkDoesNotShow_isNotTold) {
  system_.packages = {"/w/Album.app"};
  start({"/w"});
  news();
  EXPECT_THAT(changesBy("/w/.file", kModified), IsEmpty());
  EXPECT_THAT(changesBy("/w/.hidden/file", kModified), IsEmpty());
  EXPECT_THAT(changesBy("/w/Album.app/Contents/file", kModified), IsEmpty());
  EXPECT_THAT(changesBy("/w/Album.app", kXattr), ElementsAre(FolderChange{"/w", "Album.app", false}));
  EXPECT_THAT(changesBy("/w/v1.2/file", kModified), ElementsAre(FolderChange{"/w/v1.2", "file", false}));
}

TEST_F(StreamedWatchTest, ownCookies_inAWatchedFolder_areNotTold) {
  start({own_.path()});
  EXPECT_THAT(news().changes, IsEmpty());
}

TEST_F(StreamedWatchTest, repeatedEvents_areToldOnceInOneCall) {
  start({"/w"});
  news();
  system_.tell(
      {{"/w/file", kModified}, {"/w/file", kXattr}, {"/w/other", kModified}, {"/w", stream_flag::historyDone}});
  const NotedFolderNews::News told = news();
  EXPECT_EQ(told.calls, 1);
  EXPECT_THAT(told.changes, ElementsAre(FolderChange{"/w", "file", false}, FolderChange{"/w", "other", false}));
}

TEST_F(StreamedWatchTest, secondStart_replacesTheStream) {
  start({"/one"});
  start({"/two"});
  news();
  EXPECT_EQ(system_.living, 1);
  EXPECT_THAT(changesBy("/one/file", kModified), IsEmpty());
  EXPECT_THAT(changesBy("/two/file", kModified), ElementsAre(FolderChange{"/two", "file", false}));
}

TEST_F(StreamedWatchTest, end_leavesNoCookieAndTellsNoMore) {
  start({"/w"});
  watch_->prove();
  queue_->run();
  news();
  const auto wake = watch_->wakeNotice();
  watch_.reset();
  wake();
  queue_->advance(seconds(400));
  EXPECT_EQ(system_.living, 0);
  EXPECT_THAT(system_.cookies(), IsEmpty());
  system_.tell("/w/file", kModified);
  const NotedFolderNews::News told = noted_.take();
  EXPECT_THAT(told.changes, IsEmpty());
  EXPECT_THAT(told.losses, IsEmpty());
  EXPECT_THAT(told.standings, IsEmpty());
}

TEST_F(StreamedWatchTest, laterReadings_followTheCloudState) {
  EXPECT_THAT(watch_->laterReadings(), ElementsAre(seconds(1), seconds(5), seconds(30)));
}

}  // namespace
}  // namespace cirrovane::test
