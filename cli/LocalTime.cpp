#include "cli/LocalTime.h"

#include "base/ISO8601.h"

#include <ctime>

#include <fmt/chrono.h>

namespace cirrovane {

namespace {

std::string formatted(Time time, fmt::format_string<std::tm&> form) {
  const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
  std::tm local{};
  // A year that the calendar cannot hold is shown as files hold it.
  if (localtime_r(&seconds, &local) == nullptr) {
    return iso8601Text(time);
  }
  return fmt::format(form, local);
}

}  // namespace

std::string localTimeText(Time time) {
  return formatted(time, "{:%Y-%m-%d %H:%M}");
}

std::string localTimeOfDay(Time time) {
  return formatted(time, "{:%H:%M:%S}");
}

}  // namespace cirrovane
