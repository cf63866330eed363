#include "base/DisplayText.h"
#include "base/UTF8.h"

#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(DisplayText, harmlessText_staysAsItIs) {
  for (const std::string& text :
       {std::string(), std::string("Invoice 2026 (final).pdf"), std::string("\xC3\x84rger \xE2\x82\xAC"),
        std::string("\xF0\x9F\x93\x81 \xE6\x96\x87\xE6\x9B\xB8"), std::string("a\\b \"c\" 'd'"),
        std::string("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"), std::string("~ !\xC2\xA0")}) {
    EXPECT_EQ(displayText(text), text);
  }
}

TEST(DisplayText, lineBreakAndTab_areWrittenOut) {
  EXPECT_EQ(displayText("a\nb\tc"), "a\\nb\\tc");
}

TEST(DisplayText, everyOtherControlByte_isWrittenAsHexadecimal) {
  EXPECT_EQ(displayText("\x1b[31mred"), "\\x1b[31mred");
  EXPECT_EQ(displayText(std::string("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(displayText("a\rb\x07"), "a\\x0db\\x07");
  EXPECT_EQ(displayText("\x7f"), "\\x7f");
  EXPECT_EQ(displayText("\x1f "), "\\x1f ");
}

TEST(DisplayText, controlCharactersOfTwoBytes_areWrittenByteByByte) {
  EXPECT_EQ(displayText("\xC2\x80"), "\\xc2\\x80");
  EXPECT_EQ(displayText("\xC2\x9B"
                        "31m"),
            "\\xc2\\x9b31m");
  EXPECT_EQ(displayText("\xC2\x9F\xC2\xA1"), "\\xc2\\x9f\xC2\xA1");
}

TEST(DisplayText, bidirectionalAndLineControls_areWrittenAsCodePoints) {
  EXPECT_EQ(displayText("cod\xE2\x80\xAE"
                        "fdp.exe"),
            "cod\\u{202e}fdp.exe");
  EXPECT_EQ(displayText("\xE2\x80\xAA\xE2\x80\xAB\xE2\x80\xAC\xE2\x80\xAD"), "\\u{202a}\\u{202b}\\u{202c}\\u{202d}");
  EXPECT_EQ(displayText("\xE2\x81\xA6\xE2\x81\xA7\xE2\x81\xA8\xE2\x81\xA9"), "\\u{2066}\\u{2067}\\u{2068}\\u{2069}");
  EXPECT_EQ(displayText("\xE2\x80\x8E\xE2\x80\x8F\xD8\x9C"), "\\u{200e}\\u{200f}\\u{61c}");
  EXPECT_EQ(displayText("\xE2\x80\xA8\xE2\x80\xA9"), "\\u{2028}\\u{2029}");
}

TEST(DisplayText, invalidUTF8_isWrittenAsHexadecimal) {
  EXPECT_EQ(displayText("a\xFFz"), "a\\xffz");
  EXPECT_EQ(displayText("\x80"), "\\x80");
  EXPECT_EQ(displayText("\xC0\xAF"), "\\xc0\\xaf") << "an overlong slash is no slash";
  EXPECT_EQ(displayText("\xED\xA0\x80"), "\\xed\\xa0\\x80") << "a surrogate is no character";
  EXPECT_EQ(displayText("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond the last code point";
  EXPECT_EQ(displayText("\xE2\x82"), "\\xe2\\x82") << "a character cut off";
  EXPECT_EQ(displayText("\xE2\x82z"), "\\xe2\\x82z");
}

TEST(DisplayText, everyTwoBytes_giveValidTextWithoutControls) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string text = {static_cast<char>(first), static_cast<char>(second)};
      const std::string shown = displayText(text);
      ASSERT_TRUE(isValidUTF8(shown)) << first << " " << second;
      for (std::size_t index = 0; index < shown.size(); ++index) {
        const auto byte = static_cast<unsigned char>(shown[index]);
        ASSERT_GE(byte, 0x20U) << first << " " << second;
        ASSERT_NE(byte, 0x7FU) << first << " " << second;
      }
    }
  }
}

}  // namespace
}  // namespace cirrovane::test
