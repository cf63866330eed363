#include "ui/PanelPlace.h"

#include <algorithm>

namespace cirrovane {
namespace {

constexpr int kGap = 6;
/// From a press to its click; nobody clicks again within it.
constexpr std::chrono::milliseconds kOneClick{250};

}  // namespace

QPoint panelPlace(const QRect& icon, const QSize& panel, const QRect& screen) {
  const QRect anchor = icon.isEmpty() ? QRect(screen.right(), screen.top(), 1, 1) : icon;
  const bool isInUpperHalf = anchor.center().y() < screen.center().y();
  const int x = anchor.center().x() - panel.width() / 2;
  const int y = isInUpperHalf ? anchor.bottom() + kGap : anchor.top() - panel.height() - kGap;
  const int lastX = std::max(screen.left(), screen.right() + 1 - panel.width());
  const int lastY = std::max(screen.top(), screen.bottom() + 1 - panel.height());
  return {std::clamp(x, screen.left(), lastX), std::clamp(y, screen.top(), lastY)};
}

PanelClick panelClick(bool isVisible, std::optional<std::chrono::milliseconds> sinceItLeft) {
  if (isVisible) {
    return PanelClick::takesAway;
  }
  return sinceItLeft && *sinceItLeft < kOneClick ? PanelClick::nothing : PanelClick::shows;
}

}  // namespace cirrovane
