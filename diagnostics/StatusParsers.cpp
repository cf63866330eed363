#include "diagnostics/StatusParsers.h"

#include "base/ASCII.h"
#include "base/TextPieces.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace cirrovane {
namespace {

using namespace std::string_view_literals;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::size_t digitsAtStart(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
}

std::size_t digitsAtEnd(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && isDigit(text[text.size() - 1 - count])) {
    ++count;
  }
  return count;
}

bool isOneOf(char byte, std::string_view bytes) {
  return bytes.find(byte) != std::string_view::npos;
}

/// The decimal number that a text begins with: digits and, where digits follow it, a separator and a fraction.
std::string_view numberAtStart(std::string_view text, std::string_view separators) {
  const std::size_t whole = digitsAtStart(text);
  if (whole == 0 || whole == text.size() || !isOneOf(text[whole], separators)) {
    return text.substr(0, whole);
  }
  const std::size_t fraction = digitsAtStart(text.substr(whole + 1));
  return text.substr(0, fraction == 0 ? whole : whole + 1 + fraction);
}

/// The decimal number that a text ends with, as long as one can be; empty when it ends with no digit.
std::string_view numberAtEnd(std::string_view text) {
  const std::size_t last = digitsAtEnd(text);
  if (last == 0 || last == text.size() || text[text.size() - last - 1] != '.') {
    return text.substr(text.size() - last);
  }
  const std::size_t whole = digitsAtEnd(text.substr(0, text.size() - last - 1));
  return text.substr(text.size() - (whole == 0 ? last : whole + 1 + last));
}

/// The value of such a number, whatever decimal separator the user's locale has; absent when it is beyond all numbers.
std::optional<double> valueOf(std::string_view number) {
  // No percentage or temperature needs more of a fraction, and libraries disagree on what is too small for a double.
  constexpr std::size_t kFractionDigits = 300;
  std::string digits(number.substr(0, digitsAtStart(number) + 1 + kFractionDigits));
  std::ranges::replace(digits, ',', '.');
  std::istringstream reader(digits);
  reader.imbue(std::locale::classic());
  double value = 0;
  if (!(reader >> value) || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::optional<std::uint64_t> integerOf(std::string_view digits) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) {
    return std::nullopt;
  }
  return value;
}

/// The number of pages on a label's line of vm_stat, which ends each count with a full stop.
std::uint64_t pageCount(std::string_view text, std::string_view label) {
  std::string line(firstLineContaining(text, label).value_or(""));
  std::erase(line, '.');
  return integerOf(lastPiece(line)).value_or(0);
}

bool isLetterOrDigit(char byte) {
  return isDigit(byte) || isLetter(byte);
}

bool isFollowedByDegrees(std::string_view rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
  // A C that begins a word ("2 CPU") is no unit.
  return rest.starts_with("°"sv) || rest == "C" || (rest.starts_with('C') && !isLetterOrDigit(rest[1]));
}

/// A temperature as it was found in a text.
struct FoundNumber {
  std::string_view digits;
  bool isNegative = false;
};

std::optional<FoundNumber> temperatureNumber(std::string_view text) {
  std::optional<FoundNumber> first;
  std::size_t position = 0;
  while ((position = text.find_first_of("0123456789", position)) != std::string_view::npos) {
    const std::string_view digits = numberAtStart(text.substr(position), ".,");
    const FoundNumber found{digits, position > 0 && text[position - 1] == '-'};
    position += digits.size();
    if (isFollowedByDegrees(text.substr(position))) {
      return found;
    }
    first = first ? first : found;
  }
  return first;
}

}  // namespace

std::optional<std::string_view> firstLineContaining(std::string_view text, std::string_view part) {
  auto line = takeLine(text);
  while (line && line->find(part) == std::string_view::npos) {
    line = takeLine(text);
  }
  return line;
}

std::optional<double> cpuUsageFromTop(std::string_view text) {
  constexpr std::string_view kAfterUser = "% user,";
  const std::string_view line = firstLineContaining(text, "CPU usage").value_or("");
  for (std::size_t position = line.find(kAfterUser); position != std::string_view::npos;
       position = line.find(kAfterUser, position + 1)) {
    const std::string_view user = numberAtEnd(line.substr(0, position));
    const std::string_view rest = withoutLeadingSpace(line.substr(position + kAfterUser.size()));
    const std::string_view system = numberAtStart(rest, ".");
    if (user.empty() || system.empty() || !rest.substr(system.size()).starts_with("% sys")) {
      continue;
    }
    const std::optional<double> userPercent = valueOf(user);
    const std::optional<double> systemPercent = valueOf(system);
    const double percent = userPercent.value_or(kNoNumber) + systemPercent.value_or(kNoNumber);
    return std::isfinite(percent) ? std::optional(percent) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<double> temperatureFromSensor(std::string_view text) {
  const std::optional<FoundNumber> number = temperatureNumber(text);
  if (!number) {
    return std::nullopt;
  }
  const std::optional<double> degrees = valueOf(number->digits);
  if (!degrees) {
    return std::nullopt;
  }
  return number->isNegative ? -*degrees : *degrees;
}

std::optional<std::uint64_t> memoryUsedFromVMStat(std::string_view text) {
  constexpr std::array<std::string_view, 3> kUsedPages = {"Pages active", "Pages wired down",
                                                          "Pages occupied by compressor"};
  std::string_view rest = text;
  const std::string_view header = takeLine(rest).value_or("");
  const std::size_t start = std::min(header.find_first_of("0123456789"), header.size());
  const std::optional<std::uint64_t> pageSize = integerOf(numberAtStart(header.substr(start), ""));
  if (!pageSize) {
    return std::nullopt;
  }
  std::uint64_t used = 0;
  for (const std::string_view label : kUsedPages) {
    std::uint64_t bytes = 0;
    if (__builtin_mul_overflow(pageCount(text, label), *pageSize, &bytes) ||
        __builtin_add_overflow(used, bytes, &used)) {
      return std::nullopt;
    }
  }
  return used;
}

}  // namespace cirrovane
