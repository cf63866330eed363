#pragma once

#include "platform/MotionPreference.h"
#include "platform/UserDefaults.h"
#include "ui/viewmodels/ChoiceRow.h"
#include "ui/viewmodels/LeavingSetting.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/LoginItemSetting.h"
#include "ui/viewmodels/NotificationPermission.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The user's choices of look and notification. The settings store a change at once and tell every surface.
class AppSettings : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(QString visualStyle READ visualStyle WRITE setVisualStyle NOTIFY visualStyleChanged)
  Q_PROPERTY(cirrovane::ListModelBase* visualStyles READ visualStyles CONSTANT)
  Q_PROPERTY(bool isClassic READ isClassic NOTIFY visualStyleChanged)
  Q_PROPERTY(bool motionEnabled READ motionEnabled WRITE setMotionEnabled NOTIFY motionEnabledChanged)
  Q_PROPERTY(bool motionAllowed READ motionAllowed NOTIFY motionAllowedChanged)
  Q_PROPERTY(QString motionNote READ motionNote NOTIFY motionAllowedChanged)
  Q_PROPERTY(bool showTerminologyOnDashboard READ showTerminologyOnDashboard WRITE setShowTerminologyOnDashboard NOTIFY
                 showTerminologyOnDashboardChanged)
  Q_PROPERTY(bool notificationsEnabled READ notificationsEnabled WRITE setNotificationsEnabled NOTIFY
                 notificationsEnabledChanged)
  Q_PROPERTY(cirrovane::NotificationPermission* notificationPermission READ notificationPermission CONSTANT)
  Q_PROPERTY(cirrovane::LoginItemSetting* loginItem READ loginItem CONSTANT)
  Q_PROPERTY(cirrovane::LeavingSetting* leaving READ leaving CONSTANT)

 public:
  /// What the system has to say to the user's choices.
  struct System {
    /// Without one the system allows motion.
    MotionPreference* motion = nullptr;
    NotificationPermission* notifications = nullptr;
    LoginItemSetting* loginItem = nullptr;
    LeavingSetting* leaving = nullptr;
  };

  /// `userDefaults` and what `system` names outlive the settings.
  explicit AppSettings(UserDefaults& userDefaults, const System& system, QObject* parent = nullptr);
  explicit AppSettings(UserDefaults& userDefaults, QObject* parent = nullptr)
      : AppSettings(userDefaults, System(), parent) {}
  ~AppSettings() override;

  /// "liquid" or "classic"; a stored value that is neither counts as liquid.
  QString visualStyle() const { return isClassic_ ? QStringLiteral("classic") : QStringLiteral("liquid"); }
  /// The values that visualStyle() can have.
  ListModel<ChoiceRow>* visualStyles() { return &visualStyles_; }
  bool isClassic() const { return isClassic_; }
  bool motionEnabled() const { return motionEnabled_; }
  /// Whether anything may move: the user allows it here, and the system allows it.
  bool motionAllowed() const { return motionEnabled_ && !isMotionReduced(); }
  /// Why nothing moves though the user allows it here; empty otherwise.
  QString motionNote() const;
  bool showTerminologyOnDashboard() const { return showTerminologyOnDashboard_; }
  bool notificationsEnabled() const { return notificationsEnabled_; }
  /// nullptr where the system has none, as for the next two.
  NotificationPermission* notificationPermission() const { return system_.notifications; }
  LoginItemSetting* loginItem() const { return system_.loginItem; }
  LeavingSetting* leaving() const { return system_.leaving; }

  void setVisualStyle(const QString& style);
  void setMotionEnabled(bool enabled);
  void setShowTerminologyOnDashboard(bool shown);
  void setNotificationsEnabled(bool enabled);

  /// Asks the system anew what the user may have changed there.
  Q_INVOKABLE void rereadSystem() const;

 signals:
  void visualStyleChanged();
  void motionEnabledChanged();
  void motionAllowedChanged();
  void showTerminologyOnDashboardChanged();
  void notificationsEnabledChanged();

 private:
  bool isMotionReduced() const { return system_.motion != nullptr && system_.motion->isReduced(); }

  UserDefaults& userDefaults_;
  System system_;
  ListModel<ChoiceRow> visualStyles_;
  bool isClassic_;
  bool motionEnabled_;
  bool showTerminologyOnDashboard_;
  bool notificationsEnabled_;
};

}  // namespace cirrovane
