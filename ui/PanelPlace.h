#pragma once

#include <QRect>

namespace cirrovane {

/// Where a panel of the size goes: at the icon, and whole on the screen; without an icon at the top right.
QPoint panelPlace(const QRect& icon, const QSize& panel, const QRect& screen);

}  // namespace cirrovane
