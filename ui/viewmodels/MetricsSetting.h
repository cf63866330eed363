#pragma once

#include "coordinator/MetricsFile.h"
#include "platform/Panels.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// "Write metrics for this Mac" as the settings show it: the choice, the file's place, and why it cannot be written.
class MetricsSetting : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY changed)
  Q_PROPERTY(QString place READ place NOTIFY changed)
  Q_PROPERTY(QString note READ note NOTIFY changed)

 public:
  /// Both outlive this.
  MetricsSetting(MetricsFile& file, Panels& panels, QObject* parent = nullptr);

  bool isOn() const { return file_.isOn(); }
  /// The path of the file; empty before anybody chose one.
  QString place() const;
  /// Why nothing is written though it should be; empty otherwise.
  QString note() const;

  /// Has the user choose a place where there is none, and stays off without one.
  void setOn(bool isOn);
  /// Lets the user name the file, a turn of the event loop later, and writes to that from then on.
  Q_INVOKABLE void choosePlace();

 signals:
  void changed();

 private:
  MetricsFile& file_;
  Panels& panels_;
  Subscription subscription_;
};

}  // namespace cirrovane
