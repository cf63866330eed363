#pragma once

#include "platform/SymbolSource.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QQuickImageProvider>
#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>

namespace cirrovane {

/// The names of all symbols, sorted.
QStringList symbolNames();

/// The symbol drawn for exactly this many pixels: as large as it fits, in the middle, on nothing, in the colour and no
/// other. The source's drawing of the name comes before our own. A name that is none gives a crossed box and a warning
/// in the log, a size without pixels an absent image. May be called on any thread.
QImage symbolImage(const QString& name, const QColor& colour, QSize pixels, const SymbolSource* source = nullptr);

/// The symbol at each size that a panel or tray shows an icon in. To be called on the thread of the window.
QIcon symbolIcon(const QString& name, const QColor& colour, const SymbolSource* source = nullptr);

/// The colour that six or eight hexadecimal digits write, red first and opacity last; absent when they are none.
std::optional<QColor> symbolColour(const QString& digits);

/// Serves the symbols to the window, as image://symbols/NAME/RRGGBBAA or image://symbols/NAME/RRGGBB: the colour in
/// hexadecimal digits without a '#', which would begin a URL's fragment. sourceSize says how large; the scale factor of
/// the screen is already in what Qt then asks for. May be called on any thread.
class SymbolImageProvider : public QQuickImageProvider {
 public:
  /// The source outlives the provider; nullptr for our own drawings alone.
  explicit SymbolImageProvider(const SymbolSource* source = nullptr);

  QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

 private:
  const SymbolSource* source_;
};

}  // namespace cirrovane
