#include "base/ASCII.h"

#include <cctype>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

TEST(ASCII, everyByte_isOfItsKindAlone) {
  for (int value = -128; value < 128; ++value) {
    const char byte = static_cast<char>(value);
    const bool isUpper = value >= 'A' && value <= 'Z';
    const bool isLower = value >= 'a' && value <= 'z';
    EXPECT_EQ(isLetter(byte), isUpper || isLower) << value;
    EXPECT_EQ(isDigit(byte), value >= '0' && value <= '9') << value;
    EXPECT_EQ(isHexadecimalDigit(byte), value >= 0 && value < 128 && std::isxdigit(value) != 0) << value;
    EXPECT_EQ(lowerCase(byte), isUpper ? static_cast<char>(value + 32) : byte) << value;
  }
}

TEST(ASCII, lowerCase_leavesOtherLettersAlone) {
  EXPECT_EQ(lowerCase(std::string_view("ÄB-Z[`@9")), "Äb-z[`@9");
}

TEST(ASCII, equalIgnoringCase_isOfTheWholeText) {
  EXPECT_TRUE(equalIgnoringCase("iCloud", "ICLOUD"));
  EXPECT_FALSE(equalIgnoringCase("iCloud", "iCloud "));
  EXPECT_FALSE(equalIgnoringCase("[", "{"));
}

}  // namespace
}  // namespace cirrovane
