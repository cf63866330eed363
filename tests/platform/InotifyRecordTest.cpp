#include "platform/linux/watch/InotifyRecord.h"

#include <string>
#include <string_view>
#include <sys/inotify.h>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

std::string recordOf(int watch, std::uint32_t mask, const std::string& field) {
  const inotify_event header{watch, mask, 0, static_cast<std::uint32_t>(field.size())};
  return std::string(reinterpret_cast<const char*>(&header), sizeof header) + field;
}

TEST(InotifyRecord, records_areTakenOneAfterTheOther) {
  const std::string bytes = recordOf(3, IN_CREATE, std::string("name\0\0\0\0", 8)) + recordOf(4, IN_DELETE_SELF, "");
  std::string_view rest = bytes;
  const auto first = takeInotifyRecord(rest);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->watch, 3);
  EXPECT_EQ(first->mask, IN_CREATE);
  EXPECT_EQ(first->name, "name");
  const auto second = takeInotifyRecord(rest);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->watch, 4);
  EXPECT_TRUE(second->name.empty());
  EXPECT_FALSE(takeInotifyRecord(rest));
  EXPECT_TRUE(rest.empty());
}

TEST(InotifyRecord, nameWithoutAnEnd_endsWithItsField) {
  const std::string bytes = recordOf(1, IN_CREATE, "full");
  std::string_view rest = bytes;
  EXPECT_EQ(takeInotifyRecord(rest)->name, "full");
}

TEST(InotifyRecord, brokenOffRecord_isNotTakenWhereverItBreaks) {
  const std::string bytes = recordOf(1, IN_CREATE, std::string("name\0\0\0\0", 8));
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    std::string_view rest = std::string_view(bytes).substr(0, length);
    EXPECT_FALSE(takeInotifyRecord(rest)) << length;
    EXPECT_EQ(rest.size(), length);
  }
}

TEST(InotifyRecord, nameLongerThanAllBytes_isNotTaken) {
  inotify_event header{1, IN_CREATE, 0, 0xFFFFFFFF};
  std::string_view rest(reinterpret_cast<const char*>(&header), sizeof header);
  EXPECT_FALSE(takeInotifyRecord(rest));
}

}  // namespace
}  // namespace cirrovane::test
