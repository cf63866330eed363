#include "platform/qt/DBusNotificationCenter.h"
#include "tests/platform_qt/EventLoop.h"
#include "tests/platform_qt/FakeService.h"
#include "tests/platform_qt/PrivateBus.h"

#include <QDBusArgument>
#include <memory>
#include <optional>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const char* const kServer = "org.freedesktop.Notifications";
constexpr uint kFirstNumber = 41;

class DBusNotificationCenterTest : public testing::Test {
 protected:
  void startServer(const QStringList& capabilities) {
    server = std::make_unique<FakeService>(bus.desktop(), kServer, [this, capabilities](const QDBusMessage& call) {
      return QVariantList{call.member() == "Notify" ? QVariant(lastNumber++) : QVariant(capabilities)};
    });
  }

  /// Waits until the centre has answered; answers whether it did so only after `add` had returned.
  bool add(const Notification& notification) {
    bool hasAnswered = false;
    center.add(notification, [&hasAnswered] { hasAnswered = true; });
    const bool wasLater = !hasAnswered;
    return handleEventsUntil([&hasAnswered] { return hasAnswered; }) && wasLater;
  }

  std::optional<NotificationAuthorization> readAuthorization() {
    std::optional<NotificationAuthorization> answer;
    center.readAuthorization([&answer](NotificationAuthorization authorization) { answer = authorization; });
    handleEventsUntil([&answer] { return answer.has_value(); });
    return answer;
  }

  bool requestAuthorization() {
    bool hasAnswered = false;
    center.requestAuthorization([&hasAnswered] { hasAnswered = true; });
    return handleEventsUntil([&hasAnswered] { return hasAnswered; });
  }

  PrivateBus bus;
  uint lastNumber = kFirstNumber;
  std::unique_ptr<FakeService> server;
  std::string fact = "authorized";
  DBusNotificationCenter center{[this] { return fact; }, bus.connection()};
};

TEST_F(DBusNotificationCenterTest, add_sendsTheNotificationWithSoundAndDefaultAction) {
  startServer({"actions", "body"});
  EXPECT_TRUE(add({"id", "Cirrovane is now safe ☁", "All <core> criteria & more."}));
  ASSERT_THAT(server->calls("Notify"), SizeIs(1));
  const QDBusMessage call = server->calls("Notify").front();
  const QVariantList arguments = call.arguments();
  EXPECT_EQ(call.path(), "/org/freedesktop/Notifications");
  EXPECT_EQ(call.signature(), "susssasa{sv}i");
  EXPECT_EQ(arguments.value(0).toString(), "Cirrovane");
  EXPECT_EQ(arguments.value(1).toUInt(), 0U);
  EXPECT_EQ(arguments.value(2).toString(), "");
  EXPECT_EQ(arguments.value(3).toString(), "Cirrovane is now safe ☁");
  EXPECT_EQ(arguments.value(4).toString(), "All <core> criteria & more.");
  EXPECT_EQ(arguments.value(5).toStringList(), QStringList({"default", "Open Cirrovane"}));
  EXPECT_EQ(qdbus_cast<QVariantMap>(arguments.value(6)),
            QVariantMap({{"desktop-entry", "com.quillmere.Cirrovane"}, {"sound-name", "message-new-instant"}}));
  EXPECT_EQ(arguments.value(7).toInt(), -1);
}

TEST_F(DBusNotificationCenterTest, add_toAServerWithMarkup_escapesTheBodyAlone) {
  startServer({"body", "body-markup"});
  EXPECT_TRUE(add({"id", "<Title> & more", "Top issue: <b>R&D</b>."}));
  ASSERT_THAT(server->calls("Notify"), SizeIs(1));
  const QVariantList arguments = server->calls("Notify").front().arguments();
  EXPECT_EQ(arguments.value(3).toString(), "<Title> & more");
  EXPECT_EQ(arguments.value(4).toString(), "Top issue: &lt;b&gt;R&amp;D&lt;/b&gt;.");
}

TEST_F(DBusNotificationCenterTest, add_ofTheSameIdentifier_replaces) {
  startServer({});
  EXPECT_TRUE(add({"one", "", ""}));
  EXPECT_TRUE(add({"two", "", ""}));
  EXPECT_TRUE(add({"one", "", ""}));
  ASSERT_THAT(server->calls("Notify"), SizeIs(3));
  EXPECT_EQ(server->calls("Notify")[1].arguments().value(1).toUInt(), 0U);
  EXPECT_EQ(server->calls("Notify")[2].arguments().value(1).toUInt(), kFirstNumber);
}

TEST_F(DBusNotificationCenterTest, add_afterTheServerWasReplaced_replacesNothing) {
  startServer({});
  EXPECT_TRUE(add({"one", "", ""}));
  server.reset();
  startServer({});
  EXPECT_TRUE(add({"two", "", ""}));
  EXPECT_TRUE(add({"one", "", ""}));
  ASSERT_THAT(server->calls("Notify"), SizeIs(2));
  EXPECT_EQ(server->calls("Notify").back().arguments().value(1).toUInt(), 0U);
}

TEST_F(DBusNotificationCenterTest, add_withoutAServer_isAnsweredInSilence) {
  EXPECT_TRUE(add({"id", "Title", "Body"}));
}

TEST_F(DBusNotificationCenterTest, everything_withoutABus_isAnsweredInSilence) {
  DBusNotificationCenter lonely([] { return "notDetermined"; }, QDBusConnection("none"));
  int answers = 0;
  lonely.readAuthorization([&answers](NotificationAuthorization) { ++answers; });
  lonely.requestAuthorization([&answers] { ++answers; });
  lonely.add({"id", "Title", "Body"}, [&answers] { ++answers; });
  EXPECT_EQ(answers, 0);
  EXPECT_TRUE(handleEventsUntil([&answers] { return answers == 3; }));
}

TEST_F(DBusNotificationCenterTest, add_whenDenied_isDropped) {
  startServer({});
  fact = "denied";
  EXPECT_TRUE(add({"id", "Title", "Body"}));
  EXPECT_THAT(server->calls("Notify"), IsEmpty());
  EXPECT_THAT(server->calls("GetCapabilities"), IsEmpty());
}

TEST_F(DBusNotificationCenterTest, add_beforeTheUserWasAsked_isDropped) {
  startServer({});
  fact = "notDetermined";
  EXPECT_TRUE(add({"id", "Title", "Body"}));
  EXPECT_THAT(server->calls("Notify"), IsEmpty());
}

TEST_F(DBusNotificationCenterTest, readAuthorization_followsTheFact) {
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::authorized);
  fact = "denied";
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::denied);
  fact = "notDetermined";
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::notDetermined);
  fact = "";
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::authorized);
  fact = "perhaps";
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::authorized);
}

TEST_F(DBusNotificationCenterTest, requestAuthorization_ofAnUndecidedUser_isGrantedForGood) {
  startServer({});
  fact = "notDetermined";
  EXPECT_TRUE(requestAuthorization());
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::authorized);
  EXPECT_TRUE(add({"id", "Title", "Body"}));
  EXPECT_THAT(server->calls("Notify"), SizeIs(1));
}

TEST_F(DBusNotificationCenterTest, requestAuthorization_whenDenied_isRefused) {
  fact = "denied";
  EXPECT_TRUE(requestAuthorization());
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::denied);
  fact = "notDetermined";
  EXPECT_EQ(readAuthorization(), NotificationAuthorization::notDetermined);
}

TEST_F(DBusNotificationCenterTest, onActivated_isCalledForOurOwnNotificationsAlone) {
  startServer({});
  int activations = 0;
  center.onActivated([&activations] { ++activations; });
  EXPECT_TRUE(add({"id", "Title", "Body"}));
  server->emitSignal("ActionInvoked", {kFirstNumber + 1, "default"});
  server->emitSignal("ActionInvoked", {kFirstNumber, "other"});
  server->emitSignal("ActionInvoked", {kFirstNumber, "default"});
  EXPECT_TRUE(handleEventsUntil([&activations] { return activations > 0; }));
  EXPECT_EQ(activations, 1);
}

TEST_F(DBusNotificationCenterTest, onActivated_isNotCalledOnceTheNotificationIsClosed) {
  startServer({});
  int activations = 0;
  center.onActivated([&activations] { ++activations; });
  EXPECT_TRUE(add({"first", "Title", "Body"}));
  EXPECT_TRUE(add({"second", "Title", "Body"}));
  server->emitSignal("NotificationClosed", {kFirstNumber, 2U});
  server->emitSignal("ActionInvoked", {kFirstNumber, "default"});
  server->emitSignal("ActionInvoked", {kFirstNumber + 1, "default"});
  EXPECT_TRUE(handleEventsUntil([&activations] { return activations > 0; }));
  EXPECT_EQ(activations, 1);
}

TEST_F(DBusNotificationCenterTest, end_whileTheServerOwesAnAnswer_callsNobody) {
  startServer({});
  bool hasAnswered = false;
  {
    DBusNotificationCenter brief(nullptr, bus.connection());
    brief.add({"id", "Title", "Body"}, [&hasAnswered] { hasAnswered = true; });
    brief.readAuthorization([&hasAnswered](NotificationAuthorization) { hasAnswered = true; });
  }
  EXPECT_TRUE(handleEventsUntil([this] { return !server->calls("GetCapabilities").empty(); }));
  handleEvents();
  EXPECT_FALSE(hasAnswered);
}

}  // namespace
}  // namespace cirrovane::test
