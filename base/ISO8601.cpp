#include "base/ISO8601.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace cirrovane {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr sys_seconds kEarliest = sys_days(std::chrono::year(0) / 1 / 1);
constexpr sys_seconds kLatest = sys_days(std::chrono::year(10000) / 1 / 1) - seconds(1);

/// Takes fixed pieces off the front of a text.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool isAtEnd() const { return rest_.empty(); }

  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) {
      return false;
    }
    rest_.remove_prefix(1);
    return true;
  }

  std::optional<int> takeNumber(std::size_t digitCount) {
    if (rest_.size() < digitCount) {
      return std::nullopt;
    }
    int number = 0;
    for (const char digit : rest_.substr(0, digitCount)) {
      if (digit < '0' || digit > '9') {
        return std::nullopt;
      }
      number = number * 10 + (digit - '0');
    }
    rest_.remove_prefix(digitCount);
    return number;
  }

  std::size_t skipDigits() {
    const std::size_t count = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    rest_.remove_prefix(count);
    return count;
  }

 private:
  std::string_view rest_;
};

std::optional<sys_days> takeDate(Reader& reader) {
  const auto year = reader.takeNumber(4);
  if (!year || !reader.take('-')) {
    return std::nullopt;
  }
  const auto month = reader.takeNumber(2);
  if (!month || !reader.take('-')) {
    return std::nullopt;
  }
  const auto day = reader.takeNumber(2);
  if (!day) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date(std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok()) {
    return std::nullopt;
  }
  return sys_days(date);
}

std::optional<seconds> takeTimeOfDay(Reader& reader) {
  const auto hour = reader.takeNumber(2);
  if (!hour || *hour > 23 || !reader.take(':')) {
    return std::nullopt;
  }
  const auto minute = reader.takeNumber(2);
  if (!minute || *minute > 59 || !reader.take(':')) {
    return std::nullopt;
  }
  const auto second = reader.takeNumber(2);
  if (!second || *second > 59) {
    return std::nullopt;
  }
  if (reader.take('.') && reader.skipDigits() == 0) {
    return std::nullopt;
  }
  return hours(*hour) + minutes(*minute) + seconds(*second);
}

std::optional<seconds> takeZoneOffset(Reader& reader) {
  if (reader.take('Z')) {
    return seconds(0);
  }
  const bool isEast = reader.take('+');
  if (!isEast && !reader.take('-')) {
    return std::nullopt;
  }
  const auto hour = reader.takeNumber(2);
  if (!hour || *hour > 23) {
    return std::nullopt;
  }
  int minute = 0;
  if (!reader.isAtEnd()) {
    reader.take(':');
    const auto number = reader.takeNumber(2);
    if (!number || *number > 59) {
      return std::nullopt;
    }
    minute = *number;
  }
  const seconds offset = hours(*hour) + minutes(minute);
  return isEast ? offset : -offset;
}

/// Writes the last `count` digits of a number at a place in the text.
void putDigits(std::string& text, std::size_t place, std::size_t count, std::int64_t number) {
  for (std::size_t digit = place + count; digit-- > place; number /= 10) {
    text[digit] = static_cast<char>('0' + number % 10);
  }
}

}  // namespace

std::string iso8601Text(Time time) {
  const sys_seconds whole = std::clamp(std::chrono::floor<seconds>(time), kEarliest, kLatest);
  const sys_days day = std::chrono::floor<days>(whole);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(whole - day);
  std::string text = "0000-00-00T00:00:00Z";
  putDigits(text, 0, 4, static_cast<int>(date.year()));
  putDigits(text, 5, 2, static_cast<unsigned>(date.month()));
  putDigits(text, 8, 2, static_cast<unsigned>(date.day()));
  putDigits(text, 11, 2, clock.hours().count());
  putDigits(text, 14, 2, clock.minutes().count());
  putDigits(text, 17, 2, clock.seconds().count());
  return text;
}

std::optional<Time> timeFromISO8601(std::string_view text) {
  Reader reader(text);
  const auto date = takeDate(reader);
  if (!date || !reader.take('T')) {
    return std::nullopt;
  }
  const auto timeOfDay = takeTimeOfDay(reader);
  if (!timeOfDay) {
    return std::nullopt;
  }
  const auto offset = takeZoneOffset(reader);
  if (!offset || !reader.isAtEnd()) {
    return std::nullopt;
  }
  return Time(*date + *timeOfDay - *offset);
}

}  // namespace cirrovane
