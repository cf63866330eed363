#include "base/UTF8.h"

namespace cirrovane {

DecodedCharacter decodeCharacter(std::string_view text, std::size_t position) {
  const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char lead = byteAt(position);
  if (lead < 0x80) {
    return {lead, 1, true};
  }

  std::size_t continuationCount = 0;
  char32_t codePoint = 0;
  // The first continuation byte has a narrower range after some leads: that is what rules out overlong forms,
  // surrogates and code points that do not exist.
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    continuationCount = 1;
    codePoint = lead & 0x1FU;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    continuationCount = 2;
    codePoint = lead & 0x0FU;
    lowest = lead == 0xE0 ? 0xA0 : 0x80;
    highest = lead == 0xED ? 0x9F : 0xBF;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    continuationCount = 3;
    codePoint = lead & 0x07U;
    lowest = lead == 0xF0 ? 0x90 : 0x80;
    highest = lead == 0xF4 ? 0x8F : 0xBF;
  } else {
    return {};
  }

  for (std::size_t step = 1; step <= continuationCount; ++step) {
    if (position + step >= text.size() || byteAt(position + step) < lowest || byteAt(position + step) > highest) {
      return {0, step, false};
    }
    codePoint = (codePoint << 6U) | (byteAt(position + step) & 0x3FU);
    lowest = 0x80;
    highest = 0xBF;
  }
  return {codePoint, continuationCount + 1, true};
}

bool isValidUTF8(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const DecodedCharacter character = decodeCharacter(text, position);
    if (!character.isValid) {
      return false;
    }
    position += character.length;
  }
  return true;
}

}  // namespace cirrovane
