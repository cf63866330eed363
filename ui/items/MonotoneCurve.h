#pragma once

#include <QPointF>
#include <QString>
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

/// The line as an SVG path; empty without two points.
QString curvePath(const std::vector<QPointF>& points, const std::vector<CurveSegment>& curve);

/// The area between the line and a horizontal line as an SVG path; empty without two points.
QString areaPath(const std::vector<QPointF>& points, const std::vector<CurveSegment>& curve, double base);

/// A disc around each point as an SVG path.
QString discsPath(const std::vector<QPointF>& points, double radius);

}  // namespace cirrovane
