#pragma once

#include "ui/SnapshotViewModel.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace cirrovane {

/// The icon in the menu bar or tray, which follows the health state.
class TrayIcon : public QObject {
  Q_OBJECT

 public:
  explicit TrayIcon(SnapshotViewModel& snapshot, QObject* parent = nullptr);

  /// Where the icon is on screen; empty where the desktop does not tell.
  QRect geometry() const { return icon_.geometry(); }

 signals:
  void panelRequested();
  void windowRequested();
  void quitRequested();

 private:
  void update();

  SnapshotViewModel& snapshot_;
  QMenu menu_;
  QSystemTrayIcon icon_;
};

/// The colour of a health state by its name.
QColor stateColour(const QString& state);

/// Where a panel of the size goes: at the icon, and whole on the screen; without an icon at the top right.
QPoint panelPlace(const QRect& icon, const QSize& panel, const QRect& screen);

}  // namespace cirrovane
