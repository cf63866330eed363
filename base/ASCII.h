#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace cirrovane {

// Letters and digits of ASCII, whatever the locale. All other bytes are neither.

constexpr bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

constexpr bool isLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

constexpr bool isHexadecimalDigit(char byte) {
  return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

constexpr char lowerCase(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

inline std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char byte) { return lowerCase(byte); });
  return lower;
}

constexpr bool equalIgnoringCase(std::string_view lhs, std::string_view rhs) {
  return std::ranges::equal(lhs, rhs, [](char one, char other) { return lowerCase(one) == lowerCase(other); });
}

}  // namespace cirrovane
