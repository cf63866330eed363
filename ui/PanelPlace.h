#pragma once

#include <QRect>
#include <chrono>
#include <optional>

namespace cirrovane {

/// Where a panel of the size goes: at the icon, and whole on the screen; without an icon at the top right.
QPoint panelPlace(const QRect& icon, const QSize& panel, const QRect& screen);

/// What a click on the tray icon does to the panel.
enum class PanelClick { shows, takesAway, nothing };

/// A click on the icon shows the panel or takes it away. Where the press already took the keyboard from the panel, and
/// with it the panel from the screen, `sinceItLeft` is a moment, and the click has done what it was for.
PanelClick panelClick(bool isVisible, std::optional<std::chrono::milliseconds> sinceItLeft);

}  // namespace cirrovane
