#include "platform/macos/plain/PackedEntry.h"
#include "tests/macos/EntryPacker.h"

#include <chrono>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

// Where in its bytes an entry with a name alone keeps what it says.
constexpr std::size_t kGroups = 4;
constexpr std::size_t kNameReference = 24;

std::optional<PackedEntry> firstOf(const std::string& bytes) {
  std::span<const char> rest(bytes);
  return takeEntry(rest);
}

template <class Value>
std::string with(std::string bytes, std::size_t position, Value value) {
  std::memcpy(bytes.data() + position, &value, sizeof value);
  return bytes;
}

TEST(TakeEntry, everythingTold_arrives) {
  const std::string bytes = packed({.name = "Brief.pages",
                                    .type = kFolderType,
                                    .error = 0,
                                    .flags = kHiddenFlag | 1,
                                    .modifiedSeconds = 1'700'000'000,
                                    .modifiedNanoseconds = 1'999});
  const auto entry = firstOf(bytes);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "Brief.pages");
  EXPECT_EQ(entry->kind, EntryKind::folder);
  EXPECT_TRUE(entry->isHidden);
  EXPECT_EQ(entry->modified, Time(std::chrono::seconds(1'700'000'000) + std::chrono::microseconds(1)));
}

TEST(TakeEntry, whatIsNotTold_isAbsent) {
  const std::string bytes = packed({.name = "a", .type = {}});
  const auto entry = firstOf(bytes);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->kind, std::nullopt);
  EXPECT_FALSE(entry->isHidden);
  EXPECT_EQ(entry->modified, std::nullopt);
}

TEST(TakeEntry, typesOfObjects_areToldApart) {
  for (std::uint32_t type = 0; type < 12; ++type) {
    const std::string bytes = packed({.name = "a", .type = type});
    const EntryKind expected = type == 1 ? EntryKind::regularFile : type == 2 ? EntryKind::folder : EntryKind::other;
    EXPECT_EQ(firstOf(bytes)->kind, expected) << type;
  }
}

TEST(TakeEntry, entryThatTheKernelCouldNotRead_hasANameAndNoKind) {
  const std::string bytes = packed({.name = "gone", .error = 2});
  const auto entry = firstOf(bytes);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "gone");
  EXPECT_EQ(entry->kind, std::nullopt);
}

TEST(TakeEntry, names_comeByteForByteWithANULBehind) {
  for (const std::string& name :
       {std::string("cafe\xCC\x81"), std::string("caf\xC3\xA9"), std::string("\xFF\n"), std::string(765, 'n')}) {
    const std::string bytes = packed({.name = name});
    const auto entry = firstOf(bytes);
    ASSERT_TRUE(entry) << name;
    EXPECT_EQ(entry->name, name);
    EXPECT_EQ(entry->name.data()[name.size()], '\0');
  }
}

TEST(TakeEntry, manyEntries_comeOneAfterAnother) {
  std::string bytes;
  std::vector<std::string> names;
  for (int number = 0; number < 300; ++number) {
    names.emplace_back(static_cast<std::size_t>(number % 29) + 1, static_cast<char>('a' + number % 26));
    pack({.name = names.back(), .flags = 0, .modifiedSeconds = number}, bytes);
  }
  std::span<const char> rest(bytes);
  for (const std::string& name : names) {
    const auto entry = takeEntry(rest);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, name);
  }
  EXPECT_TRUE(rest.empty());
  EXPECT_FALSE(takeEntry(rest));
}

TEST(TakeEntry, dateThatNoClockCouldShow_isTheNearest) {
  for (const std::int64_t seconds :
       {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
    const std::string bytes = packed(
        {.name = "a", .modifiedSeconds = seconds, .modifiedNanoseconds = std::numeric_limits<std::int64_t>::max()});
    const auto entry = firstOf(bytes);
    ASSERT_TRUE(entry && entry->modified);
    EXPECT_EQ(*entry->modified > Time(), seconds > 0);
  }
}

TEST(TakeEntry, bytesCutShortAnywhere_areNoEntry) {
  const std::string whole = packed({.name = "name", .error = 0, .flags = 0, .modifiedSeconds = 1});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(firstOf(whole.substr(0, length))) << length;
    // The same, told as the whole length.
    if (length >= sizeof(std::uint32_t)) {
      const auto told = with(whole.substr(0, length), 0, static_cast<std::uint32_t>(length));
      const auto entry = firstOf(told);
      EXPECT_TRUE(!entry || entry->name == "name") << length;
    }
  }
}

TEST(TakeEntry, lengthThatLies_isNoEntry) {
  const std::string whole = packed({.name = "name"});
  for (const std::uint32_t length :
       {std::uint32_t{0}, std::uint32_t{3}, std::uint32_t{23}, static_cast<std::uint32_t>(whole.size() + 1),
        std::numeric_limits<std::uint32_t>::max()}) {
    EXPECT_FALSE(firstOf(with(whole, 0, length))) << length;
  }
}

TEST(TakeEntry, nameThatLiesOutsideOrIsNone_isNoEntry) {
  const std::string whole = packed({.name = "name"});
  for (const std::int32_t offset :
       {-25, -1000, std::numeric_limits<std::int32_t>::min(), 1000, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_FALSE(firstOf(with(whole, kNameReference, offset))) << offset;
  }
  for (const std::uint32_t length : {std::uint32_t{0}, std::uint32_t{1}, std::uint32_t{4}, std::uint32_t{1000},
                                     std::numeric_limits<std::uint32_t>::max()}) {
    EXPECT_FALSE(firstOf(with(whole, kNameReference + 4, length))) << length;
  }
  EXPECT_FALSE(firstOf(packed({.name = ""})));
  EXPECT_FALSE(firstOf(packed({.name = "a/b"})));
}

TEST(TakeEntry, valueThatNobodyAskedFor_isNoEntry) {
  const std::string whole = packed({.name = "name"});
  constexpr std::uint32_t kOwner = 0x8000;
  EXPECT_FALSE(firstOf(with(whole, kGroups, kReturnedAttributes | kNameAttribute | kTypeAttribute | kOwner)));
  for (std::size_t group = 1; group < 5; ++group) {
    EXPECT_FALSE(firstOf(with(whole, kGroups + 4 * group, std::uint32_t{2}))) << group;
  }
}

TEST(TakeEntry, entryWithoutAName_isNoEntry) {
  EXPECT_FALSE(firstOf(with(packed({.name = "name"}), kGroups, kReturnedAttributes | kTypeAttribute)));
}

TEST(TakeEntry, badEntry_staysInFront) {
  const std::string bytes = packed({.name = "a/b"});
  std::span<const char> rest(bytes);
  EXPECT_FALSE(takeEntry(rest));
  EXPECT_EQ(rest.size(), bytes.size());
}

}  // namespace
}  // namespace cirrovane::test
