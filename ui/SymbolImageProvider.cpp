#include "ui/SymbolImageProvider.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <algorithm>
#include <string_view>

namespace cirrovane {
namespace {

constexpr QLatin1String kFolder(":/symbols/");
constexpr QLatin1String kSuffix(".svg");
// The side of the square that the symbols are drawn in.
constexpr int kDrawnSide = 24;

void drawUnknown(QPainter& painter, const QRectF& square) {
  const qreal side = square.width();
  const QRectF box = square.adjusted(side / 8, side / 8, -side / 8, -side / 8);
  painter.setPen(QPen(Qt::black, side / 12));
  painter.drawRect(box);
  painter.drawLine(box.topLeft(), box.bottomRight());
  painter.drawLine(box.topRight(), box.bottomLeft());
}

/// Our own drawing of the symbol, in black.
QImage drawing(const QString& name, QSize pixels) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  // Whole pixels, so that a straight edge stays as sharp as it was drawn.
  const int side = std::min(pixels.width(), pixels.height());
  const QPoint corner((pixels.width() - side) / 2, (pixels.height() - side) / 2);
  const QRectF square(corner, QSize(side, side));

  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  QSvgRenderer renderer;
  // A name comes from a URL: one with a folder in it is no symbol's.
  const QString file = kFolder + name + kSuffix;
  if (!name.contains(QLatin1Char('/')) && QFile::exists(file) && renderer.load(file)) {
    renderer.render(&painter, square);
  } else {
    qWarning("No symbol has the name \"%s\"", qUtf8Printable(name));
    drawUnknown(painter, square);
  }
  return image;
}

/// A shape as an image, in black.
QImage imageOf(const SymbolBitmap& shape) {
  const QImage view(shape.coverage.data(), shape.width, shape.height, shape.width, QImage::Format_Alpha8);
  return view.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QSize sizeFor(const QSize& requested) {
  // A side that was left open follows the other.
  const int larger = std::max(requested.width(), requested.height());
  const int open = larger > 0 ? larger : kDrawnSide;
  return {requested.width() > 0 ? requested.width() : open, requested.height() > 0 ? requested.height() : open};
}

bool isHexadecimalDigit(QChar character) {
  constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
  return character.unicode() < 0x80 && kDigits.find(character.toLatin1()) != std::string_view::npos;
}

}  // namespace

QStringList symbolNames() {
  QStringList names = QDir(kFolder).entryList({QLatin1Char('*') + kSuffix}, QDir::Files);
  for (QString& name : names) {
    name.chop(kSuffix.size());
  }
  names.sort();
  return names;
}

QImage symbolImage(const QString& name, const QColor& colour, QSize pixels, const SymbolSource* source) {
  if (pixels.isEmpty()) {
    return {};
  }
  const auto shape =
      source != nullptr ? source->draw(name.toStdString(), pixels.width(), pixels.height()) : std::nullopt;
  QImage image = shape ? imageOf(*shape) : drawing(name, pixels);
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), colour);
  painter.end();
  return image;
}

QIcon symbolIcon(const QString& name, const QColor& colour, const SymbolSource* source) {
  QIcon icon;
  for (const int side : {16, 22, 24, 32, 44, 48, 64}) {
    icon.addPixmap(QPixmap::fromImage(symbolImage(name, colour, {side, side}, source)));
  }
  return icon;
}

std::optional<QColor> symbolColour(const QString& digits) {
  if ((digits.size() != 6 && digits.size() != 8) || !std::ranges::all_of(digits, isHexadecimalDigit)) {
    return std::nullopt;
  }
  QColor colour = QColor::fromRgb(digits.left(6).toUInt(nullptr, 16));
  if (digits.size() == 8) {
    colour.setAlpha(digits.right(2).toInt(nullptr, 16));
  }
  return colour;
}

SymbolImageProvider::SymbolImageProvider(const SymbolSource* source)
    : QQuickImageProvider(QQuickImageProvider::Image), source_(source) {}

QImage SymbolImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
  const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
  const auto colour = slash < 0 ? std::nullopt : symbolColour(id.mid(slash + 1));
  if (!colour) {
    qWarning("No colour in the symbol's address \"%s\"", qUtf8Printable(id));
  }
  QImage image = symbolImage(id.left(slash), colour.value_or(Qt::magenta), sizeFor(requestedSize), source_);
  if (size != nullptr) {
    *size = image.size();
  }
  return image;
}

}  // namespace cirrovane
