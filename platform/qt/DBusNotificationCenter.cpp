#include "platform/qt/DBusNotificationCenter.h"

#include "platform/qt/DBusCall.h"

#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <utility>

namespace cirrovane {
namespace {

const char* const kService = "org.freedesktop.Notifications";
const char* const kPath = "/org/freedesktop/Notifications";
/// The action that a click on the notification itself invokes.
const char* const kDefaultAction = "default";
/// How long a notification stays is the server's affair.
constexpr int kUsualTimeout = -1;

QDBusMessage callOf(const char* method) {
  return QDBusMessage::createMethodCall(kService, kPath, kService, method);
}

/// Whether the server takes a body for markup; false when it does not answer.
bool hasBodyMarkup(const QDBusMessage& capabilities) {
  return capabilities.type() == QDBusMessage::ReplyMessage &&
         capabilities.arguments().value(0).toStringList().contains("body-markup");
}

}  // namespace

DBusNotificationCenter::DBusNotificationCenter(AuthorizationFact authorizationFact, const QDBusConnection& bus)
    : bus_(bus),
      serverWatcher_(kService, bus, QDBusServiceWatcher::WatchForUnregistration),
      authorizationFact_(std::move(authorizationFact)) {
  bus_.connect(kService, kPath, kService, "ActionInvoked", this, SLOT(actionInvoked(uint, QString)));
  bus_.connect(kService, kPath, kService, "NotificationClosed", this, SLOT(notificationClosed(uint)));
  // Another server counts from the beginning, and may give our numbers to others.
  QObject::connect(&serverWatcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { shown_.clear(); });
}

void DBusNotificationCenter::readAuthorization(std::function<void(NotificationAuthorization)> then) {
  executor_.post([this, then = std::move(then)] { then(authorization()); });
}

void DBusNotificationCenter::requestAuthorization(std::function<void()> then) {
  wasGranted_ = wasGranted_ || authorization() != NotificationAuthorization::denied;
  executor_.post(std::move(then));
}

void DBusNotificationCenter::add(const Notification& notification, std::function<void()> then) {
  if (authorization() != NotificationAuthorization::authorized) {
    executor_.post(std::move(then));
    return;
  }
  callDBus(bus_, callOf("GetCapabilities"), this,
           [this, notification, then = std::move(then)](const QDBusMessage& capabilities) {
             send(notification, hasBodyMarkup(capabilities), then);
           });
}

void DBusNotificationCenter::send(const Notification& notification, bool hasMarkup, std::function<void()> then) {
  const QString body = QString::fromStdString(notification.body);
  const QVariantMap hints{{"desktop-entry", "com.quillmere.Cirrovane"}, {"sound-name", "message-new-instant"}};
  const QString noIcon("");
  QDBusMessage call = callOf("Notify");
  call << "Cirrovane" << serverIdOf(notification.identifier) << noIcon << QString::fromStdString(notification.title)
       << (hasMarkup ? body.toHtmlEscaped() : body) << QStringList{kDefaultAction, "Open Cirrovane"} << hints
       << kUsualTimeout;
  callDBus(bus_, call, this,
           [this, identifier = notification.identifier, then = std::move(then)](const QDBusMessage& reply) {
             if (reply.type() == QDBusMessage::ReplyMessage) {
               shown_[reply.arguments().value(0).toUInt()] = identifier;
             }
             then();
           });
}

void DBusNotificationCenter::actionInvoked(uint serverId, const QString& action) {
  // The server tells every program of every notification.
  if (shown_.contains(serverId) && action == kDefaultAction && activated_) {
    activated_();
  }
}

void DBusNotificationCenter::notificationClosed(uint serverId) {
  shown_.erase(serverId);
}

NotificationAuthorization DBusNotificationCenter::authorization() const {
  const std::string fact = authorizationFact_ ? authorizationFact_() : "";
  if (fact == "denied") {
    return NotificationAuthorization::denied;
  }
  return fact == "notDetermined" && !wasGranted_ ? NotificationAuthorization::notDetermined
                                                 : NotificationAuthorization::authorized;
}

uint DBusNotificationCenter::serverIdOf(const std::string& identifier) const {
  const auto found =
      std::ranges::find_if(shown_, [&identifier](const auto& entry) { return entry.second == identifier; });
  return found != shown_.end() ? found->first : 0;
}

}  // namespace cirrovane
