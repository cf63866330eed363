#include "ui/items/MonotoneCurve.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

QPointF pointAt(const QPointF& start, const CurveSegment& segment, double share) {
  const double rest = 1 - share;
  return start * (rest * rest * rest) + segment.firstControl * (3 * rest * rest * share) +
         segment.secondControl * (3 * rest * share * share) + segment.end * (share * share * share);
}

/// What is wrong with a curve through the points; empty when nothing is.
std::string problemOf(const std::vector<QPointF>& points) {
  const std::vector<CurveSegment> curve = monotoneCurve(points);
  if (curve.size() + 1 != std::max<std::size_t>(points.size(), 1)) {
    return "number of segments";
  }
  constexpr double kRounding = 1e-9;
  for (std::size_t index = 0; index < curve.size(); ++index) {
    const QPointF& from = points[index];
    const QPointF& to = points[index + 1];
    if (curve[index].end != to) {
      return "misses point " + std::to_string(index + 1);
    }
    const double rises = to.y() >= from.y() ? 1 : -1;
    QPointF previous = from;
    for (int step = 1; step <= 40; ++step) {
      const QPointF here = pointAt(from, curve[index], step / 40.0);
      if (!std::isfinite(here.x()) || !std::isfinite(here.y())) {
        return "no number after point " + std::to_string(index);
      }
      if ((here.y() - previous.y()) * rises < -kRounding || here.x() < previous.x() - kRounding) {
        return "turns after point " + std::to_string(index);
      }
      if (here.y() < std::min(from.y(), to.y()) - kRounding || here.y() > std::max(from.y(), to.y()) + kRounding) {
        return "overshoots after point " + std::to_string(index);
      }
      previous = here;
    }
  }
  return {};
}

/// The path's elements, a letter and a place each: M for a new line, L for a straight piece, C for the points of a
/// curve.
std::string textOf(const QPainterPath& path) {
  std::string text;
  for (int index = 0; index < path.elementCount(); ++index) {
    const QPainterPath::Element element = path.elementAt(index);
    text += element.isMoveTo() ? 'M' : element.isLineTo() ? 'L' : 'C';
    text += std::to_string(std::lround(element.x)) + ',' + std::to_string(std::lround(element.y)) + ' ';
  }
  return text;
}

TEST(MonotoneCurve, anyScores_arePassedWithoutTurnOrOvershoot) {
  std::mt19937 random(20261115);
  const auto number = [&](unsigned below) { return static_cast<double>(random() % below); };
  for (int round = 0; round < 5000; ++round) {
    std::vector<QPointF> points;
    double x = number(50);
    const auto count = 2 + random() % 12;
    // Now far apart, now crowded, some in one place.
    const double scale = std::pow(10.0, number(8) - 5);
    for (std::size_t index = 0; index < count; ++index) {
      points.emplace_back(x, number(4) == 0 ? number(2) * 100 : number(101));
      x += number(5) == 0 ? 0 : number(1000) * scale;
    }
    ASSERT_EQ(problemOf(points), "") << "round " << round;
  }
}

TEST(MonotoneCurve, straightLine_staysStraight) {
  const std::vector<QPointF> points = {{0, 0}, {10, 10}, {40, 40}, {50, 50}};
  const std::vector<CurveSegment> curve = monotoneCurve(points);
  for (std::size_t index = 0; index < curve.size(); ++index) {
    for (const double share : {0.2, 0.5, 0.9}) {
      const QPointF here = pointAt(points[index], curve[index], share);
      EXPECT_NEAR(here.x(), here.y(), 1e-9);
    }
  }
}

TEST(MonotoneCurve, bend_isSmooth) {
  const std::vector<QPointF> points = {{0, 0}, {10, 20}, {30, 90}, {40, 100}};
  const std::vector<CurveSegment> curve = monotoneCurve(points);
  for (std::size_t index = 0; index + 1 < curve.size(); ++index) {
    const QPointF in = curve[index].end - curve[index].secondControl;
    const QPointF out = curve[index + 1].firstControl - curve[index].end;
    EXPECT_NEAR(in.y() / in.x(), out.y() / out.x(), 1e-9);
  }
}

TEST(MonotoneCurve, sameTimes_areJoinedStraight) {
  const std::vector<QPointF> points = {{5, 10}, {5, 90}, {5, 40}};
  EXPECT_EQ(problemOf(points), "");
  EXPECT_EQ(textOf(curvePath(points, monotoneCurve(points))), "M5,10 C5,10 C5,90 C5,90 C5,90 C5,40 C5,40 ");
}

TEST(MonotoneCurve, fewerThanTwoPoints_haveNoLine) {
  EXPECT_TRUE(monotoneCurve({}).empty());
  EXPECT_TRUE(monotoneCurve({{3, 4}}).empty());
  EXPECT_TRUE(curvePath({}, {}).isEmpty());
  EXPECT_TRUE(curvePath({{3, 4}}, {}).isEmpty());
  EXPECT_TRUE(areaPath({{3, 4}}, {}, 100).isEmpty());
}

TEST(MonotoneCurve, area_isClosedToTheBase) {
  const std::vector<QPointF> points = {{0, 30}, {30, 0}};
  EXPECT_EQ(textOf(areaPath(points, monotoneCurve(points), 100)), "M0,30 C10,20 C20,10 C30,0 L30,100 L0,100 L0,30 ");
}

TEST(MonotoneCurve, discs_areDrawnAroundEachPoint) {
  EXPECT_TRUE(discsPath({}, 2.5).isEmpty());
  EXPECT_EQ(discsPath({{10, 20}}, 2.5).boundingRect(), QRectF(7.5, 17.5, 5, 5));
  const QPainterPath overlapping = discsPath({{10, 20}, {12, 20}}, 2.5);
  EXPECT_TRUE(overlapping.contains({11, 20}));
  EXPECT_FALSE(overlapping.contains({15, 20}));
}

}  // namespace
}  // namespace cirrovane::test
