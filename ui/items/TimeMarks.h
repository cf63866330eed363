#pragma once

#include "base/Time.h"

#include <QLocale>
#include <QString>
#include <QTimeZone>
#include <cstdint>
#include <functional>
#include <vector>

namespace cirrovane {

/// What the texts below a time axis depend on.
struct TimeWording {
  QLocale locale;
  QTimeZone zone;
  /// How wide a text is in the axis's font.
  std::function<double(const QString&)> widthOf;
};

/// The span of time that an axis shows, and the places of its ends.
struct TimeAxis {
  Time first;
  Time last;
  double firstX = 0;
  double lastX = 0;
  /// Between which labels may stand.
  double left = 0;
  double right = 0;

  double placeOf(Time time) const;
};

struct TimeMark {
  Time time;
  double x = 0;
  QString text;
  /// Where the label begins and ends.
  double left = 0;
  double right = 0;
};

/// How far apart marks are at least.
inline constexpr double kLeastMarkDistance = 80;
/// What stays free between two labels at least.
inline constexpr double kLeastLabelDistance = 8;

/// Round times in the zone, so many as fit, from the earliest on; when no round time lies in the span, its begin. An
/// axis without a span has one mark with day and time.
std::vector<TimeMark> timeMarks(const TimeAxis& axis, const TimeWording& wording);

/// Day and time in words: "Nov 15, 6:25 PM".
QString dayAndTime(Time time, const TimeWording& wording);

}  // namespace cirrovane
