#pragma once

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

// The simplest ways to read what a tool printed, to compare the product's with: they look at bytes only, and take no
// care of time.

/// How many bytes at the start of a text are the one of `parts` that it starts with; 0 when it starts with none.
inline std::size_t lengthOfAny(std::string_view text, const std::vector<std::string_view>& parts) {
  for (const std::string_view part : parts) {
    if (text.starts_with(part)) {
      return part.size();
    }
  }
  return 0;
}

/// The pieces of a text between separators, empty ones left out.
inline std::vector<std::string> piecesBetween(std::string_view text, const std::vector<std::string_view>& separators) {
  std::vector<std::string> pieces(1);
  while (!text.empty()) {
    const std::size_t separator = lengthOfAny(text, separators);
    if (separator > 0) {
      pieces.emplace_back();
    } else {
      pieces.back() += text.front();
    }
    text.remove_prefix(separator > 0 ? separator : 1);
  }
  std::erase(pieces, "");
  return pieces;
}

inline std::vector<std::string> naiveLines(std::string_view text) {
  return piecesBetween(text, {"\n", "\v", "\f", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"});
}

/// White space within a line.
inline const std::vector<std::string_view> kBlanks = {" ",
                                                      "\t",
                                                      "\xC2\xA0",
                                                      "\xE1\x9A\x80",
                                                      "\xE2\x80\x80",
                                                      "\xE2\x80\x81",
                                                      "\xE2\x80\x82",
                                                      "\xE2\x80\x83",
                                                      "\xE2\x80\x84",
                                                      "\xE2\x80\x85",
                                                      "\xE2\x80\x86",
                                                      "\xE2\x80\x87",
                                                      "\xE2\x80\x88",
                                                      "\xE2\x80\x89",
                                                      "\xE2\x80\x8A",
                                                      "\xE2\x80\xAF",
                                                      "\xE2\x81\x9F",
                                                      "\xE3\x80\x80"};

/// The digits that a text starts with.
inline std::string naiveDigits(std::string_view text) {
  std::string digits;
  while (digits.size() < text.size() && text[digits.size()] >= '0' && text[digits.size()] <= '9') {
    digits += text[digits.size()];
  }
  return digits;
}

/// Digits at the start of a text and, after one of `separators`, those of a fraction.
inline std::string naiveNumber(std::string_view text, std::string_view separators) {
  std::string number = naiveDigits(text);
  if (number.empty() || number.size() == text.size() || separators.find(text[number.size()]) == separators.npos) {
    return number;
  }
  const std::string fraction = naiveDigits(text.substr(number.size() + 1));
  return fraction.empty() ? number : number + '.' + fraction;
}

/// What such a number is worth; absent beyond the largest.
inline std::optional<double> naiveValue(const std::string& number) {
  const double value = std::strtod(number.c_str(), nullptr);
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

/// Whether two readings are the same, but for what no reading is precise to.
inline bool areAlike(const std::optional<double>& lhs, const std::optional<double>& rhs) {
  return lhs.has_value() == rhs.has_value() && (!lhs || std::abs(*lhs - *rhs) < 1e-290);
}

/// A text with other bytes in place of each of one kind.
inline std::string replaced(std::string_view text, char byte, std::string_view by) {
  std::string changed;
  for (const char next : text) {
    next == byte ? changed.append(by) : changed.append(1, next);
  }
  return changed;
}

}  // namespace cirrovane
