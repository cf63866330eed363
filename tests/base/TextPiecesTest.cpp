#include "base/TextPieces.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kHuge = std::size_t{10} * 1024 * 1024;

const std::vector<std::string_view> kLineBreaks = {"\n"sv,   "\v"sv,       "\f"sv,           "\r"sv,
                                                   "\r\n"sv, "\xC2\x85"sv, "\xE2\x80\xA8"sv, "\xE2\x80\xA9"sv};

const std::vector<std::string_view> kSpaces = {
    " "sv,
    "\t"sv,
    "\xC2\xA0"sv,      // U+00A0, the first beyond ASCII
    "\xE1\x9A\x80"sv,  // U+1680
    "\xE2\x80\x80"sv,  // U+2000, the first of a row
    "\xE2\x80\x84"sv,
    "\xE2\x80\x8A"sv,  // U+200A, its last
    "\xE2\x80\xAF"sv,  // U+202F
    "\xE2\x81\x9F"sv,  // U+205F
    "\xE3\x80\x80"sv,  // U+3000
};

/// What looks like white space or a line break, and is neither.
const std::vector<std::string_view> kOthers = {
    "\0"sv,           "\b"sv, "\x0E"sv, "\x1F"sv,
    "\x85"sv,          // no character: U+0085 is two bytes
    "\xA0"sv,          // nor is this, the second byte of U+00A0
    "\xC2"sv,          // a character that was cut off
    "\xC2\x84"sv,      // U+0084
    "\xC2\x86"sv,      // U+0086
    "\xE2\x80"sv,      // cut off
    "\xE2\x80\x8B"sv,  // U+200B
    "\xE2\x80\xA7"sv,  // U+2027
    "\xE2\x80\xAA"sv,  // U+202A
    "\xE1\xA0\x8E"sv,  // U+180E
    "\xC0\x8A"sv,      // overlong
    "\xE0\x82\x85"sv,  // overlong
    "\xC0\xA0"sv,      // overlong
    "\xEF\xBB\xBF"sv,  // the byte order mark
};

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (const auto line = takeLine(text)) {
    lines.push_back(*line);
  }
  EXPECT_TRUE(text.empty()) << "nothing is left behind";
  return lines;
}

/// As many whole parts as fit into a size.
std::string repeated(std::string_view part, std::size_t size) {
  std::string text(part);
  while (text.size() < size) {
    text += text;
  }
  text.resize(size - size % part.size());
  return text;
}

TEST(TakeLine, eachLineBreak_endsALine) {
  for (const std::string_view lineBreak : kLineBreaks) {
    const std::string text = "one" + std::string(lineBreak) + "two";
    EXPECT_THAT(linesOf(text), ElementsAre("one", "two")) << testing::PrintToString(lineBreak);
  }
}

TEST(TakeLine, emptyLines_areLeftOut) {
  for (const std::string_view lineBreak : kLineBreaks) {
    const std::string gap = repeated(lineBreak, 5 * lineBreak.size());
    const std::string text = gap + "one" + gap + "two" + gap;
    EXPECT_THAT(linesOf(text), ElementsAre("one", "two")) << testing::PrintToString(lineBreak);
    EXPECT_THAT(linesOf(gap), IsEmpty()) << testing::PrintToString(lineBreak);
  }
  EXPECT_THAT(linesOf("one\r\n\r\n\n\v\f\xC2\x85\xE2\x80\xA8\xE2\x80\xA9two"), ElementsAre("one", "two"));
}

TEST(TakeLine, blankLine_isALine) {
  EXPECT_THAT(linesOf("one\n \n\t\ntwo"), ElementsAre("one", " ", "\t", "two"));
}

TEST(TakeLine, otherCharacter_endsNoLine) {
  for (const std::string_view other : kOthers) {
    const std::string text = "one" + std::string(other) + "two";
    EXPECT_THAT(linesOf(text), ElementsAre(text)) << testing::PrintToString(other);
  }
  for (const std::string_view space : kSpaces) {
    const std::string text = "one" + std::string(space) + "two";
    EXPECT_THAT(linesOf(text), ElementsAre(text)) << testing::PrintToString(space);
  }
}

TEST(TakeLine, lineBreakAfterACutOffCharacter_endsTheLine) {
  for (const std::string_view lineBreak : kLineBreaks) {
    for (const std::string_view start : {"\xC2"sv, "\xE2\x80"sv, "\xF0\x9F\x98"sv, "\xFF"sv}) {
      const std::string line = "one" + std::string(start);
      const std::string text = line + std::string(lineBreak) + "two";
      EXPECT_THAT(linesOf(text), ElementsAre(line, "two")) << testing::PrintToString(text);
    }
  }
}

TEST(TakeLine, emptyText_hasNoLine) {
  EXPECT_THAT(linesOf(""), IsEmpty());
  EXPECT_THAT(linesOf({}), IsEmpty());
}

TEST(TakeLine, textWithoutALineBreak_isOneLine) {
  EXPECT_THAT(linesOf("one"), ElementsAre("one"));
  EXPECT_THAT(linesOf("\0"sv), ElementsAre("\0"sv));
}

TEST(TakeLine, lines_lieInsideOfTheText) {
  const std::string text = "\none\ntwo\n";
  const auto lines = linesOf(text);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].data(), text.data() + 1);
  EXPECT_EQ(lines[1].data(), text.data() + 5);
}

TEST(TakeLine, hugeTexts_areReadInOnePass) {
  EXPECT_EQ(linesOf(repeated("\n", kHuge)).size(), 0U);
  EXPECT_EQ(linesOf(repeated("a", kHuge)).size(), 1U);
  EXPECT_EQ(linesOf(repeated("a\n", kHuge)).size(), kHuge / 2);
  EXPECT_EQ(linesOf(repeated("\xE2\x80", kHuge)).size(), 1U);
}

TEST(WithoutLeadingSpace, eachSpaceAndLineBreak_isTakenOff) {
  for (const auto& kinds : {kSpaces, kLineBreaks}) {
    for (const std::string_view space : kinds) {
      const std::string text = repeated(space, 7 * space.size()) + "one" + std::string(space);
      EXPECT_EQ(withoutLeadingSpace(text), "one" + std::string(space)) << testing::PrintToString(space);
      EXPECT_EQ(withoutLeadingSpace(space), "") << testing::PrintToString(space);
    }
  }
}

TEST(WithoutLeadingSpace, otherCharacter_stays) {
  for (const std::string_view other : kOthers) {
    EXPECT_EQ(withoutLeadingSpace(other), other) << testing::PrintToString(other);
    EXPECT_EQ(withoutLeadingSpace(" " + std::string(other)), other) << testing::PrintToString(other);
  }
  EXPECT_EQ(withoutLeadingSpace(""), "");
  EXPECT_EQ(withoutLeadingSpace("one two"), "one two");
}

TEST(WithoutLeadingSpace, hugeBlank_isReadInOnePass) {
  EXPECT_EQ(withoutLeadingSpace(repeated(" ", kHuge)), "");
  EXPECT_EQ(withoutLeadingSpace(repeated("\xE3\x80\x80", kHuge)), "");
}

TEST(LastPiece, eachSpaceAndLineBreak_separates) {
  for (const auto& kinds : {kSpaces, kLineBreaks}) {
    for (const std::string_view space : kinds) {
      const std::string gap(space);
      EXPECT_EQ(lastPiece("one" + gap + "two"), "two") << testing::PrintToString(space);
      EXPECT_EQ(lastPiece(gap + "one" + gap + gap + "two" + gap + gap), "two") << testing::PrintToString(space);
      EXPECT_EQ(lastPiece(gap + gap), "") << testing::PrintToString(space);
    }
  }
}

TEST(LastPiece, otherCharacter_belongsToThePiece) {
  for (const std::string_view other : kOthers) {
    const std::string piece = "one" + std::string(other) + "two";
    EXPECT_EQ(lastPiece("zero " + piece), piece) << testing::PrintToString(other);
  }
}

TEST(LastPiece, textWithoutSpace_isThePiece) {
  EXPECT_EQ(lastPiece("one"), "one");
  EXPECT_EQ(lastPiece(""), "");
}

TEST(LastPiece, hugeTexts_areReadInOnePass) {
  EXPECT_EQ(lastPiece(repeated(" ", kHuge)), "");
  EXPECT_EQ(lastPiece(repeated("a", kHuge)).size(), kHuge);
  EXPECT_EQ(lastPiece(repeated("a ", kHuge)), "a");
}

}  // namespace
}  // namespace cirrovane
