#include "tests/support/FakeLoginItem.h"
#include "ui/viewmodels/LoginItemSetting.h"

#include <QSignalSpy>
#include <memory>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class LoginItemSettingTest : public testing::Test {
 protected:
  /// The setting once it knows what the system says.
  std::unique_ptr<LoginItemSetting> read() {
    auto setting = std::make_unique<LoginItemSetting>(item_);
    setting->reread();
    return setting;
  }

  FakeLoginItem item_;
};

TEST_F(LoginItemSettingTest, beforeTheSystemIsAsked_nothingCanBeChosen) {
  item_.current = LoginItemState::on;
  const LoginItemSetting setting(item_);
  EXPECT_FALSE(setting.isAvailable());
  EXPECT_FALSE(setting.isOn());
  EXPECT_EQ(setting.note(), "");
}

TEST_F(LoginItemSettingTest, switched_isWhatTheSystemSays) {
  const auto setting = read();
  EXPECT_FALSE(setting->isOn());
  const QSignalSpy told(setting.get(), &LoginItemSetting::changed);
  setting->setOn(true);
  EXPECT_TRUE(setting->isOn());
  EXPECT_EQ(setting->note(), "");
  EXPECT_EQ(told.size(), 1);
  setting->setOn(false);
  EXPECT_FALSE(setting->isOn());
}

TEST_F(LoginItemSettingTest, approvalMissing_saysWhereToGiveItAndLeadsThere) {
  item_.whenOn = LoginItemState::needsApproval;
  const auto setting = read();
  setting->setOn(true);
  EXPECT_TRUE(setting->isOn());
  EXPECT_EQ(setting->note(), "Not yet: allow Cirrovane in System Settings > General > Login Items.");
  EXPECT_EQ(setting->action(), "Open System Settings");
  setting->act();
  EXPECT_EQ(item_.opened, 1);
  item_.current = LoginItemState::on;
  setting->reread();
  EXPECT_EQ(setting->note(), "");
  EXPECT_EQ(setting->action(), "");
}

TEST_F(LoginItemSettingTest, approvalMissing_withoutAWayThere_offersNone) {
  item_.current = LoginItemState::needsApproval;
  item_.leadsToSettings = false;
  const auto setting = read();
  EXPECT_NE(setting->note(), "");
  EXPECT_EQ(setting->action(), "");
}

TEST_F(LoginItemSettingTest, choiceThatFails_staysAsItWasAndSaysWhy) {
  item_.failure = Failure{"The disk is full."};
  const auto setting = read();
  setting->setOn(true);
  EXPECT_FALSE(setting->isOn());
  EXPECT_EQ(setting->note(), "This could not be changed. The disk is full.");
  EXPECT_EQ(setting->action(), "");
  item_.failure.reset();
  setting->setOn(true);
  EXPECT_EQ(setting->note(), "");
}

TEST_F(LoginItemSettingTest, unavailable_saysWhyAndIsOff) {
  item_.current = LoginItemState::on;
  item_.unavailable = Failure{"Only an installed application can be opened at login."};
  const auto setting = read();
  EXPECT_FALSE(setting->isAvailable());
  EXPECT_FALSE(setting->isOn());
  EXPECT_EQ(setting->note(), "Only an installed application can be opened at login.");
  item_.unavailable.reset();
  setting->reread();
  EXPECT_TRUE(setting->isAvailable());
  EXPECT_TRUE(setting->isOn());
}

TEST_F(LoginItemSettingTest, changedElsewhere_isTakenOverWhenRead) {
  const auto setting = read();
  item_.current = LoginItemState::on;
  EXPECT_FALSE(setting->isOn());
  setting->reread();
  EXPECT_TRUE(setting->isOn());
}

}  // namespace
}  // namespace cirrovane::test
