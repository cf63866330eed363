#include "ui/TrayIcon.h"

#include "ui/SymbolImageProvider.h"

#include <QAction>
#include <algorithm>

namespace cirrovane {
namespace {

constexpr int kPanelGap = 6;

}  // namespace

TrayIcon::TrayIcon(SnapshotViewModel& snapshot, QObject* parent) : QObject(parent), snapshot_(snapshot) {
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

void TrayIcon::update() {
  icon_.setIcon(symbolIcon(snapshot_.menuBarSymbol(), stateColour(snapshot_.state())));
  icon_.setToolTip(snapshot_.toolTip());
}

QColor stateColour(const QString& state) {
  return state == QLatin1String("safe")      ? QColor(0x30, 0xd1, 0x58)
         : state == QLatin1String("warning") ? QColor(0xff, 0xd6, 0x0a)
                                             : QColor(0xff, 0x45, 0x3a);
}

QPoint panelPlace(const QRect& icon, const QSize& panel, const QRect& screen) {
  const QRect anchor = icon.isEmpty() ? QRect(screen.right(), screen.top(), 1, 1) : icon;
  const bool isInUpperHalf = anchor.center().y() < screen.center().y();
  const int x = anchor.center().x() - panel.width() / 2;
  const int y = isInUpperHalf ? anchor.bottom() + kPanelGap : anchor.top() - panel.height() - kPanelGap;
  return {std::clamp(x, screen.left(), std::max(screen.left(), screen.right() - panel.width())),
          std::clamp(y, screen.top(), std::max(screen.top(), screen.bottom() - panel.height()))};
}

}  // namespace cirrovane
