#include "base/JSONStream.h"

#include "base/ISO8601.h"
#include "base/JSONReader.h"
#include "base/UTF8.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <system_error>
#include <utility>

namespace cirrovane {
namespace {

constexpr std::size_t kMaximumNumber = 1024;

constexpr bool isSpace(int byte) {
  return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

constexpr bool isDigit(int byte) {
  return byte >= '0' && byte <= '9';
}

constexpr bool isPartOfNumber(int byte) {
  return isDigit(byte) || byte == '-' || byte == '+' || byte == '.' || byte == 'e' || byte == 'E';
}

/// How many digits a text begins with.
std::size_t digitCount(std::string_view text) {
  const auto end = std::ranges::find_if_not(text, [](char byte) { return isDigit(byte); });
  return static_cast<std::size_t>(end - text.begin());
}

/// Whether a text is a number as JSON has them.
bool isNumber(std::string_view text) {
  if (text.starts_with('-')) {
    text.remove_prefix(1);
  }
  const std::size_t whole = digitCount(text);
  if (whole == 0 || (whole > 1 && text.front() == '0')) {
    return false;
  }
  text.remove_prefix(whole);
  if (text.starts_with('.')) {
    const std::size_t fraction = digitCount(text.substr(1));
    if (fraction == 0) {
      return false;
    }
    text.remove_prefix(fraction + 1);
  }
  if (text.starts_with('e') || text.starts_with('E')) {
    text.remove_prefix(1);
    if (text.starts_with('-') || text.starts_with('+')) {
      text.remove_prefix(1);
    }
    const std::size_t exponent = digitCount(text);
    if (exponent == 0) {
      return false;
    }
    text.remove_prefix(exponent);
  }
  return text.empty();
}

template <class Integer>
bool readWhole(std::string_view text, Integer& target) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), target);
  return error == std::errc() && end == text.data() + text.size();
}

void appendUTF8(std::string& text, std::uint32_t codePoint) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (codePoint < 0x80) {
    append(codePoint);
    return;
  }
  if (codePoint < 0x800) {
    append(0xC0U | (codePoint >> 6U));
  } else {
    if (codePoint < 0x10000) {
      append(0xE0U | (codePoint >> 12U));
    } else {
      append(0xF0U | (codePoint >> 18U));
      append(0x80U | ((codePoint >> 12U) & 0x3FU));
    }
    append(0x80U | ((codePoint >> 6U) & 0x3FU));
  }
  append(0x80U | (codePoint & 0x3FU));
}

}  // namespace

bool JSONStream::fail(std::string_view what) {
  if (problem_.empty()) {
    problem_ = std::string(what) + " (byte " + std::to_string(before_ + position_ + 1) + ")";
  }
  return false;
}

bool JSONStream::fill() {
  if (!problem_.empty()) {
    return false;
  }
  before_ += end_;
  position_ = 0;
  end_ = 0;
  const Result<std::size_t> count = source_(buffer_);
  if (!count) {
    problem_ = count.message();
    return false;
  }
  end_ = *count;
  return end_ > 0;
}

int JSONStream::peek() {
  if (!problem_.empty() || (position_ == end_ && !fill())) {
    return -1;
  }
  return static_cast<unsigned char>(buffer_[position_]);
}

int JSONStream::peekSolid() {
  if (!hasBegun_) {
    hasBegun_ = true;
    // A mark of UTF-8, which some editors put before a text.
    if (peek() == 0xEF && end_ >= 3 && std::memcmp(buffer_.data(), "\xEF\xBB\xBF", 3) == 0) {
      position_ = 3;
    }
  }
  while (isSpace(peek())) {
    ++position_;
  }
  return peek();
}

bool JSONStream::enter(char opening) {
  if (peekSolid() != opening) {
    return fail(opening == '{' ? "no object" : "no list");
  }
  if (depth_ == kMaximumDepth) {
    return fail("nested too deep");
  }
  ++depth_;
  ++position_;
  return true;
}

bool JSONStream::goesOn(char closing, bool isFirst) {
  const int byte = peekSolid();
  if (byte == closing) {
    ++position_;
    --depth_;
    return false;
  }
  if (isFirst) {
    return problem_.empty();
  }
  if (byte != ',') {
    return fail("no comma");
  }
  ++position_;
  return true;
}

bool JSONStream::leave() {
  return problem_.empty();
}

bool JSONStream::isNullNext() {
  return peekSolid() == 'n';
}

bool JSONStream::readKey(std::string& key) {
  if (!readText(key)) {
    return false;
  }
  if (peekSolid() != ':') {
    return fail("no colon");
  }
  ++position_;
  return true;
}

bool JSONStream::readText(std::string& text) {
  text.clear();
  if (peekSolid() != '"') {
    return fail("no text");
  }
  ++position_;
  bool isASCII = true;
  while (peek() >= 0) {
    std::size_t stop = position_;
    for (; stop < end_; ++stop) {
      const auto byte = static_cast<unsigned char>(buffer_[stop]);
      if (byte < 0x20 || byte == '"' || byte == '\\') {
        break;
      }
      isASCII = isASCII && byte < 0x80;
    }
    if (text.size() + (stop - position_) > kMaximumText) {
      return fail("a text that is too long");
    }
    text.append(&buffer_[position_], stop - position_);
    position_ = stop;
    if (stop == end_) {
      continue;
    }
    if (buffer_[stop] == '"') {
      ++position_;
      return isASCII || isValidUTF8(text) || fail("no UTF-8");
    }
    if (buffer_[stop] != '\\') {
      return fail("a control byte in a text");
    }
    ++position_;
    if (!readEscape(text)) {
      return false;
    }
  }
  return fail("the text has no end");
}

bool JSONStream::readEscape(std::string& text) {
  constexpr std::string_view kSigns = "\"\\/bfnrt";
  constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
  const int sign = peek();
  if (sign < 0) {
    return fail("the text has no end");
  }
  ++position_;
  if (const std::size_t found = kSigns.find(static_cast<char>(sign)); found != std::string_view::npos) {
    text += kMeanings[found];
    return true;
  }
  if (sign != 'u') {
    return fail("no escape");
  }
  const std::optional<std::uint32_t> first = readHexadecimal();
  if (!first) {
    return fail("no escape");
  }
  if (*first < 0xD800 || *first > 0xDFFF) {
    appendUTF8(text, *first);
    return true;
  }
  // The first half of a pair, whose second must follow.
  if (*first > 0xDBFF || peek() != '\\') {
    return fail("half a character");
  }
  ++position_;
  if (peek() != 'u') {
    return fail("half a character");
  }
  ++position_;
  const std::optional<std::uint32_t> second = readHexadecimal();
  if (!second || *second < 0xDC00 || *second > 0xDFFF) {
    return fail("half a character");
  }
  appendUTF8(text, 0x10000U + ((*first - 0xD800U) << 10U) + (*second - 0xDC00U));
  return true;
}

std::optional<std::uint32_t> JSONStream::readHexadecimal() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::uint32_t value = 0;
  for (int count = 0; count < 4; ++count) {
    const int byte = peek();
    const bool isCapital = byte >= 'A' && byte <= 'F';
    const std::size_t digit =
        byte < 0 ? std::string_view::npos : kDigits.find(static_cast<char>(isCapital ? byte - 'A' + 'a' : byte));
    if (digit == std::string_view::npos) {
      return std::nullopt;
    }
    value = value * 16 + static_cast<std::uint32_t>(digit);
    ++position_;
  }
  return value;
}

bool JSONStream::readLiteral(std::string_view literal) {
  for (const char byte : literal) {
    if (peek() != byte) {
      return fail("no JSON");
    }
    ++position_;
  }
  return true;
}

bool JSONStream::readNumber() {
  scratch_.clear();
  peekSolid();
  for (int byte = peek(); isPartOfNumber(byte); byte = peek()) {
    if (scratch_.size() == kMaximumNumber) {
      return fail("a number that is too long");
    }
    scratch_ += static_cast<char>(byte);
    ++position_;
  }
  if (!isNumber(scratch_)) {
    return fail("no number");
  }
  // One that is beyond what a machine can hold is none to the library either.
  const bool isPlain = scratch_.find_first_of("eE") == std::string::npos && scratch_.size() < 300;
  return isPlain || decodeJSON<double>(scratch_).has_value() || fail("a number that is too large");
}

bool JSONStream::read(bool& target) {
  const int first = peekSolid();
  if (first != 't' && first != 'f') {
    return fail("neither true nor false");
  }
  target = first == 't';
  return readLiteral(target ? "true" : "false");
}

bool JSONStream::read(std::int64_t& target) {
  return readNumber() && (readWhole(scratch_, target) || fail("no whole number"));
}

bool JSONStream::read(std::uint64_t& target) {
  return readNumber() && (readWhole(scratch_, target) || fail("no whole number from 0 on"));
}

bool JSONStream::read(double& target) {
  if (!readNumber()) {
    return false;
  }
  const std::optional<double> value = decodeJSON<double>(scratch_);
  target = value.value_or(0);
  return value.has_value() || fail("no number");
}

bool JSONStream::read(std::string& target) {
  return readText(target);
}

bool JSONStream::read(UUID& target) {
  if (!readText(scratch_)) {
    return false;
  }
  const std::optional<UUID> id = UUID::fromText(scratch_);
  target = id.value_or(UUID());
  return id.has_value() || fail("no identifier");
}

bool JSONStream::read(Time& target) {
  if (!readText(scratch_)) {
    return false;
  }
  const std::optional<Time> time = timeFromISO8601(scratch_);
  target = time.value_or(Time());
  return time.has_value() || fail("no date");
}

bool JSONStream::skip() {
  switch (peekSolid()) {
    case '{':
      return readObject([this](std::string_view /*key*/) { return skip(); });
    case '[':
      return readArray([this] { return skip(); });
    case '"':
      return readText(scratch_);
    case 't':
      return readLiteral("true");
    case 'f':
      return readLiteral("false");
    case 'n':
      return readLiteral("null");
    default:
      return readNumber();
  }
}

bool JSONStream::end() {
  return peekSolid() < 0 ? problem_.empty() : fail("something after the end");
}

}  // namespace cirrovane
