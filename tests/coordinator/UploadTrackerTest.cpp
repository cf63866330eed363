#include "coordinator/UploadTracker.h"
#include "tests/coordinator/Builders.h"
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
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr std::int64_t kMegabyte = 1'000'000;
const std::string kRecord = "/Users/test/uploads.json";

class UploadTrackerTest : public testing::Test {
 protected:
  UploadTrackerTest() {
    std::string path;
    for (const std::string name : {"/Users", "/test", "/Library", "/Mobile Documents", "/com~apple~CloudDocs"}) {
      tree_.makeFolder(path += name);
    }
    // The tree is asked whether a file is there, and the storage for its text.
    tree_.makeFile(kRecord, values(true));
    make();
  }
  void make() {
    tracker_.emplace(std::make_shared<const UploadsStore>(tree_, storage_, kRecord), reports_,
                     UploadTracking{main_, looking_, clock_, monotonicClock_, &alarm_});
    subscription_ = tracker_->standing().afterChange([this](const UploadStanding&) { ++told_; });
  }

  static std::string pathOf(int number) { return std::string(kDrive) + "/" + std::to_string(number); }
  static FakeValues values(bool isUploaded) {
    FakeValues values;
    values.isUploaded = isUploaded;
    return values;
  }
  /// The files from `first` to `last` wait, those before them have left.
  void publish(int first, int last) {
    SyncHealthReport report;
    report.generatedAt = clock_.now();
    for (int number = 1; number <= last; ++number) {
      if (!tree_.makeFile(pathOf(number), values(number < first))) {
        tree_.setValues(pathOf(number), values(number < first));
      }
      if (number >= first) {
        report.blockers.push_back(makeBlocker(BlockerReason::notUploaded, pathOf(number)));
        report.blockers.back().fileSize = kMegabyte;
      }
    }
    reports_.set(Shared(std::move(report)));
  }
  void look(int first, int last) {
    publish(first, last);
    tracker_->look(reports_.value());
    runAll();
  }
  void lookSoon(int first, int last) {
    publish(first, last);
    tracker_->lookSoon();
  }
  void runAll() {
    while (looking_.runOne() || main_.runOne()) {
    }
  }
  void pass(std::chrono::seconds time) {
    clock_.advance(time);
    monotonicClock_.advance(time);
  }
  void ring() {
    alarm_.ring();
    runAll();
  }
  const UploadStanding& standing() const { return tracker_->standing().value(); }

  FakeTree tree_;
  FakeFileStorage storage_;
  ManualClock clock_{at(18)};
  ManualMonotonicClock monotonicClock_;
  ManualExecutor main_;
  ManualExecutor looking_;
  ManualAlarm alarm_;
  Published<Shared<SyncHealthReport>> reports_;
  std::optional<UploadTracker> tracker_;
  Subscription subscription_;
  int told_ = 0;
};

TEST_F(UploadTrackerTest, refresh_isLookedAtAtOnce) {
  look(1, 3);
  EXPECT_EQ(standing().totals.pendingFiles, 3);
  EXPECT_EQ(standing().totals.pendingBytes, 3 * kMegabyte);
  EXPECT_EQ(standing().quietSince, clock_.now());
  EXPECT_EQ(standing().share, 0);
  EXPECT_EQ(told_, 1);
}

TEST_F(UploadTrackerTest, whatLeavesBetweenRefreshes_isSeenAFewSecondsLater) {
  look(1, 4);
  pass(2s);
  lookSoon(2, 4);
  EXPECT_EQ(alarm_.after(), 3s);
  ring();
  EXPECT_EQ(standing().totals.pendingFiles, 4);
  EXPECT_EQ(alarm_.after(), 3s);
  pass(3s);
  lookSoon(3, 4);
  EXPECT_EQ(alarm_.after(), 0s);
  ring();
  EXPECT_EQ(standing().totals.pendingFiles, 2);
  EXPECT_EQ(standing().lastLeft, clock_.now());
  EXPECT_EQ(standing().share, 0.5);
}

TEST_F(UploadTrackerTest, filesThatLeaveSteadily_haveARangeBetweenTwoRefreshes) {
  look(1, 60);
  for (int number = 2; number <= 16; ++number) {
    pass(6s);
    lookSoon(number, 60);
    ring();
  }
  ASSERT_TRUE(standing().totals.estimate);
  EXPECT_LT(standing().totals.estimate->earliest, clock_.now() + 45 * 6s);
  EXPECT_GT(standing().totals.estimate->latest, clock_.now() + 45 * 6s);
}

TEST_F(UploadTrackerTest, nothingNew_tellsTheTimeAlone) {
  look(1, 1);
  EXPECT_EQ(alarm_.after(), 2min);
  pass(120s);
  ring();
  EXPECT_EQ(told_, 2);
  EXPECT_EQ(alarm_.after(), 1min);
  EXPECT_EQ(looking_.size(), 0U);
}

TEST_F(UploadTrackerTest, nothingPending_wakesNobody) {
  look(1, 1);
  look(2, 1);
  EXPECT_EQ(standing().totals.pendingFiles, 0);
  EXPECT_EQ(alarm_.after(), std::nullopt);
  lookSoon(2, 1);
  EXPECT_EQ(alarm_.after(), std::nullopt);
}

TEST_F(UploadTrackerTest, beforeTheFirstRefresh_reportsWait) {
  lookSoon(1, 1);
  EXPECT_EQ(alarm_.after(), std::nullopt);
  EXPECT_THAT(storage_.files(), IsEmpty());
}

TEST_F(UploadTrackerTest, waitBeyondWhatTheOthersExplain_isStuckWithTheSystemsWords) {
  look(1, 2);
  pass(1300s);
  publish(1, 2);
  SyncHealthReport report = *reports_.value();
  report.blockers.push_back(makeBlocker(BlockerReason::uploadError, pathOf(2)));
  report.blockers.back().details = "No room.";
  reports_.set(Shared(std::move(report)));
  tracker_->look(reports_.value());
  runAll();
  EXPECT_EQ(standing().totals.stuckFiles, 2);
  ASSERT_THAT(standing().stuck,
              ElementsAre(Field(&StuckUpload::filePath, pathOf(1)), Field(&StuckUpload::filePath, pathOf(2))));
  EXPECT_EQ(standing().stuck[0].error, "");
  EXPECT_EQ(standing().stuck[1].error, "No room.");
  EXPECT_EQ(standing().stuck[1].pendingSince, at(18));
}

TEST_F(UploadTrackerTest, destroyedWhileALookIsUnderWay_isNotTouched) {
  publish(1, 1);
  tracker_->look(reports_.value());
  looking_.runAll();
  tracker_.reset();
  main_.runAll();
  EXPECT_EQ(told_, 0);
  EXPECT_EQ(alarm_.after(), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
