#include "ui/TrayIcon.h"

#include "ui/SymbolImageProvider.h"

#include <QAction>
#include <QCursor>

namespace cirrovane {

TrayIcon::TrayIcon(SnapshotViewModel& snapshot, const ScanStatus& scan, const LeaveViewModel& leaving,
                   const Desktop& desktop, QObject* parent)
    : QObject(parent), snapshot_(snapshot), scan_(scan), leaving_(leaving), desktop_(desktop) {
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
  connect(&scan_, &ScanStatus::changed, this, &TrayIcon::updateToolTip);
  connect(&leaving_, &LeaveViewModel::changed, this, &TrayIcon::updateToolTip);
  connect(&snapshot_, &SnapshotViewModel::uploadsChanged, this, &TrayIcon::updateToolTip);
  update();
  icon_.show();
}

QRect TrayIcon::geometry() const {
  const QRect place = icon_.geometry();
  // An icon that the tray has not taken in yet claims to be in the corner of the screen.
  return place.topLeft().isNull() ? QRect() : place;
}

void TrayIcon::update() {
  const Sign sign{snapshot_.menuBarSymbol(), snapshot_.tone()};
  if (shown_ != sign) {
    shown_ = sign;
    icon_.setIcon(drawn(sign));
  }
  updateToolTip();
}

const QIcon& TrayIcon::drawn(const Sign& sign) {
  const auto [place, isNew] = drawn_.try_emplace(sign);
  if (isNew) {
    place->second = symbolIcon(sign.first, Tones::color(sign.second), desktop_.symbolSource());
    // A menu bar that gives its icons their colour takes the shape alone.
    place->second.setIsMask(true);
  }
  return place->second;
}

void TrayIcon::updateToolTip() {
  QString toolTip = snapshot_.toolTip();
  for (const QString& more : {leaving_.waitText(), leaving_.awakeText(), scan_.text()}) {
    toolTip += more.isEmpty() ? more : QLatin1Char('\n') + more;
  }
  if (icon_.toolTip() != toolTip) {
    icon_.setToolTip(toolTip);
  }
}

}  // namespace cirrovane
