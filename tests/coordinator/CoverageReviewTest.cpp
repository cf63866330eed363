#include "coordinator/CoverageReview.h"
#include "tests/core/Builders.h"
#include "tests/stores/StoreFixture.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ManualMonotonicClock.h"

#include <chrono>
#include <filesystem>
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
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class CoverageReviewTest : public StoreTest {
 protected:
  CoverageReviewTest() {
    clock_.set(Time(std::chrono::seconds(1'763'231'000)));
    writeFile(env());
    writeFile(work() + "/.keys/a");
    writeFile(work() + "/.keys/b");
    open();
  }

  std::string work() const { return iCloudDrivePath() + "/Work"; }
  std::string env() const { return work() + "/.env"; }
  static std::vector<WatchFolder> folders(const std::string& path) { return {makeFolder("Work", path)}; }

  void open() {
    review_.emplace(std::make_shared<const CoverageKeeper>(fileSystem_, storage_, clock_),
                    CoverageReviewEnvironment{{main_, looking_, monotonicClock_, &alarm_}, writing_, clock_});
  }
  void runAll() {
    while (looking_.size() + writing_.size() + main_.size() > 0) {
      looking_.runAll();
      writing_.runAll();
      main_.runAll();
    }
  }
  void lookFirst() {
    review_->follow(folders(work()));
    runAll();
  }
  const CoverageReport& report() const { return **review_->report().value(); }
  CoverageGap gapAt(const std::string& path) const {
    for (const CoverageGap& gap : report().gaps) {
      if (gap.path == path) {
        return gap;
      }
    }
    ADD_FAILURE() << path;
    return {};
  }
  std::vector<std::string> gapPaths() const {
    std::vector<std::string> paths;
    for (const CoverageGap& gap : report().gaps) {
      paths.push_back(gap.path);
    }
    return paths;
  }
  std::vector<std::string> acknowledgedPaths() const {
    std::vector<std::string> paths;
    for (const Acknowledgement& one : review_->acknowledgements().value()) {
      paths.push_back(one.path);
    }
    return paths;
  }
  /// Whatever is to be kept has no place to be kept in.
  void refuseFiles() const {
    const std::filesystem::path place = storePath("acknowledged.json");
    std::filesystem::remove_all(place.parent_path());
    writeFile(place.parent_path().string());
  }

  ManualExecutor main_;
  ManualExecutor looking_;
  ManualExecutor writing_;
  ManualMonotonicClock monotonicClock_;
  ManualAlarm alarm_;
  std::optional<CoverageReview> review_;
};

TEST_F(CoverageReviewTest, nothingFollowed_looksAtNothing) {
  review_->look();
  review_->opened();
  EXPECT_EQ(looking_.size(), 0U);
  EXPECT_FALSE(review_->report().value());
}

TEST_F(CoverageReviewTest, acknowledged_isGoneAtOnceAndLookedAtAgain) {
  lookFirst();
  ASSERT_THAT(gapPaths(), ElementsAre(env(), work() + "/.keys"));
  review_->acknowledge(gapAt(env()), std::chrono::days(7));
  EXPECT_TRUE(review_->isChanging());
  EXPECT_THAT(gapPaths(), SizeIs(2));
  writing_.runAll();
  main_.runOne();
  EXPECT_FALSE(review_->isChanging());
  EXPECT_TRUE(review_->isLooking().value());
  EXPECT_THAT(gapPaths(), ElementsAre(work() + "/.keys"));
  EXPECT_EQ(report().acknowledged, 1);
  EXPECT_THAT(acknowledgedPaths(), ElementsAre(env()));
  EXPECT_EQ(review_->acknowledgements().value().front().expiresAt, clock_.now() + std::chrono::days(7));
  runAll();
  EXPECT_FALSE(review_->isLooking().value());
  EXPECT_THAT(gapPaths(), ElementsAre(work() + "/.keys"));
  EXPECT_EQ(report().acknowledged, 1);
}

TEST_F(CoverageReviewTest, acknowledgedForGood_hasNoEnd) {
  lookFirst();
  review_->acknowledge(gapAt(env()), std::nullopt);
  runAll();
  EXPECT_EQ(review_->acknowledgements().value().front().expiresAt, std::nullopt);
}

TEST_F(CoverageReviewTest, acknowledgedDuringALook_doesNotComeBackWithIt) {
  lookFirst();
  review_->look();
  looking_.runAll();
  review_->acknowledge(gapAt(env()), std::nullopt);
  writing_.runAll();
  main_.runAll();
  EXPECT_THAT(gapPaths(), ElementsAre(work() + "/.keys"));
  runAll();
  EXPECT_THAT(gapPaths(), ElementsAre(work() + "/.keys"));
  EXPECT_EQ(report().acknowledged, 1);
}

TEST_F(CoverageReviewTest, acknowledgementThatExpired_comesBackWithTheNextLook) {
  lookFirst();
  review_->acknowledge(gapAt(env()), std::chrono::days(7));
  runAll();
  clock_.set(clock_.now() + std::chrono::days(7));
  alarm_.ring();
  runAll();
  EXPECT_THAT(gapPaths(), SizeIs(2));
  EXPECT_THAT(acknowledgedPaths(), IsEmpty());
}

TEST_F(CoverageReviewTest, forgotten_comesBackWithTheLookThatFollows) {
  lookFirst();
  review_->acknowledge(gapAt(env()), std::nullopt);
  runAll();
  review_->forget(env());
  writing_.runAll();
  main_.runAll();
  EXPECT_THAT(acknowledgedPaths(), IsEmpty());
  EXPECT_TRUE(review_->isLooking().value());
  runAll();
  EXPECT_THAT(gapPaths(), SizeIs(2));
}

TEST_F(CoverageReviewTest, acknowledgedAndForgottenDuringALook_comesBack) {
  lookFirst();
  review_->look();
  review_->acknowledge(gapAt(env()), std::nullopt);
  writing_.runAll();
  main_.runAll();
  review_->forget(env());
  runAll();
  EXPECT_THAT(gapPaths(), SizeIs(2));
}

TEST_F(CoverageReviewTest, lostFilesAcknowledged_leaveTheGapsBelow) {
  for (int number = 0; number < 8; ++number) {
    writeFile(work() + "/" + std::to_string(number));
    setICloudAttribute(work() + "/" + std::to_string(number), "isUploaded=true");
  }
  SyncHealthReport safe;
  safe.safeToClose = true;
  safe.folderHealth.emplace_back().folder.path = work();
  safe.folderHealth.back().scannedFileCount = 61;
  ASSERT_EQ(CoverageKeeper(fileSystem_, storage_, clock_).record(safe), std::nullopt);
  lookFirst();
  ASSERT_EQ(report().gapCounts.filesLost, 1);
  review_->acknowledge(gapAt(work()), std::nullopt);
  writing_.runAll();
  main_.runOne();
  EXPECT_EQ(report().gapCounts.filesLost, std::nullopt);
  EXPECT_THAT(gapPaths(), ElementsAre(env(), work() + "/.keys"));
  runAll();
  EXPECT_THAT(gapPaths(), ElementsAre(env(), work() + "/.keys"));
  EXPECT_THAT(acknowledgedPaths(), IsEmpty());
}

TEST_F(CoverageReviewTest, acknowledgementThatCannotBeKept_saysSoAndKeepsTheGap) {
  lookFirst();
  refuseFiles();
  review_->acknowledge(gapAt(env()), std::nullopt);
  runAll();
  EXPECT_THAT(review_->failure().value().value_or(""), HasSubstr("It could not be acknowledged: "));
  EXPECT_THAT(gapPaths(), SizeIs(2));
  EXPECT_FALSE(review_->isChanging());
}

TEST_F(CoverageReviewTest, failure_isToldUntilTheNextChangeOrOpening) {
  lookFirst();
  review_->forget(env());
  runAll();
  ASSERT_TRUE(review_->failure().value());
  review_->opened();
  EXPECT_EQ(review_->failure().value(), std::nullopt);
  review_->forget(env());
  runAll();
  ASSERT_TRUE(review_->failure().value());
  review_->acknowledge(gapAt(env()), std::nullopt);
  runAll();
  EXPECT_EQ(review_->failure().value(), std::nullopt);
}

TEST_F(CoverageReviewTest, nameThatIsNotUTF8_cannotBeAcknowledged) {
  lookFirst();
  CoverageGap gap = gapAt(env());
  gap.path = work() + "/.\xff";
  review_->acknowledge(gap, std::nullopt);
  EXPECT_THAT(review_->failure().value().value_or(""), HasSubstr("is not UTF-8"));
  EXPECT_EQ(writing_.size(), 0U);
}

TEST_F(CoverageReviewTest, opened_readsWhatIsAcknowledgedMeanwhile) {
  lookFirst();
  const CoverageKeeper terminal(fileSystem_, storage_, clock_);
  ASSERT_EQ(terminal.acknowledge({env()}, std::nullopt), std::nullopt);
  review_->opened();
  writing_.runAll();
  main_.runAll();
  EXPECT_THAT(acknowledgedPaths(), ElementsAre(env()));
}

TEST_F(CoverageReviewTest, opened_looksAgainWhereTheLatestLookIsOld) {
  lookFirst();
  review_->opened();
  EXPECT_FALSE(review_->isLooking().value());
  monotonicClock_.advance(11s);
  review_->opened();
  EXPECT_TRUE(review_->isLooking().value());
}

TEST_F(CoverageReviewTest, otherFolders_takeTheReportAway) {
  lookFirst();
  writeFile(iCloudDrivePath() + "/Home/a");
  setICloudAttribute(iCloudDrivePath() + "/Home/a", "isUploaded=true");
  review_->follow(folders(iCloudDrivePath() + "/Home"));
  EXPECT_FALSE(review_->report().value());
  runAll();
  EXPECT_TRUE(report().complete);
}

TEST_F(CoverageReviewTest, destroyedDuringAChange_tellsNobody) {
  lookFirst();
  review_->acknowledge(gapAt(env()), std::nullopt);
  writing_.runAll();
  bool isTold = false;
  const Subscription told = review_->changes().observe([&](int) { isTold = true; });
  review_.reset();
  runAll();
  EXPECT_FALSE(isTold);
}

}  // namespace
}  // namespace cirrovane::test
