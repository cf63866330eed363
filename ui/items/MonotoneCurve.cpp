#include "ui/items/MonotoneCurve.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace cirrovane {
namespace {

/// The slope nearest to the wanted one with which a piece of that secant keeps rising or falling all along.
double limited(double wanted, double secant) {
  const double bound = 3 * secant;
  return std::clamp(wanted, std::min(0.0, bound), std::max(0.0, bound));
}

/// The slope at each of the points, of which no two neighbours have the same x.
std::vector<double> slopesOf(std::span<const QPointF> points) {
  std::vector<double> secants;
  for (std::size_t index = 0; index + 1 < points.size(); ++index) {
    const QPointF step = points[index + 1] - points[index];
    secants.push_back(step.y() / step.x());
  }
  std::vector<double> slopes(points.size());
  if (secants.empty()) {
    return slopes;
  }
  for (std::size_t index = 1; index < secants.size(); ++index) {
    const double before = secants[index - 1];
    const double after = secants[index];
    if ((before > 0) == (after > 0) && before != 0 && after != 0) {
      const double shareBefore =
          (points[index + 1].x() - points[index].x()) / (points[index + 1].x() - points[index - 1].x());
      slopes[index] = limited(limited(shareBefore * before + (1 - shareBefore) * after, before), after);
    }
  }
  // At either end the bend of the last piece is even.
  slopes.front() = limited((3 * secants.front() - slopes[1]) / 2, secants.front());
  slopes.back() = limited((3 * secants.back() - slopes[slopes.size() - 2]) / 2, secants.back());
  if (secants.size() == 1) {
    slopes = {secants.front(), secants.front()};
  }
  return slopes;
}

void addRun(std::vector<CurveSegment>& curve, std::span<const QPointF> points) {
  const std::vector<double> slopes = slopesOf(points);
  for (std::size_t index = 0; index + 1 < points.size(); ++index) {
    const QPointF& from = points[index];
    const QPointF& to = points[index + 1];
    const double third = (to.x() - from.x()) / 3;
    const auto [low, high] = std::minmax({from.y(), to.y()});
    // Within bounds but for the last bits of a rounding.
    curve.push_back({{from.x() + third, std::clamp(from.y() + slopes[index] * third, low, high)},
                     {to.x() - third, std::clamp(to.y() - slopes[index + 1] * third, low, high)},
                     to});
  }
}

}  // namespace

std::vector<CurveSegment> monotoneCurve(const std::vector<QPointF>& points) {
  std::vector<CurveSegment> curve;
  // What is no further apart than this is one place, and its slope would be no number.
  constexpr double kSamePlace = 1e-6;
  const std::span<const QPointF> all = points;
  std::size_t begin = 0;
  for (std::size_t index = 1; index <= all.size(); ++index) {
    const bool isLast = index == all.size();
    if (!isLast && all[index].x() - all[index - 1].x() > kSamePlace) {
      continue;
    }
    addRun(curve, all.subspan(begin, index - begin));
    if (!isLast) {
      curve.push_back({all[index - 1], all[index], all[index]});
    }
    begin = index;
  }
  return curve;
}

QPainterPath curvePath(const std::vector<QPointF>& points, const std::vector<CurveSegment>& curve) {
  QPainterPath path;
  if (curve.empty()) {
    return path;
  }
  path.moveTo(points.front());
  for (const CurveSegment& segment : curve) {
    path.cubicTo(segment.firstControl, segment.secondControl, segment.end);
  }
  return path;
}

QPainterPath areaPath(const std::vector<QPointF>& points, const std::vector<CurveSegment>& curve, double base) {
  QPainterPath path = curvePath(points, curve);
  if (!path.isEmpty()) {
    path.lineTo(points.back().x(), base);
    path.lineTo(points.front().x(), base);
    path.closeSubpath();
  }
  return path;
}

QPainterPath discsPath(const std::vector<QPointF>& points, double radius) {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  for (const QPointF& point : points) {
    path.addEllipse(point, radius, radius);
  }
  return path;
}

}  // namespace cirrovane
