#include "cli/LocalTime.h"

#include "base/ISO8601.h"

#include <ctime>

#include <fmt/chrono.h>

namespace cirrovane {

std::string localTimeText(Time time) {
  const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
  std::tm local{};
  // A year that the calendar cannot hold is shown as files hold it.
  if (localtime_r(&seconds, &local) == nullptr) {
    return iso8601Text(time);
  }
  return fmt::format("{:%Y-%m-%d %H:%M}", local);
}

}  // namespace cirrovane
