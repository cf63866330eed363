#include "tests/support/FakeBundle.h"
#include "tests/support/FakeLoginItem.h"
#include "tests/support/FakeMotionPreference.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/AppSettings.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(AppSettings, nothingStored_isTheDefault) {
  FakeUserDefaults defaults;
  const AppSettings settings(defaults);
  EXPECT_EQ(settings.visualStyle(), "liquid");
  EXPECT_TRUE(settings.motionEnabled());
  EXPECT_FALSE(settings.showTerminologyOnDashboard());
  EXPECT_TRUE(settings.notificationsEnabled());
}

TEST(AppSettings, styles_areOfferedWithTheirTitles) {
  FakeUserDefaults defaults;
  AppSettings settings(defaults);
  EXPECT_THAT(rowsOf(*settings.visualStyles()),
              testing::ElementsAre(ChoiceRow{.value = "liquid", .title = "Liquid Glass"},
                                   ChoiceRow{.value = "classic", .title = "Classic"}));
}

TEST(AppSettings, numbersStoredByHand_areTruthValues) {
  for (const bool isOn : {false, true}) {
    FakeUserDefaults defaults;
    for (const char* key : {"motionEnabled", "showTerminologyOnDashboard", "guardrailNotificationsEnabled"}) {
      defaults.hold(key, isOn ? 1.0 : 0.0);
    }
    const AppSettings settings(defaults);
    EXPECT_EQ(settings.motionEnabled(), isOn);
    EXPECT_EQ(settings.showTerminologyOnDashboard(), isOn);
    EXPECT_EQ(settings.notificationsEnabled(), isOn);
  }
}

TEST(AppSettings, notifications_storedAsNoTruthValue_areOffAsTheServiceTakesThem) {
  for (const DefaultsValue& stored : {DefaultsValue("maybe"), DefaultsValue(OtherDefaultsValue())}) {
    FakeUserDefaults defaults;
    defaults.hold("guardrailNotificationsEnabled", stored);
    EXPECT_FALSE(AppSettings(defaults).notificationsEnabled());
  }
}

TEST(AppSettings, style_storedAsNeither_isLiquid) {
  for (const char* stored : {"Classic", "glass", ""}) {
    FakeUserDefaults defaults;
    defaults.hold("visualStyle", std::string(stored));
    EXPECT_EQ(AppSettings(defaults).visualStyle(), "liquid") << stored;
  }
  FakeUserDefaults defaults;
  defaults.hold("visualStyle", std::string("classic"));
  EXPECT_TRUE(AppSettings(defaults).isClassic());
}

TEST(AppSettings, change_isStoredAndToldOnce) {
  FakeUserDefaults defaults;
  AppSettings settings(defaults);
  const QSignalSpy told(&settings, &AppSettings::visualStyleChanged);
  settings.setVisualStyle("classic");
  settings.setVisualStyle("classic");
  EXPECT_EQ(told.size(), 1);
  EXPECT_EQ(defaults.text("visualStyle"), "classic");
  settings.setMotionEnabled(false);
  settings.setShowTerminologyOnDashboard(true);
  settings.setNotificationsEnabled(false);
  EXPECT_EQ(defaults.boolean("motionEnabled"), false);
  EXPECT_EQ(defaults.boolean("showTerminologyOnDashboard"), true);
  EXPECT_EQ(defaults.boolean("guardrailNotificationsEnabled"), false);
}

TEST(AppSettings, choices_comeBackAfterARestart) {
  FakeUserDefaults defaults;
  AppSettings(defaults).setMotionEnabled(false);
  EXPECT_FALSE(AppSettings(defaults).motionEnabled());
}

TEST(AppSettings, motion_isAllowedWhereNeitherTheUserNorTheSystemIsAgainstIt) {
  FakeUserDefaults defaults;
  FakeMotionPreference preference;
  AppSettings settings(defaults, {&preference});
  EXPECT_TRUE(settings.motionAllowed());
  preference.setReduced(true);
  EXPECT_FALSE(settings.motionAllowed());
  EXPECT_TRUE(settings.motionEnabled());
  preference.setReduced(false);
  settings.setMotionEnabled(false);
  EXPECT_FALSE(settings.motionAllowed());
}

TEST(AppSettings, motionAllowed_isToldAfterEitherChange) {
  FakeUserDefaults defaults;
  FakeMotionPreference preference;
  AppSettings settings(defaults, {&preference});
  const QSignalSpy told(&settings, &AppSettings::motionAllowedChanged);
  preference.setReduced(true);
  EXPECT_EQ(told.size(), 1);
  settings.setMotionEnabled(false);
  EXPECT_EQ(told.size(), 2);
}

TEST(AppSettings, motionWithoutSystemPreference_isTheUsersChoice) {
  FakeUserDefaults defaults;
  AppSettings settings(defaults);
  EXPECT_TRUE(settings.motionAllowed());
  settings.setMotionEnabled(false);
  EXPECT_FALSE(settings.motionAllowed());
}

TEST(AppSettings, end_leavesTheSystemPreferenceUnobserved) {
  FakeUserDefaults defaults;
  FakeMotionPreference preference;
  {
    const AppSettings settings(defaults, {&preference});
    EXPECT_TRUE(preference.isObserved());
  }
  EXPECT_FALSE(preference.isObserved());
}

TEST(AppSettings, change_thatCannotBeStored_holdsMeanwhile) {
  FakeUserDefaults defaults;
  defaults.failure = Failure{"The disk is full."};
  AppSettings settings(defaults);
  settings.setVisualStyle("classic");
  EXPECT_TRUE(settings.isClassic());
}

TEST(AppSettings, motionThatTheSystemForbids_saysSo) {
  FakeUserDefaults defaults;
  FakeMotionPreference preference;
  AppSettings settings(defaults, {&preference});
  EXPECT_EQ(settings.motionNote(), "");
  preference.setReduced(true);
  EXPECT_EQ(settings.motionNote(), "Nothing moves: the system's settings ask for less motion.");
  settings.setMotionEnabled(false);
  EXPECT_EQ(settings.motionNote(), "");
}

TEST(AppSettings, rereadSystem_asksForAllThatTheUserMayHaveChangedThere) {
  FakeUserDefaults defaults;
  FakeNotificationCenter center;
  const FakeBundle bundle;
  FakeWorkspace workspace;
  FakeLoginItem item;
  NotificationPermission permission(center, bundle, workspace);
  LoginItemSetting loginItem(item);
  AppSettings settings(defaults, {nullptr, &permission, &loginItem});
  center.authorization = NotificationAuthorization::denied;
  item.current = LoginItemState::on;
  settings.rereadSystem();
  center.answerAll();
  EXPECT_NE(settings.notificationPermission()->note(), "");
  EXPECT_TRUE(settings.loginItem()->isOn());
  AppSettings(defaults).rereadSystem();
}

}  // namespace
}  // namespace cirrovane::test
