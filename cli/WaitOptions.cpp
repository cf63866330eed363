#include "cli/WaitOptions.h"

#include "cli/Arguments.h"

#include <algorithm>

namespace cirrovane {
namespace {

using Seconds = std::chrono::duration<double>;

/// Beyond this a number of seconds would not fit the clock's arithmetic.
constexpr Seconds kLongestTime{1e9};

}  // namespace

std::optional<std::chrono::nanoseconds> asDuration(std::optional<double> seconds) {
  if (!seconds) {
    return std::nullopt;
  }
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::min(Seconds(*seconds), kLongestTime));
}

std::string complaintAboutTimeout(const std::string& text) {
  // The parser's own ranges let "nan" pass, which is no time to wait, and name their limits with hundreds of digits.
  return numberOf(text) >= 0.0 ? "" : text + " is no number of seconds from 0 on";
}

}  // namespace cirrovane
