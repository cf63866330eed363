#include "base/UUID.h"
#include "tests/core/Builders.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr std::string_view kText = "01234567-89AB-CDEF-0F1E-2D3C4B5A6978";

TEST(UUID, canonicalText_comesBackUnchanged) {
  const auto id = UUID::fromText(kText);
  ASSERT_TRUE(id);
  EXPECT_EQ(id->text(), kText);
}

TEST(UUID, canonicalText_hasItsBytesInOrder) {
  const auto id = UUID::fromText(kText);
  ASSERT_TRUE(id);
  const std::array<std::uint8_t, 16> bytes = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                                              0x0F, 0x1E, 0x2D, 0x3C, 0x4B, 0x5A, 0x69, 0x78};
  EXPECT_EQ(id->bytes(), bytes);
}

TEST(UUID, lowerAndMixedCase_readAsTheSameAndWriteUpper) {
  for (const std::string_view text : {"01234567-89ab-cdef-0f1e-2d3c4b5a6978", "01234567-89Ab-cDEf-0f1E-2d3C4b5A6978"}) {
    const auto id = UUID::fromText(text);
    ASSERT_TRUE(id) << text;
    EXPECT_EQ(id->text(), kText);
  }
}

TEST(UUID, anyOtherText_isNone) {
  for (const std::string_view text :
       {std::string_view(""), std::string_view("x"), std::string_view("0123456789ABCDEF0F1E2D3C4B5A6978"),
        std::string_view("{01234567-89AB-CDEF-0F1E-2D3C4B5A6978}"),
        std::string_view("01234567-89AB-CDEF-0F1E-2D3C4B5A697"),
        std::string_view("01234567-89AB-CDEF-0F1E-2D3C4B5A69780"),
        std::string_view("0123456-789AB-CDEF-0F1E-2D3C4B5A6978"),
        std::string_view("01234567089AB-CDEF-0F1E-2D3C4B5A6978"),
        std::string_view("01234567-89AB-CDEF-0F1E-2D3C4B5A697G"),
        std::string_view("-1234567-89AB-CDEF-0F1E-2D3C4B5A6978"),
        std::string_view(" 1234567-89AB-CDEF-0F1E-2D3C4B5A6978"),
        std::string_view("01234567-89AB-CDEF-0F1E-2D3C4B5A6978 "),
        std::string_view("01234567-89AB-CDEF-0F1E-2D3C4B5A697\0", 36)}) {
    EXPECT_FALSE(UUID::fromText(text)) << text;
  }
}

TEST(UUID, eachDashReplacedByADigit_isNone) {
  for (const std::size_t position : {8U, 13U, 18U, 23U}) {
    std::string text(kText);
    text[position] = '0';
    EXPECT_FALSE(UUID::fromText(text)) << text;
  }
}

TEST(UUID, fresh_isNil) {
  EXPECT_EQ(UUID().text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, differentInAnyByte_isNotEqualAndHashesDifferently) {
  const UUID nil;
  for (std::size_t index = 0; index < 16; ++index) {
    std::array<std::uint8_t, 16> bytes{};
    bytes.at(index) = 1;
    EXPECT_NE(UUID(bytes), nil);
    EXPECT_LT(nil, UUID(bytes));
    EXPECT_NE(std::hash<UUID>{}(UUID(bytes)), std::hash<UUID>{}(nil));
  }
  EXPECT_EQ(std::hash<UUID>{}(idOf(3)), std::hash<UUID>{}(idOf(3)));
}

TEST(UUIDGenerator, manyCalls_neverRepeatAndAreVersion4) {
  UUIDGenerator makeID;
  std::unordered_set<UUID> seen;
  for (int count = 0; count < 10'000; ++count) {
    const UUID id = makeID();
    EXPECT_TRUE(seen.insert(id).second) << id.text();
    const std::string text = id.text();
    ASSERT_EQ(text[14], '4') << text;
    ASSERT_NE(std::string_view("89AB").find(text[19]), std::string_view::npos) << text;
  }
}

TEST(UUIDGenerator, everyOtherBit_isSometimesSetAndSometimesNot) {
  UUIDGenerator makeID;
  std::array<std::uint8_t, 16> everSet{};
  std::array<std::uint8_t, 16> everClear{};
  for (int count = 0; count < 200; ++count) {
    const UUID id = makeID();
    for (std::size_t index = 0; index < 16; ++index) {
      everSet.at(index) = static_cast<std::uint8_t>(everSet.at(index) | id.bytes().at(index));
      everClear.at(index) = static_cast<std::uint8_t>(everClear.at(index) | ~id.bytes().at(index));
    }
  }
  for (std::size_t index = 0; index < 16; ++index) {
    const int expectedSet = index == 6 ? 0x4F : index == 8 ? 0xBF : 0xFF;
    const int expectedClear = index == 6 ? 0xBF : index == 8 ? 0x7F : 0xFF;
    EXPECT_EQ(everSet.at(index), expectedSet) << index;
    EXPECT_EQ(everClear.at(index), expectedClear) << index;
  }
}

TEST(UUIDGenerator, twoGenerators_giveDifferentIdentifiers) {
  UUIDGenerator first;
  UUIDGenerator second;
  EXPECT_NE(first(), second());
}

}  // namespace
}  // namespace cirrovane::test
