#pragma once

#include "platform/MotionPreference.h"
#include "platform/UserDefaults.h"
#include "ui/viewmodels/ChoiceRow.h"
#include "ui/viewmodels/ListModel.h"

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
  Q_PROPERTY(bool showTerminologyOnDashboard READ showTerminologyOnDashboard WRITE setShowTerminologyOnDashboard NOTIFY
                 showTerminologyOnDashboardChanged)
  Q_PROPERTY(bool notificationsEnabled READ notificationsEnabled WRITE setNotificationsEnabled NOTIFY
                 notificationsEnabledChanged)

 public:
  /// `userDefaults` and `motionPreference` outlive the settings. Without a preference the system allows motion.
  explicit AppSettings(UserDefaults& userDefaults, MotionPreference* motionPreference = nullptr,
                       QObject* parent = nullptr);
  ~AppSettings() override;

  /// "liquid" or "classic"; a stored value that is neither counts as liquid.
  QString visualStyle() const { return isClassic_ ? QStringLiteral("classic") : QStringLiteral("liquid"); }
  /// The values that visualStyle() can have.
  ListModel<ChoiceRow>* visualStyles() { return &visualStyles_; }
  bool isClassic() const { return isClassic_; }
  bool motionEnabled() const { return motionEnabled_; }
  /// Whether anything may move: the user allows it here, and the system allows it.
  bool motionAllowed() const {
    return motionEnabled_ && (motionPreference_ == nullptr || !motionPreference_->isReduced());
  }
  bool showTerminologyOnDashboard() const { return showTerminologyOnDashboard_; }
  bool notificationsEnabled() const { return notificationsEnabled_; }

  void setVisualStyle(const QString& style);
  void setMotionEnabled(bool enabled);
  void setShowTerminologyOnDashboard(bool shown);
  void setNotificationsEnabled(bool enabled);

 signals:
  void visualStyleChanged();
  void motionEnabledChanged();
  void motionAllowedChanged();
  void showTerminologyOnDashboardChanged();
  void notificationsEnabledChanged();

 private:
  UserDefaults& userDefaults_;
  MotionPreference* motionPreference_;
  ListModel<ChoiceRow> visualStyles_;
  bool isClassic_;
  bool motionEnabled_;
  bool showTerminologyOnDashboard_;
  bool notificationsEnabled_;
};

}  // namespace cirrovane
