#include "ui/items/SoftOrb.h"

#include "ui/items/NormalShare.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace cirrovane {
namespace {

constexpr int kOpacities = 64;
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
  connect(this, &SoftOrb::changed, this, [this] {
    if (isComponentComplete()) {
      shape();
    }
  });
}

void SoftOrb::componentComplete() {
  QQuickItem::componentComplete();
  shape();
}

QPointF SoftOrb::centre() const {
  return position() + QPointF(width() / 2, height() / 2);
}

double SoftOrb::opacityAt(double distance) const {
  if (distance >= reach_) {
    return 0;
  }
  const double place = distance / reach_ * kOpacities;
  const auto step = static_cast<std::size_t>(place);
  return std::lerp(opacities_[step], opacities_[step + 1], place - static_cast<double>(step));
}

void SoftOrb::shape() {
  const double radius = diameter_ / 2;
  reach_ = radius + kReach * blurRadius_;
  opacities_.clear();
  for (int step = 0; step < kOpacities; ++step) {
    opacities_.push_back(blurredDiscOpacity(radius, blurRadius_, reach_ * step / kOpacities));
  }
  opacities_.push_back(0);
}

}  // namespace cirrovane
