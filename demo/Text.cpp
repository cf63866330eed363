#include "demo/Text.h"

#include "base/ASCII.h"
#include "base/DisplayText.h"

#include <algorithm>
#include <system_error>

namespace cirrovane::demo {
namespace {

bool isPlainInShell(char letter) {
  constexpr std::string_view kPlainMarks = "/._-+=:,@%";
  return isLetter(letter) || isDigit(letter) || kPlainMarks.find(letter) != std::string_view::npos;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x20 || byte == 0x7F) {
      appendEscaped(letter, result);
    } else {
      result += letter;
    }
  }
  return result;
}

std::string shellWord(std::string_view text) {
  if (!text.empty() && std::ranges::all_of(text, isPlainInShell)) {
    return std::string(text);
  }
  std::string result = "'";
  for (const char letter : text) {
    if (letter == '\'') {
      result += "'\\''";
    } else {
      result += letter;
    }
  }
  return result + "'";
}

std::string systemMessage(int error) {
  return std::generic_category().message(error);
}

}  // namespace cirrovane::demo
