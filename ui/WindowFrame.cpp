#include "ui/WindowFrame.h"

#include <QString>
#include <QStringList>
#include <algorithm>

namespace cirrovane {
namespace {

constexpr std::string_view kKey = "mainWindowFrame";

int sharedArea(const QRect& one, const QRect& other) {
  const QRect shared = one.intersected(other);
  return shared.isEmpty() ? 0 : shared.width() * shared.height();
}

}  // namespace

std::optional<QRect> storedWindowFrame(const UserDefaults& userDefaults) {
  const QStringList parts = QString::fromStdString(userDefaults.text(kKey).value_or("")).split(u' ');
  if (parts.size() != 4) {
    return std::nullopt;
  }
  const QRect frame(parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), parts[3].toInt());
  return frame.isEmpty() ? std::nullopt : std::optional(frame);
}

void storeWindowFrame(UserDefaults& userDefaults, const QRect& frame) {
  const QString text =
      QStringLiteral("%1 %2 %3 %4").arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height());
  // A place that could not be stored is not worth a word.
  static_cast<void>(userDefaults.set(kKey, text.toStdString()));
}

QRect fittedToScreens(const QRect& frame, const QList<QRect>& screens) {
  if (screens.isEmpty()) {
    return frame;
  }
  const QRect screen =
      *std::ranges::max_element(screens, {}, [&](const QRect& candidate) { return sharedArea(candidate, frame); });
  QRect fitted(frame.topLeft(), frame.size().boundedTo(screen.size()));
  fitted.moveLeft(std::clamp(fitted.x(), screen.x(), screen.x() + screen.width() - fitted.width()));
  fitted.moveTop(std::clamp(fitted.y(), screen.y(), screen.y() + screen.height() - fitted.height()));
  return fitted;
}

}  // namespace cirrovane
