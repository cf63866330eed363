#pragma once

#include "coordinator/leaving/LeaveGate.h"
#include "platform/UserDefaults.h"
#include "ui/viewmodels/ChoiceRow.h"
#include "ui/viewmodels/ListModel.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// What the user lets the application do about leaving, as the settings show it. A change is stored at once and holds
/// from then on.
class LeavingSetting : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(bool keepsAwake READ keepsAwake WRITE setKeepsAwake NOTIFY changed)
  Q_PROPERTY(QString leastBattery READ leastBattery WRITE setLeastBattery NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* batteryLevels READ batteryLevels CONSTANT)
  Q_PROPERTY(QString keepAwakeNote READ keepAwakeNote NOTIFY changed)
  Q_PROPERTY(bool asksBeforeShutdown READ asksBeforeShutdown WRITE setAsksBeforeShutdown NOTIFY changed)
  Q_PROPERTY(QString askNote READ askNote NOTIFY changed)

 public:
  /// Both outlive this. The gate takes on what is stored.
  LeavingSetting(UserDefaults& userDefaults, LeaveGate& gate, QObject* parent = nullptr);

  /// Whether the machine is kept awake while uploads are pending.
  bool keepsAwake() const { return preferences_.keepsAwakeWhilePending; }
  /// The charge in percent below which it is not, on battery power: one of batteryLevels().
  QString leastBattery() const { return QString::number(preferences_.awake.leastBatteryPercent); }
  ListModel<ChoiceRow>* batteryLevels() { return &batteryLevels_; }
  /// What keeps the machine from being kept awake though it should be; empty when nothing does.
  QString keepAwakeNote() const;
  /// Whether the user is asked before a shutdown while it is not safe.
  bool asksBeforeShutdown() const { return preferences_.asksBeforeShutdown; }
  /// Why nobody can be asked; empty when somebody can.
  QString askNote() const;

  void setKeepsAwake(bool keepsAwake);
  void setLeastBattery(const QString& percent);
  void setAsksBeforeShutdown(bool asks);

 signals:
  void changed();

 private:
  void apply();

  UserDefaults& userDefaults_;
  LeaveGate& gate_;
  ListModel<ChoiceRow> batteryLevels_;
  LeavePreferences preferences_;
  Subscription awakeSubscription_;
  Subscription obstacleSubscription_;
};

}  // namespace cirrovane
