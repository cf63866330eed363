#pragma once

#include <cstddef>
#include <string_view>

namespace cirrovane {

/// One step through bytes that should be UTF-8.
struct DecodedCharacter {
  /// The code point; meaningless when not valid.
  char32_t codePoint = 0;
  /// Bytes to step over, at least 1: a whole character, or the longest beginning of one that went wrong.
  std::size_t length = 1;
  bool isValid = false;
};

/// The character that starts at `position`, which lies inside the text. Overlong forms, surrogates and code points
/// beyond U+10FFFF are invalid.
DecodedCharacter decodeCharacter(std::string_view text, std::size_t position);

/// Whether the whole text is valid UTF-8.
bool isValidUTF8(std::string_view text);

}  // namespace cirrovane
