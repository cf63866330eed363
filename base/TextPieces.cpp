#include "base/TextPieces.h"

#include "base/UTF8.h"

#include <cstddef>

namespace cirrovane {
namespace {

bool isLineBreak(char32_t character) {
  return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 || character == 0x2029;
}

bool isSpace(char32_t character) {
  return isLineBreak(character) || character == ' ' || character == '\t' || character == 0xA0 || character == 0x1680 ||
         (character >= 0x2000 && character <= 0x200A) || character == 0x202F || character == 0x205F ||
         character == 0x3000;
}

/// Where the first character that is, or is not, one of a kind begins; the text's end when there is none.
std::size_t find(std::string_view text, bool (*isOfKind)(char32_t), bool wanted) {
  std::size_t position = 0;
  while (position < text.size()) {
    const DecodedCharacter character = decodeCharacter(text, position);
    if ((character.isValid && isOfKind(character.codePoint)) == wanted) {
      break;
    }
    position += character.length;
  }
  return position;
}

}  // namespace

std::optional<std::string_view> takeLine(std::string_view& rest) {
  rest.remove_prefix(find(rest, isLineBreak, false));
  if (rest.empty()) {
    return std::nullopt;
  }
  const std::string_view line = rest.substr(0, find(rest, isLineBreak, true));
  rest.remove_prefix(line.size());
  return line;
}

std::string_view withoutLeadingSpace(std::string_view text) {
  return text.substr(find(text, isSpace, false));
}

std::string_view lastPiece(std::string_view text) {
  std::string_view last;
  while (!(text = withoutLeadingSpace(text)).empty()) {
    last = text.substr(0, find(text, isSpace, true));
    text.remove_prefix(last.size());
  }
  return last;
}

}  // namespace cirrovane
