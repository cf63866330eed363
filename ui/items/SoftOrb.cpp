#include "ui/items/SoftOrb.h"

#include "ui/items/ColourMesh.h"
#include "ui/items/NormalShare.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cirrovane {
namespace {

constexpr int kRings = 40;
constexpr int kSpokes = 72;
/// Beyond as many blur radiuses from the edge nothing of the disc is left to see.
constexpr double kReach = 3;

}  // namespace

double blurredDiscOpacity(double radius, double blur, double distance) {
  if (blur <= 0) {
    return distance <= radius ? 1 : 0;
  }
  // The blur is a normal distribution around the point. Across the disc it is summed in strips, along each strip there
  // is a formula.
  constexpr int kStrips = 64;
  double sum = 0;
  double weights = 0;
  for (int strip = 0; strip < kStrips; ++strip) {
    const double offset = ((strip + 0.5) / kStrips * 2 - 1) * kReach * blur;
    const double weight = std::exp(-offset * offset / (2 * blur * blur));
    weights += weight;
    const double half = radius * radius - offset * offset;
    if (half > 0) {
      const double reach = std::sqrt(half);
      sum += weight * (normalShare((reach - distance) / blur) - normalShare((-reach - distance) / blur));
    }
  }
  return sum / weights;
}

SoftOrb::SoftOrb(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  connect(this, &SoftOrb::changed, this, &QQuickItem::update);
}

QSGNode* SoftOrb::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  const double radius = diameter_ / 2;
  const double extent = radius + kReach * blurRadius_;
  const QPointF centre(width() / 2, height() / 2);
  const auto ring = [&](int number) {
    const double distance = extent * number / kRings;
    QColor colour = color_;
    const double opacity = number == kRings ? 0 : blurredDiscOpacity(radius, blurRadius_, distance);
    colour.setAlphaF(color_.alphaF() * static_cast<float>(opacity));
    std::vector<MeshVertex> line;
    for (int spoke = 0; spoke <= kSpokes; ++spoke) {
      const double angle = 2 * std::numbers::pi * spoke / kSpokes;
      line.push_back({centre + QPointF(std::cos(angle), std::sin(angle)) * distance, colour});
    }
    return line;
  };
  ColourMesh mesh;
  std::vector<MeshVertex> inner = ring(0);
  for (int number = 1; number <= kRings; ++number) {
    std::vector<MeshVertex> outer = ring(number);
    addBand(mesh, inner, outer);
    inner = std::move(outer);
  }
  return updateMeshNode(node, mesh);
}

}  // namespace cirrovane
