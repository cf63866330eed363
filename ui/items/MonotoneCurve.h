#pragma once

#include <QPainterPath>
#include <QPointF>
#include <vector>

namespace cirrovane {

/// A cubic Bezier curve from the end of the one before it.
struct CurveSegment {
  QPointF firstControl;
  QPointF secondControl;
  QPointF end;
};

/// A smooth line through points in the order of x: between two neighbours it neither leaves their heights nor turns.
/// Neighbours of the same x are joined straight. One segment fewer than points.
std::vector<CurveSegment> monotoneCurve(const std::vector<QPointF>& points);

/// The line; empty without two points.
QPainterPath curvePath(const std::vector<QPointF>& points, const std::vector<CurveSegment>& curve);

/// The area between the line and a horizontal line; empty without two points.
QPainterPath areaPath(const std::vector<QPointF>& points, const std::vector<CurveSegment>& curve, double base);

/// A disc around each point; where two overlap both are filled.
QPainterPath discsPath(const std::vector<QPointF>& points, double radius);

}  // namespace cirrovane
