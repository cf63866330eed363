#include "ui/TrayIcon.h"

#include "ui/SymbolImageProvider.h"
#include "ui/viewmodels/Tone.h"

#include <QAction>
#include <QCursor>

namespace cirrovane {

TrayIcon::TrayIcon(SnapshotViewModel& snapshot, const Desktop& desktop, QObject* parent)
    : QObject(parent), snapshot_(snapshot), desktop_(desktop) {
  connect(menu_.addAction(QStringLiteral("Open Cirrovane")), &QAction::triggered, this, &TrayIcon::windowRequested);
  connect(menu_.addAction(QStringLiteral("Show Panel")), &QAction::triggered, this, &TrayIcon::panelRequested);
  menu_.addSeparator();
  connect(menu_.addAction(QStringLiteral("Quit Cirrovane")), &QAction::triggered, this, &TrayIcon::quitRequested);
  // The menu that a tray opens on every click would cover the panel.
  if (!desktop_.opensTrayMenuOnAnyClick()) {
    icon_.setContextMenu(&menu_);
  }
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Context) {
      emit clicked();
    } else if (icon_.contextMenu() == nullptr) {
      menu_.popup(QCursor::pos());
    }
  });
  connect(&snapshot_, &SnapshotViewModel::reportChanged, this, &TrayIcon::update);
  connect(&snapshot_, &SnapshotViewModel::uploadsChanged, this, [this] { icon_.setToolTip(snapshot_.toolTip()); });
  update();
  icon_.show();
}

QRect TrayIcon::geometry() const {
  const QRect place = icon_.geometry();
  // An icon that the tray has not taken in yet claims to be in the corner of the screen.
  return place.topLeft().isNull() ? QRect() : place;
}

void TrayIcon::update() {
  QIcon icon = symbolIcon(snapshot_.menuBarSymbol(), Tones::color(snapshot_.tone()), desktop_.symbolSource());
  // A menu bar that gives its icons their colour takes the shape alone.
  icon.setIsMask(true);
  icon_.setIcon(icon);
  icon_.setToolTip(snapshot_.toolTip());
}

}  // namespace cirrovane
