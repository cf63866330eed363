#pragma once

#include "base/Time.h"

#include <string>

namespace cirrovane {

/// A time in the user's zone to the minute, in a form that sorts: "2026-11-15 18:21".
std::string localTimeText(Time time);
/// The time of day in the user's zone to the second: "18:21:05".
std::string localTimeOfDay(Time time);

}  // namespace cirrovane
