#include "platform/linux/host/PlainAmountText.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string withoutTrailingZeros(std::string number) {
  number.erase(number.find_last_not_of('0') + 1);
  if (number.ends_with('.')) {
    number.pop_back();
  }
  return number;
}

std::string magnitudeText(std::uint64_t bytes) {
  // Up to here a number of megabytes does not round to 1000.
  constexpr std::uint64_t kMostMegabytes = 999'949'999;
  const auto size = static_cast<double>(bytes);
  return bytes <= kMostMegabytes ? withoutTrailingZeros(fmt::format("{:.1f}", size / 1e6)) + " MB"
                                 : withoutTrailingZeros(fmt::format("{:.2f}", size / 1e9)) + " GB";
}

}  // namespace

std::string PlainAmountText::byteCount(std::int64_t bytes) const {
  if (bytes == 0) {
    return "Zero KB";
  }
  const auto magnitude = static_cast<std::uint64_t>(bytes);
  return bytes < 0 ? "-" + magnitudeText(0 - magnitude) : magnitudeText(magnitude);
}

std::string PlainAmountText::duration(double seconds) const {
  constexpr double kLongest = 1e15;
  constexpr std::int64_t kMinutesInHour = 60;
  constexpr std::int64_t kMinutesInDay = 24 * kMinutesInHour;
  // Written so that what is no number counts as nothing.
  auto minutes = seconds > 0 ? static_cast<std::int64_t>(std::min(seconds, kLongest)) / 60 : 0;
  if (minutes > kMinutesInDay && minutes % kMinutesInDay >= kMinutesInHour && minutes % kMinutesInHour != 0) {
    // Only two units are shown, so the minutes round the hours.
    minutes = (minutes + kMinutesInHour / 2) / kMinutesInHour * kMinutesInHour;
  }
  const std::array<std::pair<std::int64_t, char>, 3> units = {{
      {minutes / kMinutesInDay, 'd'},
      {minutes % kMinutesInDay / kMinutesInHour, 'h'},
      {minutes % kMinutesInHour, 'm'},
  }};
  std::string text;
  for (const auto& [count, unit] : units) {
    if (count > 0) {
      text += fmt::format("{}{}{}", text.empty() ? "" : " ", count, unit);
    }
  }
  return text.empty() ? "0m" : text;
}

}  // namespace cirrovane
