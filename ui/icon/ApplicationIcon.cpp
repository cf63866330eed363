#include "ui/icon/ApplicationIcon.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace cirrovane {

QImage applicationImage(int side, double margin) {
  if (side <= 0) {
    return {};
  }
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const double space = side * margin;
  QSvgRenderer renderer(QStringLiteral(":/icon/com.quillmere.Cirrovane.svg"));
  renderer.render(&painter, QRectF(image.rect()).adjusted(space, space, -space, -space));
  return image;
}

QIcon applicationIcon() {
  QIcon icon;
  for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
    icon.addPixmap(QPixmap::fromImage(applicationImage(side)));
  }
  return icon;
}

}  // namespace cirrovane
