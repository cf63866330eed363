#include "coordinator/CoverageWatch.h"
#include "tests/core/Builders.h"
#include "tests/support/FakeFileStorage.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ManualMonotonicClock.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;

class CoverageWatchTest : public testing::Test {
 protected:
  CoverageWatchTest() {
    std::string path;
    for (const std::string name : {"/Users", "/test", "/Library", "/Mobile Documents", "/com~apple~CloudDocs"}) {
      tree_.makeFolder(path += name);
    }
    tree_.setOnListing([this] { monotonicClock_.advance(duration_); });
    watch_.emplace(std::make_shared<const CoverageKeeper>(tree_, storage_, clock_),
                   CoverageEnvironment{main_, looking_, monotonicClock_, &alarm_});
  }

  void runAll() {
    while (looking_.size() + main_.size() > 0) {
      looking_.runAll();
      main_.runAll();
    }
  }
  void addGap() {
    FakeValues values;
    values.isUbiquitousItem = false;
    tree_.makeFile(std::string(kDrive) + "/.env", values);
  }
  std::int64_t gapCount() const { return (*watch_->report().value())->gapCounts.all(); }

  const std::vector<WatchFolder> folders_ = {makeFolder("Drive", std::string(kDrive))};
  FakeTree tree_;
  FakeFileStorage storage_;
  ManualClock clock_{at(18)};
  ManualMonotonicClock monotonicClock_;
  std::chrono::nanoseconds duration_{0};
  ManualExecutor main_;
  ManualExecutor looking_;
  ManualAlarm alarm_;
  std::optional<CoverageWatch> watch_;
};

TEST_F(CoverageWatchTest, followedFolders_areLookedAtAtOnceAndEveryTenMinutes) {
  watch_->follow(folders_);
  EXPECT_FALSE(watch_->report().value());
  runAll();
  EXPECT_EQ(gapCount(), 0);
  EXPECT_EQ(alarm_.after(), 10min);
  addGap();
  alarm_.ring();
  runAll();
  EXPECT_EQ(gapCount(), 1);
  EXPECT_EQ(alarm_.after(), 10min);
}

TEST_F(CoverageWatchTest, lookThatTakesLong_isFollowedByALongRest) {
  duration_ = 1min;
  watch_->follow(folders_);
  runAll();
  EXPECT_EQ(alarm_.after(), 50min);
  EXPECT_EQ(watch_->waitingLookDue(), monotonicClock_.sinceBoot() + 50min);
}

TEST_F(CoverageWatchTest, shortLook_mayBeRepeatedAfterTenSecondsWhereSomebodyWaits) {
  EXPECT_EQ(watch_->waitingLookDue(), 0s);
  watch_->follow(folders_);
  runAll();
  EXPECT_EQ(watch_->waitingLookDue(), monotonicClock_.sinceBoot() + 10s);
}

TEST_F(CoverageWatchTest, lookOnDemand_beginsAfterTheDemand) {
  watch_->follow(folders_);
  looking_.runAll();
  addGap();
  std::optional<std::int64_t> found;
  watch_->look([&](const Shared<CoverageReport>& report) { found = report->gapCounts.all(); });
  main_.runAll();
  EXPECT_EQ(found, std::nullopt);
  runAll();
  EXPECT_EQ(found, 1);
}

TEST_F(CoverageWatchTest, otherFolders_stopTheLookUnderWay) {
  tree_.makeFolder(std::string(kDrive) + "/Work");
  addGap();
  watch_->follow(folders_);
  bool isTold = false;
  watch_->look([&](const auto&) { isTold = true; });
  watch_->follow({makeFolder("Work", std::string(kDrive) + "/Work")});
  runAll();
  EXPECT_FALSE(isTold);
  EXPECT_EQ(gapCount(), 0);
}

TEST_F(CoverageWatchTest, sameFoldersAgain_keepWhatIsKnown) {
  watch_->follow(folders_);
  runAll();
  watch_->follow(folders_);
  EXPECT_TRUE(watch_->report().value());
  EXPECT_EQ(looking_.size(), 0U);
}

TEST_F(CoverageWatchTest, whoeverIsTold_mayAskForTheNextLook) {
  int looks = 0;
  std::function<void(const Shared<CoverageReport>&)> again = [&](const auto&) {
    if (++looks < 3) {
      watch_->look(again);
    }
  };
  watch_->look(again);
  runAll();
  EXPECT_EQ(looks, 3);
}

TEST_F(CoverageWatchTest, destroyedDuringALook_stopsItAndTellsNobody) {
  watch_->follow(folders_);
  bool isTold = false;
  watch_->look([&](const auto&) { isTold = true; });
  watch_.reset();
  EXPECT_EQ(alarm_.after(), std::nullopt);
  const std::size_t listed = tree_.listingCount();
  runAll();
  EXPECT_FALSE(isTold);
  EXPECT_EQ(tree_.listingCount(), listed);
}

}  // namespace
}  // namespace cirrovane::test
