#include "coordinator/DefaultsKeys.h"
#include "coordinator/GuardrailNotificationService.h"
#include "platform/linux/host/LinuxUserDefaults.h"
#include "platform/posix/PosixFileStorage.h"
#include "tests/core/Builders.h"
#include "tests/support/FakeBundle.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/TemporaryFolder.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kEnabled = "guardrailNotificationsEnabled";
constexpr const char* kLastKnown = "lastKnownSafeToClose";

Shared<SyncHealthReport> reportOf(bool safe, const std::vector<BlockerReason>& reasons = {}) {
  SyncHealthReport report;
  report.safeToClose = safe;
  report.blockers = makeBlockers(reasons);
  return Shared(std::move(report));
}

class GuardrailNotifications : public testing::Test {
 protected:
  GuardrailNotifications() { defaults_.hold(kEnabled, true); }

  /// Hands the service a report; what the centre has to say is still to come.
  void begin(std::optional<bool> previousSafe, const Shared<SyncHealthReport>& report) {
    GuardrailNotificationService(center_, bundle_, defaults_).notifyStatusTransition(previousSafe, report, [this] {
      ++ended_;
    });
  }
  void handle(std::optional<bool> previousSafe, const Shared<SyncHealthReport>& report) {
    begin(previousSafe, report);
    center_.answerAll();
    EXPECT_EQ(ended_, 1);
    ended_ = 0;
  }

  std::optional<bool> lastKnown() const {
    const auto found = defaults_.values().find(kLastKnown);
    return found != defaults_.values().end() ? std::optional(std::get<bool>(found->second)) : std::nullopt;
  }

  FakeNotificationCenter center_;
  FakeBundle bundle_;
  FakeUserDefaults defaults_;
  int ended_ = 0;
};

TEST_F(GuardrailNotifications, firstLaunchUnsafe_isStoredWithoutANotification) {
  handle(std::nullopt, reportOf(false, {BlockerReason::uploadError}));
  EXPECT_THAT(center_.posted(), IsEmpty());
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(GuardrailNotifications, firstLaunchSafe_isStoredWithoutANotification) {
  handle(std::nullopt, reportOf(true));
  EXPECT_THAT(center_.posted(), IsEmpty());
  EXPECT_EQ(lastKnown(), true);
}

TEST_F(GuardrailNotifications, safeThenUnsafeWithoutBlockers_namesABlockingIssue) {
  handle(true, reportOf(false));
  ASSERT_EQ(center_.posted().size(), 1U);
  EXPECT_EQ(center_.posted()[0].title, "Cirrovane needs attention");
  EXPECT_EQ(center_.posted()[0].body, "Safe to close is now red/yellow. Top issue: Blocking issue.");
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(GuardrailNotifications, safeThenUnsafe_namesTheFirstBlockersReason) {
  handle(true, reportOf(false, {BlockerReason::unresolvedConflict, BlockerReason::uploadError}));
  ASSERT_EQ(center_.posted().size(), 1U);
  EXPECT_EQ(center_.posted()[0].body, "Safe to close is now red/yellow. Top issue: Conflict Detected.");
}

TEST_F(GuardrailNotifications, everyReason_isNamedByItsDisplayTitle) {
  for (const BlockerReason reason : kAllBlockerReasons) {
    handle(true, reportOf(false, {reason}));
    EXPECT_EQ(center_.posted().back().body,
              "Safe to close is now red/yellow. Top issue: " + std::string(displayTitle(reason)) + ".");
  }
}

TEST_F(GuardrailNotifications, unsafeThenSafe_isGoodNews) {
  handle(false, reportOf(true, {BlockerReason::notDownloaded}));
  ASSERT_EQ(center_.posted().size(), 1U);
  EXPECT_EQ(center_.posted()[0].title, "Cirrovane is now safe");
  EXPECT_EQ(center_.posted()[0].body, "All core criteria are passing. Safe to close is now green.");
  EXPECT_EQ(lastKnown(), true);
}

TEST_F(GuardrailNotifications, sameVerdictAgain_postsAndWritesNothing) {
  for (const bool safe : {true, false}) {
    handle(safe, reportOf(safe, {BlockerReason::uploadError}));
    EXPECT_THAT(center_.posted(), IsEmpty());
    EXPECT_EQ(lastKnown(), std::nullopt);
  }
  EXPECT_EQ(center_.calls().size(), 2U);
}

TEST_F(GuardrailNotifications, switchedOff_postsAndStoresNothingWhateverTheVerdict) {
  defaults_.hold(kEnabled, false);
  for (const std::optional<bool> previous : {std::optional<bool>(), std::optional(true), std::optional(false)}) {
    for (const bool safe : {true, false}) {
      handle(previous, reportOf(safe));
    }
  }
  EXPECT_THAT(center_.calls(), IsEmpty());
  EXPECT_EQ(lastKnown(), std::nullopt);
}

TEST_F(GuardrailNotifications, switchWithoutAValue_isOff) {
  defaults_.forget(kEnabled);
  handle(true, reportOf(false));
  EXPECT_THAT(center_.calls(), IsEmpty());
  EXPECT_EQ(lastKnown(), std::nullopt);
}

TEST_F(GuardrailNotifications, switchedOffOutsideABundle_storesNothingEither) {
  defaults_.hold(kEnabled, false);
  bundle_.path = "/usr/local/bin/cirrovane";
  handle(std::nullopt, reportOf(true));
  EXPECT_EQ(lastKnown(), std::nullopt);
}

TEST_F(GuardrailNotifications, outsideABundle_storesTheVerdictAndLeavesTheCentreAlone) {
  bundle_.path = "/usr/local/bin/cirrovane";
  for (const std::optional<bool> previous : {std::optional<bool>(), std::optional(true), std::optional(false)}) {
    for (const bool safe : {true, false}) {
      handle(previous, reportOf(safe));
      EXPECT_EQ(lastKnown(), safe);
    }
  }
  EXPECT_THAT(center_.calls(), IsEmpty());
}

TEST_F(GuardrailNotifications, permission_isAskedForOnceAndOnlyBeforeAnyAnswer) {
  center_.authorization = NotificationAuthorization::notDetermined;
  handle(std::nullopt, reportOf(true));
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization", "request authorization"));
  handle(true, reportOf(true));
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization", "request authorization", "read authorization"));
}

TEST_F(GuardrailNotifications, permissionRefused_isNotAskedForAgain) {
  center_.authorization = NotificationAuthorization::notDetermined;
  center_.usersAnswer = NotificationAuthorization::denied;
  handle(std::nullopt, reportOf(true));
  handle(true, reportOf(true));
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization", "request authorization", "read authorization"));
}

TEST_F(GuardrailNotifications, permissionDenied_postsAllTheSame) {
  center_.authorization = NotificationAuthorization::denied;
  handle(true, reportOf(false));
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization", "add"));
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(GuardrailNotifications, firstVerdict_isStoredOnlyAfterTheUsersAnswer) {
  center_.authorization = NotificationAuthorization::notDetermined;
  begin(std::nullopt, reportOf(true));
  EXPECT_EQ(lastKnown(), std::nullopt);
  center_.answerOne();
  EXPECT_EQ(lastKnown(), std::nullopt);
  EXPECT_EQ(ended_, 0);
  center_.answerOne();
  EXPECT_EQ(lastKnown(), true);
  EXPECT_EQ(ended_, 1);
}

TEST_F(GuardrailNotifications, changedVerdict_isStoredOnlyAfterThePosting) {
  center_.authorization = NotificationAuthorization::notDetermined;
  begin(true, reportOf(false));
  center_.answerOne();
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization", "request authorization"));
  center_.answerOne();
  EXPECT_THAT(center_.calls(), ElementsAre("read authorization", "request authorization", "add"));
  EXPECT_EQ(lastKnown(), std::nullopt);
  EXPECT_EQ(ended_, 0);
  center_.answerOne();
  EXPECT_EQ(lastKnown(), false);
  EXPECT_EQ(ended_, 1);
}

TEST_F(GuardrailNotifications, switchedOffWhileTheCentreThinks_isStillFinished) {
  begin(true, reportOf(false));
  defaults_.hold(kEnabled, false);
  center_.answerAll();
  EXPECT_EQ(center_.posted().size(), 1U);
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(GuardrailNotifications, verdictThatCannotBeStored_isNoError) {
  defaults_.failure = Failure{"disk full"};
  handle(true, reportOf(false));
  EXPECT_EQ(center_.posted().size(), 1U);
  EXPECT_EQ(lastKnown(), std::nullopt);
}

TEST_F(GuardrailNotifications, identifiers_areFreshUUIDs) {
  handle(true, reportOf(false));
  handle(false, reportOf(true));
  ASSERT_EQ(center_.posted().size(), 2U);
  for (const Notification& notification : center_.posted()) {
    EXPECT_EQ(UUID::fromText(notification.identifier).value_or(UUID()).text(), notification.identifier);
  }
  EXPECT_NE(center_.posted()[0].identifier, center_.posted()[1].identifier);
}

TEST_F(GuardrailNotifications, serviceGoneBeforeTheCentreAnswers_stillFinishes) {
  auto service = std::make_unique<GuardrailNotificationService>(center_, bundle_, defaults_);
  {
    const Shared<SyncHealthReport> report = reportOf(false, {BlockerReason::uploadError});
    service->notifyStatusTransition(true, report);
  }
  service.reset();
  center_.answerAll();
  ASSERT_EQ(center_.posted().size(), 1U);
  EXPECT_EQ(center_.posted()[0].body, "Safe to close is now red/yellow. Top issue: Upload Error.");
  EXPECT_EQ(lastKnown(), false);
}

/// What stays on the disk from one launch to the next.
class GuardrailNotificationsAcrossLaunches : public testing::Test {
 protected:
  GuardrailNotificationsAcrossLaunches() { setEnabled(true); }

  LinuxUserDefaults openDefaults() const {
    return {[folder = folder_.path()] { return folder; }, storage_};
  }
  void setEnabled(bool isEnabled) const { EXPECT_EQ(openDefaults().set(kEnabled, isEnabled), std::nullopt); }
  std::optional<bool> lastKnown() const { return openDefaults().boolean(kLastKnown); }

  /// One launch with one refresh; the titles of what it posts.
  std::vector<std::string> launch(bool safe) {
    LinuxUserDefaults defaults = openDefaults();
    FakeNotificationCenter center;
    GuardrailNotificationService(center, bundle_, defaults)
        .notifyStatusTransition(defaults.boolean(kLastKnownSafeToCloseKey), reportOf(safe));
    center.answerAll();
    std::vector<std::string> titles;
    for (const Notification& notification : center.posted()) {
      titles.push_back(notification.title);
    }
    return titles;
  }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  PosixFileStorage storage_;
  FakeBundle bundle_;
};

TEST_F(GuardrailNotificationsAcrossLaunches, eachChange_isToldOnce) {
  EXPECT_THAT(launch(false), IsEmpty());
  EXPECT_EQ(lastKnown(), false);
  EXPECT_THAT(launch(false), IsEmpty());
  EXPECT_THAT(launch(true), ElementsAre("Cirrovane is now safe"));
  EXPECT_EQ(lastKnown(), true);
  EXPECT_THAT(launch(true), IsEmpty());
  EXPECT_THAT(launch(false), ElementsAre("Cirrovane needs attention"));
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(GuardrailNotificationsAcrossLaunches, switchStoredAsANumber_isObeyed) {
  writeFile(folder_ / "com.quillmere.Cirrovane.json",
            R"({"guardrailNotificationsEnabled": 1, "lastKnownSafeToClose": false})");
  EXPECT_THAT(launch(true), ElementsAre("Cirrovane is now safe"));
  writeFile(folder_ / "com.quillmere.Cirrovane.json",
            R"({"guardrailNotificationsEnabled": 0, "lastKnownSafeToClose": false})");
  EXPECT_THAT(launch(true), IsEmpty());
  EXPECT_EQ(lastKnown(), false);
}

TEST_F(GuardrailNotificationsAcrossLaunches, switchedOnAgain_judgesByTheVerdictFromBefore) {
  launch(true);
  setEnabled(false);
  EXPECT_THAT(launch(false), IsEmpty());
  EXPECT_EQ(lastKnown(), true);
  setEnabled(true);
  EXPECT_THAT(launch(true), IsEmpty());
  EXPECT_THAT(launch(false), ElementsAre("Cirrovane needs attention"));
}

TEST_F(GuardrailNotificationsAcrossLaunches, bareExecutable_leavesItsVerdictForTheApplication) {
  bundle_.path = "/usr/local/bin/cirrovane";
  EXPECT_THAT(launch(true), IsEmpty());
  EXPECT_EQ(lastKnown(), true);
  bundle_.path = "/Applications/Cirrovane.app";
  EXPECT_THAT(launch(false), ElementsAre("Cirrovane needs attention"));
}

TEST_F(GuardrailNotificationsAcrossLaunches, storedVerdictOfAnotherKind_countsAsUnknown) {
  EXPECT_EQ(openDefaults().set(kLastKnown, "true"), std::nullopt);
  EXPECT_THAT(launch(false), IsEmpty());
  EXPECT_EQ(lastKnown(), false);
}

}  // namespace
}  // namespace cirrovane::test
