#pragma once

#include "coordinator/DashboardViewModel.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The verdict at a glance, for the menu-bar icon and its panel.
class SnapshotViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(QString state READ state NOTIFY reportChanged)
  Q_PROPERTY(QString statusLabel READ statusLabel NOTIFY reportChanged)
  Q_PROPERTY(QString menuBarSymbol READ menuBarSymbol NOTIFY reportChanged)
  Q_PROPERTY(QString score READ score NOTIFY reportChanged)
  Q_PROPERTY(QString verdict READ verdict NOTIFY reportChanged)
  Q_PROPERTY(QString scores READ scores NOTIFY reportChanged)

 public:
  explicit SnapshotViewModel(DashboardViewModel& dashboard, QObject* parent = nullptr);

  /// The health state by its name: "safe", "warning" or "danger".
  QString state() const;
  /// "Green Safe", "Yellow Needs Attention" or "Red Unsafe".
  QString statusLabel() const;
  QString menuBarSymbol() const;
  QString score() const;
  QString verdict() const;
  /// "Upload Trust 92 · Local 84".
  QString scores() const;
  /// State and verdict in words, for whoever points at the icon.
  QString toolTip() const;

  /// To be called each time that the panel goes from hidden to visible.
  Q_INVOKABLE void appeared();

 signals:
  void reportChanged();

 private:
  DashboardViewModel& dashboard_;
  Shared<SyncHealthReport> report_;
  Subscription subscription_;
};

}  // namespace cirrovane
