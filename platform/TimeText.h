#pragma once

#include "base/Time.h"

#include <cstddef>
#include <string>

namespace cirrovane {

/// Times as the user's locale writes them, in the user's time zone. Main thread only.
class TimeText {
 public:
  virtual ~TimeText() = default;
  /// Hour and minute: "9:41 AM".
  virtual std::string shortTime(Time time) const = 0;
  /// Hour, minute and second: "9:41:07 AM".
  virtual std::string timeOfDay(Time time) const = 0;
  /// Abbreviated month, day, hour and minute: "Nov 15, 6:25 PM".
  virtual std::string dayAndTime(Time time) const = 0;
  /// Year, month, day, hour and minute for the name of a file: "2026-11-15-1825".
  virtual std::string fileNameStamp(Time time) const = 0;

  /// The time of day of a moment of today; any other moment with its day. `now` tells which day that is.
  std::string moment(Time time, Time now) const {
    constexpr std::size_t dayLength = sizeof("2026-11-15") - 1;
    const bool isToday = fileNameStamp(time).compare(0, dayLength, fileNameStamp(now), 0, dayLength) == 0;
    return isToday ? timeOfDay(time) : dayAndTime(time);
  }
};

}  // namespace cirrovane
