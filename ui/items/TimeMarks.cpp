#include "ui/items/TimeMarks.h"

#include <QDateTime>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace cirrovane {
namespace {

enum class Unit : std::uint8_t { minute, hour, day, month, year };

/// The distance from a mark to the next.
struct Step {
  Unit unit;
  int count;
};

constexpr std::array kSteps = {
    Step{Unit::minute, 1},  Step{Unit::minute, 2},  Step{Unit::minute, 5},  Step{Unit::minute, 10},
    Step{Unit::minute, 15}, Step{Unit::minute, 30}, Step{Unit::hour, 1},    Step{Unit::hour, 2},
    Step{Unit::hour, 3},    Step{Unit::hour, 6},    Step{Unit::hour, 12},   Step{Unit::day, 1},
    Step{Unit::day, 2},     Step{Unit::day, 7},     Step{Unit::day, 14},    Step{Unit::month, 1},
    Step{Unit::month, 2},   Step{Unit::month, 3},   Step{Unit::month, 6},   Step{Unit::year, 1},
    Step{Unit::year, 2},    Step{Unit::year, 5},    Step{Unit::year, 10},   Step{Unit::year, 50},
    Step{Unit::year, 100},  Step{Unit::year, 500},  Step{Unit::year, 1000}, Step{Unit::year, 5000}};

double secondsOf(const Step& step) {
  switch (step.unit) {
    case Unit::minute:
      return step.count * 60.0;
    case Unit::hour:
      return step.count * 3600.0;
    case Unit::day:
      return step.count * 86400.0;
    case Unit::month:
      return step.count * 365.25 / 12 * 86400;
    case Unit::year:
      break;
  }
  return step.count * 365.25 * 86400;
}

double secondsBetween(Time first, Time last) {
  // Not subtracted as they are: two hostile dates may be further apart than a duration can say.
  using Seconds = std::chrono::duration<double>;
  return Seconds(last.time_since_epoch()).count() - Seconds(first.time_since_epoch()).count();
}

QDateTime dateTimeOf(Time time, const QTimeZone& zone) {
  return QDateTime::fromMSecsSinceEpoch(std::chrono::floor<std::chrono::milliseconds>(time).time_since_epoch().count(),
                                        zone);
}

Time timeOf(const QDateTime& dateTime) {
  return Time(std::chrono::milliseconds(dateTime.toMSecsSinceEpoch()));
}

/// The largest multiple of the step that is not above the value.
template <class Number>
Number roundedDown(Number value, Number step) {
  const Number rest = value % step;
  return value - (rest < 0 ? rest + step : rest);
}

/// The round times of one step, from the last one not after a given time on.
class RoundTimes {
 public:
  RoundTimes(const Step& step, Time from, const QTimeZone& zone) : step_(step), zone_(zone) {
    const QDateTime start = dateTimeOf(from, zone);
    date_ = start.date();
    switch (step.unit) {
      case Unit::minute: {
        // Offsets of zones and their changes are whole quarters of an hour, so from here on minutes are even.
        const int minutes = start.time().hour() * 60 + start.time().minute();
        const int sinceMark = start.time().msecsSinceStartOfDay() - roundedDown(minutes, step.count) * 60'000;
        current_ = start.addMSecs(-sinceMark);
        return;
      }
      case Unit::hour:
        hour_ = roundedDown(start.time().hour(), step.count);
        break;
      case Unit::day:
        date_ = QDate::fromJulianDay(roundedDown(date_.toJulianDay(), static_cast<qint64>(step.count)));
        break;
      case Unit::month:
        date_ = QDate(date_.year(), roundedDown(date_.month() - 1, step.count) + 1, 1);
        break;
      case Unit::year:
        year_ = roundedDown(date_.year(), step.count);
        date_ = startOfYear();
        break;
    }
    current_ = here();
  }

  /// False beyond the end of the calendar.
  bool isValid() const { return date_.isValid(); }
  /// Invalid for a time that the clocks skip.
  const QDateTime& current() const { return current_; }

  void advance() {
    switch (step_.unit) {
      case Unit::minute:
        current_ = current_.addSecs(static_cast<qint64>(step_.count) * 60);
        return;
      case Unit::hour:
        hour_ += step_.count;
        if (hour_ >= 24) {
          hour_ = 0;
          date_ = date_.addDays(1);
        }
        break;
      case Unit::day:
        date_ = date_.addDays(step_.count);
        break;
      case Unit::month:
        date_ = date_.addMonths(step_.count);
        break;
      case Unit::year:
        year_ += step_.count;
        date_ = startOfYear();
        break;
    }
    current_ = here();
  }

 private:
  /// The calendar has no year 0.
  QDate startOfYear() const { return {year_ == 0 ? 1 : year_, 1, 1}; }
  /// Where the clocks are put forward at midnight, a day begins later.
  QDateTime here() const { return hour_ == 0 ? date_.startOfDay(zone_) : QDateTime(date_, QTime(hour_, 0), zone_); }

  Step step_;
  QTimeZone zone_;
  int year_ = 0;
  QDate date_;
  int hour_ = 0;
  QDateTime current_;
};

/// Month and day in the locale's order.
QString dayText(const QDate& date, const QLocale& locale) {
  const QString order = locale.dateFormat(QLocale::ShortFormat);
  const bool dayFirst = order.indexOf(QLatin1Char('d')) < order.indexOf(QLatin1Char('M'));
  return locale.toString(date, dayFirst ? QStringLiteral("d MMM") : QStringLiteral("MMM d"));
}

QString clockText(const QTime& time, const QLocale& locale) {
  // Where no language is set, the short form has seconds.
  return locale.toString(time, locale.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss")));
}

/// As much of a time as tells its mark from the others: where a day or a year begins among smaller steps, that.
QString textOf(const QDateTime& time, Unit unit, const QLocale& locale) {
  switch (unit) {
    case Unit::minute:
    case Unit::hour:
      return time.time() == QTime(0, 0) ? dayText(time.date(), locale) : clockText(time.time(), locale);
    case Unit::day:
      return dayText(time.date(), locale);
    case Unit::month:
      return time.date().month() == 1 ? QString::number(time.date().year())
                                      : locale.standaloneMonthName(time.date().month(), QLocale::ShortFormat);
    case Unit::year:
      break;
  }
  return QString::number(time.date().year());
}

/// The mark with its label in the middle below it, or as near to that as the axis has room.
TimeMark markAt(Time time, const QString& text, const TimeAxis& axis, const TimeWording& wording) {
  const double x = axis.placeOf(time);
  const double width = wording.widthOf(text);
  const double left = std::max(std::min(x - width / 2, axis.right - width), axis.left);
  return {time, x, text, left, left + width};
}

bool areApart(const TimeMark& first, const TimeMark& second) {
  return second.x - first.x >= kLeastMarkDistance && second.left - first.right >= kLeastLabelDistance;
}

/// The marks of one step; absent when they would be too close to each other.
std::optional<std::vector<TimeMark>> marksOf(const Step& step, const TimeAxis& axis, const TimeWording& wording) {
  std::vector<TimeMark> marks;
  for (RoundTimes times(step, axis.first, wording.zone); times.isValid(); times.advance()) {
    if (!times.current().isValid()) {
      continue;
    }
    const Time time = timeOf(times.current());
    if (time > axis.last) {
      break;
    }
    // A skipped time may come out as the one after it, too.
    if (time < axis.first || (!marks.empty() && time <= marks.back().time)) {
      continue;
    }
    TimeMark mark = markAt(time, textOf(times.current(), step.unit, wording.locale), axis, wording);
    if (!marks.empty() && !areApart(marks.back(), mark)) {
      return std::nullopt;
    }
    marks.push_back(std::move(mark));
  }
  return marks;
}

}  // namespace

double TimeAxis::placeOf(Time time) const {
  const double span = secondsBetween(first, last);
  return span > 0 ? firstX + (lastX - firstX) * secondsBetween(first, time) / span : (firstX + lastX) / 2;
}

QString dayAndTime(Time time, const TimeWording& wording) {
  const QDateTime local = dateTimeOf(time, wording.zone);
  return dayText(local.date(), wording.locale) + QStringLiteral(", ") + clockText(local.time(), wording.locale);
}

std::vector<TimeMark> timeMarks(const TimeAxis& axis, const TimeWording& wording) {
  const double span = secondsBetween(axis.first, axis.last);
  if (span <= 0) {
    return {markAt(axis.first, dayAndTime(axis.first, wording), axis, wording)};
  }
  const double leastSeconds = kLeastMarkDistance * span / std::max(axis.lastX - axis.firstX, 1.0);
  for (const Step& step : kSteps) {
    // A month may be longer than it is in the mean.
    if (secondsOf(step) * 1.1 < leastSeconds) {
      continue;
    }
    if (auto marks = marksOf(step, axis, wording)) {
      if (marks->empty()) {
        break;
      }
      return *std::move(marks);
    }
  }
  return {markAt(axis.first, dayAndTime(axis.first, wording), axis, wording)};
}

}  // namespace cirrovane
