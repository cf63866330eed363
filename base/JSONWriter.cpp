#include "base/JSONWriter.h"

#include "base/UTF8.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// Whether a byte of a string stands for itself in JSON and is no part of a longer character.
constexpr bool isPlain(char byte) {
  return static_cast<unsigned char>(byte) >= 0x20 && static_cast<unsigned char>(byte) < 0x80 && byte != '"' &&
         byte != '\\';
}

/// How many bytes from the beginning stand for themselves. Whole words first, since paths are long and plain.
std::size_t plainLength(std::string_view text) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kHighs = 0x80 * kOnes;
  // A high bit tells of a byte that is zero, or of one after such a byte.
  const auto zeros = [](std::uint64_t word) { return (word - kOnes) & ~word & kHighs; };
  std::size_t length = 0;
  for (; length + sizeof(std::uint64_t) <= text.size(); length += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + length, sizeof word);
    const std::uint64_t controls = (word - 0x20 * kOnes) & ~word & kHighs;
    if (((word & kHighs) | controls | zeros(word ^ '"' * kOnes) | zeros(word ^ '\\' * kOnes)) != 0) {
      break;
    }
  }
  while (length < text.size() && isPlain(text[length])) {
    ++length;
  }
  return length;
}

template <class Integer>
void appendDigits(std::string& out, Integer value) {
  std::array<char, std::numeric_limits<Integer>::digits10 + 2> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  out.append(digits.data(), end);
}

void appendEscaped(std::string& out, char byte) {
  switch (byte) {
    case '"':
      out += "\\\"";
      break;
    case '\\':
      out += "\\\\";
      break;
    case '\b':
      out += "\\b";
      break;
    case '\f':
      out += "\\f";
      break;
    case '\n':
      out += "\\n";
      break;
    case '\r':
      out += "\\r";
      break;
    case '\t':
      out += "\\t";
      break;
    default:
      fmt::format_to(std::back_inserter(out), "\\u{:04x}", static_cast<unsigned char>(byte));
  }
}

}  // namespace

void JSONWriter::key(std::string_view text) {
  separate();
  write(text);
  buffer_ += ": ";
}

void JSONWriter::write(std::int64_t value) {
  appendDigits(buffer_, value);
}

void JSONWriter::write(std::uint64_t value) {
  appendDigits(buffer_, value);
}

void JSONWriter::write(double value) {
  // JSON has no infinity and no NaN; a measurement that is neither a number is written as none.
  if (!std::isfinite(value)) {
    buffer_ += "null";
    return;
  }
  fmt::format_to(std::back_inserter(buffer_), "{}", value);
}

void JSONWriter::write(std::string_view text) {
  buffer_ += '"';
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t end = position + plainLength(text.substr(position));
    buffer_.append(text, position, end - position);
    if (end == text.size()) {
      break;
    }
    const DecodedCharacter character = decodeCharacter(text, end);
    if (!character.isValid) {
      buffer_ += "\xEF\xBF\xBD";
    } else if (character.length > 1) {
      buffer_.append(text, end, character.length);
    } else {
      appendEscaped(buffer_, text[end]);
    }
    position = end + character.length;
  }
  buffer_ += '"';
  if (buffer_.size() >= kFlushSize) {
    flush();
  }
}

bool JSONWriter::finish() {
  flush();
  return !hasFailed_;
}

void JSONWriter::open(char bracket) {
  buffer_ += bracket;
  ++depth_;
  isFirst_ = true;
}

void JSONWriter::close(char bracket) {
  --depth_;
  if (!isFirst_) {
    startLine();
  }
  buffer_ += bracket;
  isFirst_ = false;
}

void JSONWriter::separate() {
  if (!isFirst_) {
    buffer_ += layout_ == JSONLayout::pretty ? "," : ", ";
  }
  startLine();
  isFirst_ = false;
}

void JSONWriter::startLine() {
  if (layout_ == JSONLayout::line) {
    return;
  }
  buffer_ += '\n';
  buffer_.append(depth_ * 2, ' ');
}

void JSONWriter::writePlain(std::string_view text) {
  buffer_ += '"';
  buffer_ += text;
  buffer_ += '"';
}

void JSONWriter::flush() {
  if (!hasFailed_ && !buffer_.empty()) {
    hasFailed_ = !sink_(buffer_);
  }
  buffer_.clear();
}

}  // namespace cirrovane
