#include "base/DisplayText.h"

#include "base/UTF8.h"

#include <cstddef>
#include <iterator>

#include <fmt/format.h>

namespace cirrovane {
namespace {

bool isControl(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F);
}

/// Characters that change the order or the line in which the text around them is shown.
bool isLayoutControl(char32_t codePoint) {
  return codePoint == 0x061C || codePoint == 0x200E || codePoint == 0x200F || codePoint == 0x2028 ||
         codePoint == 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

}  // namespace

void appendEscaped(char byte, std::string& out) {
  fmt::format_to(std::back_inserter(out), "\\x{:02x}", static_cast<unsigned char>(byte));
}

std::string displayText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const DecodedCharacter character = decodeCharacter(text, position);
    const std::string_view bytes = text.substr(position, character.length);
    if (character.isValid && character.codePoint == '\n') {
      out += "\\n";
    } else if (character.isValid && character.codePoint == '\t') {
      out += "\\t";
    } else if (!character.isValid || isControl(character.codePoint)) {
      for (const char byte : bytes) {
        appendEscaped(byte, out);
      }
    } else if (isLayoutControl(character.codePoint)) {
      fmt::format_to(std::back_inserter(out), "\\u{{{:x}}}", static_cast<std::uint32_t>(character.codePoint));
    } else {
      out += bytes;
    }
    position += character.length;
  }
  return out;
}

std::string displayOutput(std::string_view text) {
  return displayText(text.substr(0, text.find_last_not_of(" \t\r\n") + 1));
}

}  // namespace cirrovane
