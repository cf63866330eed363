#include "ui/items/Drift.h"

#include <QEasingCurve>
#include <cmath>

namespace cirrovane {

double Drift::phase(double elapsed, double seconds) {
  const double inCycle = std::fmod(elapsed, 2 * seconds) / seconds;
  QEasingCurve ease(QEasingCurve::BezierSpline);
  ease.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
  return ease.valueForProgress(inCycle <= 1 ? inCycle : 2 - inCycle);
}

}  // namespace cirrovane
