#include "coordinator/MetricsFile.h"
#include "tests/coordinator/ManualDashboard.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string kPlace = "/var/lib/node_exporter/cirrovane.prom";

class MetricsFileTest : public Dashboard {
 protected:
  MetricsFileTest() { open(); }
  ~MetricsFileTest() override { file_.reset(); }

  /// As the application does when it starts.
  void open() {
    file_.emplace(dashboard_->cycle(), coverage_->report(),
                  MetricsFileEnvironment{main_, writing_, storage_, defaults_, "v1.2 (45)"});
    told_.clear();
    subscription_ = file_->failure().afterChange(
        [this](const std::optional<Failure>& failure) { told_.push_back(failure ? failure->message : ""); });
  }
  /// A whole refresh, and what is written after it.
  void cycleAndWrite() {
    cycle();
    runWrite();
  }
  void runWrite() {
    writing_.runAll();
    runAll();
  }
  std::string text() const { return isWritten(kPlace) ? storage_.files().at(kPlace) : ""; }
  std::ptrdiff_t writes() const { return std::ranges::count(storage_.written(), kPlace); }

  ManualExecutor writing_;
  std::optional<MetricsFile> file_;
  std::vector<std::string> told_;
  Subscription subscription_;
};

TEST_F(MetricsFileTest, nobodyChose_isOffAndWritesNothing) {
  EXPECT_FALSE(file_->isOn());
  EXPECT_EQ(file_->place(), "");
  cycleAndWrite();
  file_->setOn(true);
  EXPECT_FALSE(file_->isOn());
  runWrite();
  EXPECT_EQ(writes(), 0);
}

TEST_F(MetricsFileTest, placeChosen_isWrittenAfterEachRefresh) {
  file_->writeTo(kPlace);
  EXPECT_TRUE(file_->isOn());
  runWrite();
  EXPECT_EQ(text(), "") << "before the first scan nothing is known";
  cycleAndWrite();
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_safe_to_close 1\n"));
  makeUnsafe();
  cycleAndWrite();
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_safe_to_close 0\n"));
  EXPECT_EQ(writes(), 2);
}

TEST_F(MetricsFileTest, placeChosenBetweenRefreshes_isWrittenAtOnce) {
  cycle();
  file_->writeTo(kPlace);
  runWrite();
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_build_info{version=\"v1.2 (45)\"} 1\n"));
}

TEST_F(MetricsFileTest, refreshUnderWay_isFollowedByItsOwnFigures) {
  cycle();
  dashboard_->refresh();
  file_->writeTo(kPlace);
  writing_.runAll();
  EXPECT_EQ(writes(), 0);
  runAll();
  runWrite();
  EXPECT_EQ(writes(), 1);
}

TEST_F(MetricsFileTest, whatOnlyTheApplicationKnows_isWritten) {
  file_->writeTo(kPlace);
  publishLiveness({.state = LivenessState::live, .reason = "", .disagreements = 3});
  cycleAndWrite();
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_liveness{state=\"live\"} 1\n"));
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_live_disagreements_total 3\n"));
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_failed_probes{outcome=\"outOfTime\"} 0\n"));
  EXPECT_THAT(text(), Not(HasSubstr("coverage")));
  CoverageReport coverage;
  coverage.complete = true;
  publishCoverage(coverage);
  cycleAndWrite();
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_coverage_complete 1\n"));
}

TEST_F(MetricsFileTest, probesThatNeverCameBack_areNotTold) {
  file_->writeTo(kPlace);
  cycleAndWrite();
  dashboard_->refresh();
  runScan();
  cycleLimit_.tick();
  runWrite();
  EXPECT_EQ(writes(), 2);
  EXPECT_THAT(text(), Not(HasSubstr("failed_probes")));
}

TEST_F(MetricsFileTest, choice_isRemembered) {
  file_->writeTo(kPlace);
  EXPECT_EQ(defaults_.text("metricsFile"), kPlace);
  EXPECT_EQ(defaults_.boolean("metricsEnabled"), true);
  open();
  EXPECT_TRUE(file_->isOn());
  cycleAndWrite();
  EXPECT_EQ(writes(), 1);
  file_->setOn(false);
  open();
  EXPECT_FALSE(file_->isOn());
  EXPECT_EQ(file_->place(), kPlace);
  cycleAndWrite();
  EXPECT_EQ(writes(), 1);
  file_->setOn(true);
  runWrite();
  EXPECT_EQ(writes(), 2);
}

TEST_F(MetricsFileTest, failureThatLasts_isToldOnceAndTakenBackWhenItIsOver) {
  storage_.failure = Failure{"The disk is full."};
  file_->writeTo(kPlace);
  told_.clear();
  cycleAndWrite();
  cycleAndWrite();
  EXPECT_THAT(told_, ElementsAre("The disk is full."));
  storage_.failure.reset();
  cycleAndWrite();
  cycleAndWrite();
  EXPECT_THAT(told_, ElementsAre("The disk is full.", ""));
}

TEST_F(MetricsFileTest, switchedOffMeanwhile_failureIsNoneOfTheUsersBusiness) {
  storage_.failure = Failure{"The disk is full."};
  cycle();
  file_->writeTo(kPlace);
  writing_.runAll();
  file_->setOn(false);
  told_.clear();
  runAll();
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_EQ(file_->failure().value(), std::nullopt);
}

TEST_F(MetricsFileTest, slowDisk_getsTheLatestAloneAndHoldsNoRefreshUp) {
  file_->writeTo(kPlace);
  cycle();
  cycle();
  makeUnsafe();
  cycle();
  EXPECT_FALSE(dashboard_->isScanning());
  EXPECT_EQ(writes(), 0);
  runWrite();
  EXPECT_EQ(writes(), 1);
  runWrite();
  EXPECT_EQ(writes(), 2);
  EXPECT_THAT(text(), HasSubstr("\ncirrovane_safe_to_close 0\n"));
}

TEST_F(MetricsFileTest, goneWhileWriting_isToldNothing) {
  file_->writeTo(kPlace);
  cycle();
  file_.reset();
  runWrite();
  EXPECT_EQ(writes(), 1);
}

}  // namespace
}  // namespace cirrovane::test
