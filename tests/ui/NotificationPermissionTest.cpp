#include "tests/support/FakeBundle.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/FakeWorkspace.h"
#include "ui/viewmodels/NotificationPermission.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotificationPermissionTest : public testing::Test {
 protected:
  std::unique_ptr<NotificationPermission> read() {
    auto permission = std::make_unique<NotificationPermission>(center_, bundle_, workspace_);
    permission->reread();
    center_.answerAll();
    return permission;
  }

  FakeNotificationCenter center_;
  FakeBundle bundle_;
  FakeWorkspace workspace_;
};

TEST_F(NotificationPermissionTest, shownOrNotAskedYet_needsNoWord) {
  for (const auto answer : {NotificationAuthorization::authorized, NotificationAuthorization::notDetermined}) {
    center_.authorization = answer;
    EXPECT_EQ(read()->note(), "");
    EXPECT_EQ(read()->action(), "");
  }
}

TEST_F(NotificationPermissionTest, refusedByASystemWithAPage_leadsThere) {
  center_.authorization = NotificationAuthorization::denied;
  center_.address = "settings:notifications";
  const auto permission = read();
  EXPECT_EQ(permission->note(), "No notifications are shown: allow Cirrovane in System Settings > Notifications.");
  EXPECT_EQ(permission->action(), "Open System Settings");
  permission->act();
  EXPECT_THAT(workspace_.opened(), ElementsAre("settings:notifications"));
}

TEST_F(NotificationPermissionTest, refusedByAnotherDesktop_saysWhereToAllowThem) {
  center_.authorization = NotificationAuthorization::denied;
  const auto permission = read();
  EXPECT_EQ(permission->note(),
            "No notifications are shown: allow Cirrovane in your desktop's settings, under Notifications.");
  EXPECT_EQ(permission->action(), "");
  permission->act();
  EXPECT_THAT(workspace_.opened(), IsEmpty());
}

TEST_F(NotificationPermissionTest, allowedMeanwhile_isKnownWhenReadAgain) {
  center_.authorization = NotificationAuthorization::denied;
  const auto permission = read();
  center_.authorization = NotificationAuthorization::authorized;
  permission->reread();
  EXPECT_NE(permission->note(), "");
  center_.answerAll();
  EXPECT_EQ(permission->note(), "");
}

TEST_F(NotificationPermissionTest, bareExecutable_isToldWithoutAskingTheSystem) {
  bundle_.path = "/usr/local/bin/cirrovane";
  center_.address = "settings:notifications";
  const auto permission = read();
  EXPECT_EQ(permission->note(), "No notifications are shown: only an installed application can show notifications.");
  EXPECT_EQ(permission->action(), "");
  EXPECT_THAT(center_.calls(), IsEmpty());
}

TEST_F(NotificationPermissionTest, answerThatComesTooLate_harmsNothing) {
  auto permission = std::make_unique<NotificationPermission>(center_, bundle_, workspace_);
  permission->reread();
  permission.reset();
  EXPECT_TRUE(center_.answerOne());
}

}  // namespace
}  // namespace cirrovane::test
