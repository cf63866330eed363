#pragma once

#include "platform/NotificationCenter.h"
#include "platform/qt/QtMainExecutor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace cirrovane {

/// Notifications on a desktop of freedesktop.org's kind. Such a desktop asks nobody for leave, so the answer that a
/// user would give is told by whoever makes the centre. Without a notification server nothing is shown.
class DBusNotificationCenter final : public QObject, public NotificationCenter {
  Q_OBJECT

 public:
  /// What the user has said or would say: "authorized", "denied", or "notDetermined" for a user who agrees when asked;
  /// anything else counts as "authorized". Read afresh at each use.
  using AuthorizationFact = std::function<std::string()>;

  explicit DBusNotificationCenter(AuthorizationFact authorizationFact,
                                  const QDBusConnection& bus = QDBusConnection::sessionBus());

  /// Has a function called whenever the user clicks on a notification of ours.
  void onActivated(std::function<void()> activated) { activated_ = std::move(activated); }

  void readAuthorization(std::function<void(NotificationAuthorization)> then) override;
  void requestAuthorization(std::function<void()> then) override;
  /// Drops the notification unless the user has agreed.
  void add(const Notification& notification, std::function<void()> then) override;
  /// Each desktop has settings of its own.
  std::optional<std::string> settingsAddress() const override { return std::nullopt; }

 private:
  Q_SLOT void actionInvoked(uint serverId, const QString& action);
  Q_SLOT void notificationClosed(uint serverId);
  NotificationAuthorization authorization() const;
  void send(const Notification& notification, bool hasMarkup, std::function<void()> then);
  uint serverIdOf(const std::string& identifier) const;

  /// For the answers that no server gives.
  QtMainExecutor executor_;
  QDBusConnection bus_;
  QDBusServiceWatcher serverWatcher_;
  AuthorizationFact authorizationFact_;
  /// Whether a request was granted; that lasts as long as the process.
  bool wasGranted_ = false;
  std::function<void()> activated_;
  /// The notifications that the server shows, by the number that it gave them.
  std::map<std::uint32_t, std::string> shown_;
};

}  // namespace cirrovane
