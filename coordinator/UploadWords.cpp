#include "coordinator/UploadWords.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;

/// A pause of this length is no pause yet.
constexpr std::chrono::minutes kWorthTelling{2};

/// A range's two ends in one unit, which the later one chooses.
std::string rangeOf(std::chrono::microseconds earliest, std::chrono::microseconds latest) {
  const auto between = [&](std::chrono::microseconds unit, std::string_view name) {
    const auto low = std::max<std::int64_t>(earliest / unit, 1);
    const auto high = static_cast<std::int64_t>(std::ceil(std::chrono::duration<double>(latest) / unit));
    return low >= high ? fmt::format("about {} {}", high, name) : fmt::format("about {} to {} {}", low, high, name);
  };
  if (latest <= 1min) {
    return "under a minute";
  }
  if (latest <= 90min) {
    return between(1min, "min");
  }
  return latest <= 48h ? between(1h, "h") : between(24h, "days");
}

}  // namespace

std::string bytesText(std::int64_t bytes) {
  struct Unit {
    double size;
    std::string_view name;
  };
  constexpr std::array<Unit, 4> kUnits = {{{1e12, "TB"}, {1e9, "GB"}, {1e6, "MB"}, {1e3, "KB"}}};
  const auto size = static_cast<double>(bytes);
  for (const Unit& unit : kUnits) {
    // What would be rounded to a thousand of a unit is one of the next.
    if (size >= unit.size * 0.9995) {
      const double count = size / unit.size;
      return unit.size >= 1e6 && count < 99.95 ? fmt::format("{:.1f} {}", count, unit.name)
                                               : fmt::format("{:.0f} {}", count, unit.name);
    }
  }
  return fmt::format("{} byte{}", bytes, bytes == 1 ? "" : "s");
}

std::string amountText(const PendingUploads& uploads) {
  return fmt::format("{} file{}, {}", uploads.pendingFiles, uploads.pendingFiles == 1 ? "" : "s",
                     bytesText(uploads.pendingBytes));
}

std::optional<std::string> rangeText(const PendingUploads& uploads) {
  if (!uploads.estimate) {
    return std::nullopt;
  }
  return rangeOf(uploads.estimate->earliest - uploads.generatedAt, uploads.estimate->latest - uploads.generatedAt);
}

std::string withoutRangeText(const std::optional<std::chrono::microseconds>& quiet) {
  return quiet && *quiet >= kWorthTelling ? "nothing has moved for " + waitText(*quiet) : "no estimate yet";
}

std::string waitText(std::chrono::microseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(std::max(time, std::chrono::microseconds(0)));
  if (seconds < 1min) {
    return fmt::format("{} s", seconds.count());
  }
  if (seconds < 1h) {
    return fmt::format("{} min", seconds / 1min);
  }
  if (seconds < 48h) {
    const auto minutes = seconds % 1h / 1min;
    return minutes == 0 ? fmt::format("{} h", seconds / 1h) : fmt::format("{} h {} min", seconds / 1h, minutes);
  }
  return fmt::format("{} days", seconds / 24h);
}

}  // namespace cirrovane
