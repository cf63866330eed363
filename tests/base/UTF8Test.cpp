#include "base/UTF8.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using namespace std::string_view_literals;

/// The bytes of a code point, by arithmetic alone: also for numbers that UTF-8 forbids.
std::string encoded(std::uint32_t codePoint, std::size_t length) {
  if (length == 1) {
    return {static_cast<char>(codePoint)};
  }
  std::string bytes(length, '\0');
  for (std::size_t index = length - 1; index > 0; --index) {
    bytes[index] = static_cast<char>(0x80U | (codePoint & 0x3FU));
    codePoint >>= 6U;
  }
  constexpr std::array<std::uint32_t, 5> kLeads = {0, 0, 0xC0, 0xE0, 0xF0};
  bytes[0] = static_cast<char>(kLeads.at(length) | codePoint);
  return bytes;
}

std::size_t shortestLength(std::uint32_t codePoint) {
  if (codePoint < 0x80) {
    return 1;
  }
  if (codePoint < 0x800) {
    return 2;
  }
  return codePoint < 0x10000 ? 3 : 4;
}

TEST(UTF8, everyCodePoint_inItsShortestForm_isValidUnlessASurrogate) {
  for (std::uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    const std::string bytes = encoded(codePoint, shortestLength(codePoint));
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    const DecodedCharacter character = decodeCharacter(bytes, 0);
    ASSERT_EQ(character.isValid, !isSurrogate) << codePoint;
    ASSERT_EQ(isValidUTF8(bytes), !isSurrogate) << codePoint;
    if (!isSurrogate) {
      ASSERT_EQ(character.codePoint, char32_t{codePoint});
      ASSERT_EQ(character.length, bytes.size());
    }
  }
}

TEST(UTF8, everyCodePoint_inALongerForm_isInvalid) {
  for (std::uint32_t codePoint = 0; codePoint < 0x10000; ++codePoint) {
    for (std::size_t length = shortestLength(codePoint) + 1; length <= 4; ++length) {
      ASSERT_FALSE(isValidUTF8(encoded(codePoint, length))) << codePoint << " in " << length << " bytes";
    }
  }
}

TEST(UTF8, codePoint_beyondTheLast_isInvalid) {
  for (const std::uint32_t codePoint : {0x110000U, 0x13FFFFU, 0x140000U, 0x1FFFFFU}) {
    EXPECT_FALSE(isValidUTF8(encoded(codePoint, 4))) << codePoint;
  }
}

TEST(UTF8, byte_thatNeverOccurs_isInvalidAlone) {
  for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    const DecodedCharacter character = decodeCharacter(text, 0);
    EXPECT_FALSE(character.isValid) << byte;
    EXPECT_EQ(character.length, 1U) << byte;
  }
}

TEST(UTF8, everyBeginningOfACharacter_atTheEndOfTheText_isOneInvalidStep) {
  for (const std::string_view whole : {"\xC3\xA9"sv, "\xE2\x82\xAC"sv, "\xF0\x9F\x98\x80"sv}) {
    for (std::size_t length = 1; length < whole.size(); ++length) {
      const DecodedCharacter character = decodeCharacter(whole.substr(0, length), 0);
      EXPECT_FALSE(character.isValid);
      EXPECT_EQ(character.length, length);
    }
  }
}

TEST(UTF8, brokenCharacter_beforeAnotherCharacter_doesNotSwallowIt) {
  const std::string_view text = "\xE2\x82x\xF0\x9F\xC3\xA9"sv;
  const DecodedCharacter broken = decodeCharacter(text, 0);
  EXPECT_FALSE(broken.isValid);
  EXPECT_EQ(broken.length, 2U);
  EXPECT_EQ(decodeCharacter(text, 2).codePoint, U'x');
  const DecodedCharacter second = decodeCharacter(text, 3);
  EXPECT_FALSE(second.isValid);
  EXPECT_EQ(second.length, 2U);
  EXPECT_EQ(decodeCharacter(text, 5).codePoint, U'\u00E9');
}

TEST(UTF8, leadByte_beforeAContinuationOutOfItsRange_isSteppedOverAlone) {
  for (const std::string_view text : {"\xE0\x80\x80"sv, "\xED\xA0\x80"sv, "\xF0\x80\x80\x80"sv, "\xF4\x90\x80\x80"sv}) {
    const DecodedCharacter character = decodeCharacter(text, 0);
    EXPECT_FALSE(character.isValid);
    EXPECT_EQ(character.length, 1U);
  }
}

TEST(UTF8, text_emptyOrWithNULs_isValid) {
  EXPECT_TRUE(isValidUTF8(""));
  EXPECT_TRUE(isValidUTF8("\0a\0"sv));
}

TEST(UTF8, text_withOneBadByteAnywhere_isInvalid) {
  const std::string good = "na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80 end";
  ASSERT_TRUE(isValidUTF8(good));
  for (std::size_t position = 0; position < good.size(); ++position) {
    std::string bad = good;
    bad[position] = '\xFF';
    EXPECT_FALSE(isValidUTF8(bad)) << position;
  }
}

}  // namespace
}  // namespace cirrovane
