#include "demo/Text.h"

#include "base/ASCII.h"

#include <algorithm>
#include <array>
#include <system_error>

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

bool isPlainInShell(char letter) {
  constexpr std::string_view kPlainMarks = "/._-+=:,@%";
  return isLetter(letter) || isDigit(letter) || kPlainMarks.find(letter) != std::string_view::npos;
}

}  // namespace

bool isUTF8(std::string_view text) {
  // Writing JSON refuses every text that is not.
  try {
    return !nlohmann::json(text).dump().empty();
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

std::string printable(std::string_view text) {
  constexpr std::array<char, 16> kDigits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                            '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
  std::string result;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x20 || byte == 0x7f) {
      result += "\\x";
      result += kDigits[byte >> 4];
      result += kDigits[byte & 15];
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
