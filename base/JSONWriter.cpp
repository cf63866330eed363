#include "base/JSONWriter.h"

#include "base/UTF8.h"

#include <cmath>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// Whether a byte of a string stands for itself in JSON and is no part of a longer character.
constexpr bool isPlain(char byte) {
  return static_cast<unsigned char>(byte) >= 0x20 && static_cast<unsigned char>(byte) < 0x80 && byte != '"' &&
         byte != '\\';
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
  fmt::format_to(std::back_inserter(buffer_), "{}", value);
}

void JSONWriter::write(std::uint64_t value) {
  fmt::format_to(std::back_inserter(buffer_), "{}", value);
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
    std::size_t end = position;
    while (end < text.size() && isPlain(text[end])) {
      ++end;
    }
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
