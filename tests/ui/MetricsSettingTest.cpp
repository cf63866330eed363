#include "tests/coordinator/ManualDashboard.h"
#include "ui/viewmodels/MetricsSetting.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::SizeIs;

const std::string kPlace = "/var/lib/node_exporter/cirrovane.prom";

class MetricsSettingTest : public Dashboard {
 protected:
  ~MetricsSettingTest() override {
    setting_.reset();
    file_.reset();
  }

  /// What a panel needs to open and be answered.
  static void runPanel() { QCoreApplication::processEvents(); }
  void switchOn() {
    setting_->setOn(true);
    runPanel();
  }

  // A queued call needs an application object.
  int argumentCount_ = 1;
  char name_[6] = "tests";
  char* arguments_[1] = {name_};
  QCoreApplication application_{argumentCount_, arguments_};
  std::optional<MetricsFile> file_{std::in_place, dashboard_->cycle(), coverage_->report(),
                                   MetricsFileEnvironment{main_, status_, storage_, defaults_, "v1.2 (45)"}};
  std::unique_ptr<MetricsSetting> setting_ = std::make_unique<MetricsSetting>(*file_, panels_);
};

TEST_F(MetricsSettingTest, nobodyChose_isOffWithoutAPlace) {
  EXPECT_FALSE(setting_->isOn());
  EXPECT_EQ(setting_->place(), "");
  EXPECT_EQ(setting_->note(), "");
}

TEST_F(MetricsSettingTest, switchedOn_asksForThePlaceOnce) {
  panels_.answer = kPlace;
  const QSignalSpy told(setting_.get(), &MetricsSetting::changed);
  switchOn();
  ASSERT_THAT(panels_.savePanels(), SizeIs(1));
  EXPECT_EQ(panels_.savePanels().front().proposedName, "cirrovane.prom");
  EXPECT_EQ(panels_.savePanels().front().kind.suffix, "prom");
  EXPECT_TRUE(setting_->isOn());
  EXPECT_EQ(setting_->place(), QString::fromStdString(kPlace));
  EXPECT_GE(told.size(), 1);
  setting_->setOn(false);
  EXPECT_FALSE(setting_->isOn());
  setting_->setOn(true);
  EXPECT_TRUE(setting_->isOn());
  EXPECT_THAT(panels_.savePanels(), SizeIs(1));
}

TEST_F(MetricsSettingTest, switchedOn_answersBeforeThePanelOpens) {
  setting_->setOn(true);
  EXPECT_THAT(panels_.savePanels(), SizeIs(0));
  runPanel();
  EXPECT_THAT(panels_.savePanels(), SizeIs(1));
}

TEST_F(MetricsSettingTest, placeNotChosen_staysOff) {
  switchOn();
  EXPECT_THAT(panels_.savePanels(), SizeIs(1));
  EXPECT_FALSE(setting_->isOn());
}

TEST_F(MetricsSettingTest, anotherPlace_isWrittenToFromThenOn) {
  panels_.answer = kPlace;
  switchOn();
  panels_.answer = "/tmp/other.prom";
  setting_->choosePlace();
  runPanel();
  EXPECT_EQ(setting_->place(), "/tmp/other.prom");
  cycle();
  EXPECT_FALSE(isWritten(kPlace));
  EXPECT_TRUE(isWritten("/tmp/other.prom"));
}

TEST_F(MetricsSettingTest, goneWhileThePanelIsOpen_doesNothingWithTheAnswer) {
  panels_.answer = kPlace;
  panels_.whileOpen = [this] { setting_.reset(); };
  switchOn();
  EXPECT_FALSE(file_->isOn());
}

TEST_F(MetricsSettingTest, fileThatCannotBeWritten_isSaidUntilItCan) {
  panels_.answer = kPlace;
  storage_.failure = Failure{"The disk is full."};
  switchOn();
  cycle();
  const QSignalSpy told(setting_.get(), &MetricsSetting::changed);
  EXPECT_EQ(setting_->note(), "The metrics could not be written. The disk is full.");
  cycle();
  EXPECT_EQ(told.size(), 0);
  storage_.failure.reset();
  cycle();
  EXPECT_EQ(setting_->note(), "");
  EXPECT_EQ(told.size(), 1);
}

}  // namespace
}  // namespace cirrovane::test
