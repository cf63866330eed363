#include "platform/posix/FileTime.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>

namespace cirrovane {

Time timeOf(const timespec& stamp) {
  using Microseconds = std::chrono::microseconds;
  constexpr std::int64_t kLimit = std::numeric_limits<std::int64_t>::max() / 1'000'000 - 1;
  constexpr std::int64_t kLastNanosecond = 999'999'999;
  const std::int64_t seconds = std::clamp<std::int64_t>(stamp.tv_sec, -kLimit, kLimit);
  const std::int64_t nanoseconds = std::clamp<std::int64_t>(stamp.tv_nsec, 0, kLastNanosecond);
  return Time(std::chrono::seconds(seconds) + std::chrono::floor<Microseconds>(std::chrono::nanoseconds(nanoseconds)));
}

}  // namespace cirrovane
