#pragma once

#include "base/Time.h"

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// The time in UTC with whole seconds, rounded down, as "2026-11-15T18:21:10Z". Times outside the years 0000 to 9999,
/// which the form cannot hold, give the nearest time inside.
std::string iso8601Text(Time time);

/// The time of a text as iso8601Text gives it, also with a fraction of a second, which is dropped, and with a time zone
/// "+hh", "+hh:mm" or "+hhmm" in place of "Z". Absent for any other text, and for days and times that do not exist.
std::optional<Time> timeFromISO8601(std::string_view text);

}  // namespace cirrovane
