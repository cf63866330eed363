#pragma once

#include "base/Published.h"
#include "coordinator/AppUpdateService.h"
#include "coordinator/DashboardViewModel.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <utility>
#include <vector>

namespace cirrovane {

/// What the window and the panel both show and do: the refresh, the updates, the build. Main thread only. Heirs name it
/// with its namespace, since the registration of types finds it by no other name.
class SurfaceViewModel : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
  Q_PROPERTY(QString buildLabel READ buildLabel NOTIFY buildLabelChanged)

 public:
  bool isScanning() const { return dashboard_.isScanning(); }
  /// "Build v1.2 (45)".
  virtual QString buildLabel() const;

  /// To be called each time the surface becomes visible.
  Q_INVOKABLE void appeared();
  /// Asks for a refresh; nothing happens while one is under way.
  Q_INVOKABLE void rescan();
  Q_INVOKABLE void checkForUpdates();

 signals:
  void isScanningChanged();
  void buildLabelChanged();

 protected:
  /// Both outlive this.
  SurfaceViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, QObject* parent);

  DashboardViewModel& dashboard() const { return dashboard_; }
  const AppUpdateService& updates() const { return updates_; }

  /// Calls `tell` after each change of the value.
  template <class Value, class Tell>
  void follow(const Published<Value>& published, Tell tell) {
    subscriptions_.push_back(published.afterChange([tell = std::move(tell)](const Value&) { tell(); }));
  }

 private:
  DashboardViewModel& dashboard_;
  AppUpdateService& updates_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace cirrovane
