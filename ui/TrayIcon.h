#pragma once

#include "platform/Desktop.h"
#include "ui/viewmodels/LeaveViewModel.h"
#include "ui/viewmodels/ScanStatus.h"
#include "ui/viewmodels/SnapshotViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QString>
#include <QSystemTrayIcon>
#include <map>
#include <optional>
#include <utility>

namespace cirrovane {

/// The icon in the menu bar or tray, which follows the health state.
class TrayIcon : public QObject {
  Q_OBJECT

 public:
  /// The arguments outlive the icon.
  TrayIcon(SnapshotViewModel& snapshot, const ScanStatus& scan, const LeaveViewModel& leaving, const Desktop& desktop,
           QObject* parent = nullptr);

  /// Where the icon is on screen; empty where the desktop does not tell.
  QRect geometry() const;

 signals:
  /// A plain click on the icon itself.
  void clicked();
  void panelRequested();
  void windowRequested();
  void quitRequested();

 private:
  /// A symbol and its tone.
  using Sign = std::pair<QString, Tone>;

  void update();
  const QIcon& drawn(const Sign& sign);
  void updateToolTip();

  SnapshotViewModel& snapshot_;
  const ScanStatus& scan_;
  const LeaveViewModel& leaving_;
  const Desktop& desktop_;
  QMenu menu_;
  /// Each drawn once, since Qt remembers the pictures of every icon that was ever shown.
  std::map<Sign, QIcon> drawn_;
  std::optional<Sign> shown_;
  QSystemTrayIcon icon_;
};

}  // namespace cirrovane
