#pragma once

#include "platform/Desktop.h"
#include "ui/viewmodels/ScanStatus.h"
#include "ui/viewmodels/SnapshotViewModel.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace cirrovane {

/// The icon in the menu bar or tray, which follows the health state.
class TrayIcon : public QObject {
  Q_OBJECT

 public:
  /// The arguments outlive the icon.
  TrayIcon(SnapshotViewModel& snapshot, const ScanStatus& scan, const Desktop& desktop, QObject* parent = nullptr);

  /// Where the icon is on screen; empty where the desktop does not tell.
  QRect geometry() const;

 signals:
  /// A plain click on the icon itself.
  void clicked();
  void panelRequested();
  void windowRequested();
  void quitRequested();

 private:
  void update();
  void updateToolTip();

  SnapshotViewModel& snapshot_;
  const ScanStatus& scan_;
  const Desktop& desktop_;
  QMenu menu_;
  QSystemTrayIcon icon_;
};

}  // namespace cirrovane
