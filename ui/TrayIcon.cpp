#include "ui/TrayIcon.h"

#include "ui/SymbolImageProvider.h"

#include <QAction>
#include <utility>
namespace cirrovane {
TrayIcon::TrayIcon(SnapshotViewModel& snapshot, StateColour stateColour, QObject* parent)
    : QObject(parent), snapshot_(snapshot), stateColour_(std::move(stateColour)) {
  connect(menu_.addAction(QStringLiteral("Open Cirrovane")), &QAction::triggered, this, &TrayIcon::windowRequested);
  connect(menu_.addAction(QStringLiteral("Show Panel")), &QAction::triggered, this, &TrayIcon::panelRequested);
  menu_.addSeparator();
  connect(menu_.addAction(QStringLiteral("Quit Cirrovane")), &QAction::triggered, this, &TrayIcon::quitRequested);
  icon_.setContextMenu(&menu_);
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Context) {
      emit panelRequested();
    }
  });
  connect(&snapshot_, &SnapshotViewModel::reportChanged, this, &TrayIcon::update);
  update();
  icon_.show();
}

QRect TrayIcon::geometry() const {
  const QRect place = icon_.geometry();
  // An icon that the tray has not taken in yet claims to be in the corner of the screen.
  return place.topLeft().isNull() ? QRect() : place;
}

void TrayIcon::update() {
  icon_.setIcon(symbolIcon(snapshot_.menuBarSymbol(), stateColour_(snapshot_.state())));
  icon_.setToolTip(snapshot_.toolTip());
}

}  // namespace cirrovane
