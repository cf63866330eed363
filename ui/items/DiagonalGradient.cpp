#include "ui/items/DiagonalGradient.h"

#include "ui/items/ColourMesh.h"
#include "ui/items/SoftOrb.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace cirrovane {
namespace {

/// How many points a pixel of the picture covers each way. Across so many no orb changes by more than a straight line
/// would.
constexpr double kPointsAPixel = 8;

using Opaque = std::array<float, 3>;

Opaque opaqueOf(const QColor& colour) {
  return {colour.redF(), colour.greenF(), colour.blueF()};
}

/// What an orb is to the picture.
struct Light {
  const SoftOrb* orb;
  Opaque channels;
  QPointF centre;
  float alpha;
};

QRgb rounded(const Opaque& channels) {
  const auto channel = [&](std::size_t index) { return static_cast<int>(std::lround(channels.at(index) * 255)); };
  return qRgb(channel(0), channel(1), channel(2));
}

}  // namespace

DiagonalGradient::DiagonalGradient(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  connect(this, &DiagonalGradient::changed, this, &QQuickItem::update);
}

QImage DiagonalGradient::picture() const {
  const auto pixels = [](double length) { return std::max(static_cast<int>(std::ceil(length / kPointsAPixel)), 1); };
  QImage image(pixels(width()), pixels(height()), QImage::Format_RGB32);
  std::vector<Light> lights;
  for (const QQuickItem* child : childItems()) {
    if (const auto* orb = qobject_cast<const SoftOrb*>(child); orb != nullptr && orb->isVisible()) {
      lights.push_back({orb, opaqueOf(orb->color()), orb->centre(), orb->color().alphaF()});
    }
  }
  const Opaque first = opaqueOf(start_);
  const Opaque last = opaqueOf(end_);
  const QSizeF step(width() / image.width(), height() / image.height());
  for (int row = 0; row < image.height(); ++row) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
    for (int column = 0; column < image.width(); ++column) {
      const QPointF place((column + 0.5) * step.width(), (row + 0.5) * step.height());
      const auto share = static_cast<float>(diagonalShare(size(), place));
      Opaque channels{};
      for (std::size_t index = 0; index < channels.size(); ++index) {
        channels.at(index) = std::lerp(first.at(index), last.at(index), share);
      }
      for (const Light& light : lights) {
        const QPointF away = place - light.centre;
        const float opacity =
            light.alpha * static_cast<float>(light.orb->opacityAt(std::sqrt(QPointF::dotProduct(away, away))));
        for (std::size_t index = 0; index < channels.size(); ++index) {
          channels.at(index) = std::lerp(channels.at(index), light.channels.at(index), opacity);
        }
      }
      line[column] = rounded(channels);
    }
  }
  return image;
}

QSGNode* DiagonalGradient::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  auto* shown = dynamic_cast<QSGImageNode*>(node);
  if (shown == nullptr) {
    shown = window()->createImageNode();
    shown->setOwnsTexture(true);
    shown->setFiltering(QSGTexture::Linear);
  }
  shown->setTexture(window()->createTextureFromImage(picture(), QQuickWindow::TextureIsOpaque));
  shown->setRect(boundingRect());
  return shown;
}

void DiagonalGradient::componentComplete() {
  QQuickItem::componentComplete();
  for (const QQuickItem* child : childItems()) {
    if (const auto* orb = qobject_cast<const SoftOrb*>(child)) {
      for (const auto signal : {&QQuickItem::xChanged, &QQuickItem::yChanged, &QQuickItem::visibleChanged}) {
        connect(orb, signal, this, &QQuickItem::update);
      }
      connect(orb, &SoftOrb::changed, this, &QQuickItem::update);
    }
  }
}

}  // namespace cirrovane
