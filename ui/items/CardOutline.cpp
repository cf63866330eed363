#include "ui/items/CardOutline.h"

#include "ui/items/ColourMesh.h"

#include <QImage>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace cirrovane {
namespace {

constexpr int kStepsACorner = 12;

/// The colour `over` as it looks on `under`.
QColor composed(const QColor& over, const QColor& under) {
  const float alpha = over.alphaF() + under.alphaF() * (1 - over.alphaF());
  if (alpha <= 0) {
    return over;
  }
  const auto mix = [&](float top, float bottom) {
    return (top * over.alphaF() + bottom * under.alphaF() * (1 - over.alphaF())) / alpha;
  };
  return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                          mix(over.blueF(), under.blueF()), alpha);
}

/// The border of a rounded rectangle that lies `inset` inside of the given one, from the first point around to it
/// again.
std::vector<QPointF> borderOf(const QSizeF& size, double radius, double inset) {
  const double corner = std::max(radius - inset, 0.0);
  const double left = radius;
  const double right = size.width() - radius;
  const double top = radius;
  const double bottom = size.height() - radius;
  const std::array<QPointF, 4> centres = {{{right, top}, {right, bottom}, {left, bottom}, {left, top}}};
  std::vector<QPointF> points;
  for (std::size_t quarter = 0; quarter < centres.size(); ++quarter) {
    for (int step = 0; step <= kStepsACorner; ++step) {
      const double angle =
          (static_cast<double>(quarter) - 1 + static_cast<double>(step) / kStepsACorner) * (std::numbers::pi / 2);
      points.push_back(centres.at(quarter) + QPointF(std::cos(angle), std::sin(angle)) * corner);
    }
  }
  points.push_back(points.front());
  return points;
}

}  // namespace

/// Pictures of what lies along the edges, and one rectangle for all that is of one colour.
class CardOutline::Pieces : public QSGNode {
 public:
  explicit Pieces(QQuickWindow& window) : window_(window), middle_(window.createRectangleNode()) {
    appendChildNode(middle_);
    for (QSGImageNode*& edge : edges_) {
      edge = window.createImageNode();
      edge->setOwnsTexture(true);
      appendChildNode(edge);
    }
  }

  void update(const CardOutline& card) {
    const double scale = window_.effectiveDevicePixelRatio();
    const QRectF all(QPointF(), card.size());
    // In whole points, so that no two pieces share a pixel.
    const double corner = std::ceil(std::min({card.radius_, all.width() / 2, all.height() / 2})) + kOutline;
    const double high = std::min(corner, std::floor(all.height() / 2));
    const double wide = std::min(kOutline, std::floor(all.width() / 2));
    const QRectF between(QPointF(0, high), QPointF(all.width(), std::floor(all.height() - high)));
    const QRectF middle(QPointF(wide, high), QPointF(std::floor(all.width() - wide), between.bottom()));
    const ColourMesh mesh = card.mesh();
    middle_->setRect(middle);
    middle_->setColor(card.fill_);
    const std::array<QRectF, 4> areas = {
        QRectF(all.topLeft(), QSizeF(all.width(), high)),
        QRectF(QPointF(0, between.bottom()), QSizeF(all.width(), all.bottom() - between.bottom())),
        QRectF(between.topLeft(), QSizeF(wide, between.height())),
        QRectF(QPointF(middle.right(), between.top()), QSizeF(all.right() - middle.right(), between.height()))};
    for (std::size_t index = 0; index < areas.size(); ++index) {
      const QRectF& area = areas.at(index);
      QSGImageNode* edge = edges_.at(index);
      const QImage picture = area.isEmpty() ? transparentPixel() : meshPicture(mesh, area, scale);
      edge->setTexture(window_.createTextureFromImage(picture));
      edge->setRect(area.topLeft().x(), area.topLeft().y(), picture.width() / scale, picture.height() / scale);
    }
  }

 private:
  /// How far the outline with its soft edges reaches from a straight edge.
  static constexpr double kOutline = 2;

  static QImage transparentPixel() {
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
  }

  QQuickWindow& window_;
  QSGRectangleNode* middle_;
  std::array<QSGImageNode*, 4> edges_{};
};

CardOutline::CardOutline(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  connect(this, &CardOutline::changed, this, &QQuickItem::update);
}

ColourMesh CardOutline::mesh() const {
  const QSizeF area = size();
  ColourMesh mesh;
  if (area.width() > 2 && area.height() > 2) {
    const double radius = std::min({radius_, area.width() / 2, area.height() / 2});
    // Half a pixel on either side of an edge blends, which is what makes it look smooth.
    const double soft = 0.5 / (window() != nullptr ? window()->effectiveDevicePixelRatio() : 1);
    const auto ring = [&](double inset, const auto& colourAt) {
      std::vector<MeshVertex> line;
      for (const QPointF& point : borderOf(area, radius, inset)) {
        line.push_back({point, colourAt(point)});
      }
      return line;
    };
    const auto outline = [&](const QPointF& point) {
      const double share = diagonalShare(area, point);
      return composed(between(outlineStart_, outlineEnd_, share), fill_);
    };
    const auto vanished = [&](const QPointF& point) {
      QColor colour = outline(point);
      colour.setAlphaF(0);
      return colour;
    };
    const auto filled = [&](const QPointF& /*point*/) { return fill_; };
    const auto outer = ring(soft, outline);
    const auto inner = ring(1 + soft, filled);
    addBand(mesh, ring(-soft, vanished), outer);
    addBand(mesh, outer, ring(1 - soft, outline));
    addBand(mesh, ring(1 - soft, outline), inner);
    addBand(mesh, inner, std::vector<MeshVertex>(inner.size(), {QPointF(area.width() / 2, area.height() / 2), fill_}));
  }
  return mesh;
}

QSGNode* CardOutline::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  auto* pieces = node != nullptr ? dynamic_cast<Pieces*>(node) : new Pieces(*window());
  pieces->update(*this);
  return pieces;
}

}  // namespace cirrovane
