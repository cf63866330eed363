#include "platform/linux/walk/ICloudAttribute.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// What the walk tells of the items in a folder whose states the test has set.
class WalkMetadata : public testing::TestWithParam<WalkKind> {
 protected:
  void makeItem(const std::string& name, const std::string& attribute) const {
    writeFile(folder_ / name);
    setICloudAttribute(folder_ / name, attribute);
  }
  std::vector<WalkedItem> walk() const { return walked(GetParam(), folder_.path()); }
  void setDate(const std::string& name, std::int64_t seconds, long nanoseconds) const {
    const std::array<timespec, 2> times = {timespec{seconds, nanoseconds}, timespec{seconds, nanoseconds}};
    ASSERT_EQ(utimensat(AT_FDCWD, (folder_ / name).c_str(), times.data(), 0), 0);
    struct stat status {};
    ASSERT_EQ(stat((folder_ / name).c_str(), &status), 0);
    ASSERT_EQ(status.st_mtim.tv_sec, seconds) << "the file system cannot hold the date";
    ASSERT_EQ(status.st_mtim.tv_nsec, nanoseconds) << "the file system cannot hold the date";
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

INSTANTIATE_TEST_SUITE_P(All, WalkMetadata, testing::ValuesIn(allWalkKinds()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WalkMetadata, item_withoutAttribute_isNotUbiquitous) {
  writeFile(folder_ / "file");
  makeFolder(folder_ / "folder");
  for (const WalkedItem& item : walk()) {
    ASSERT_TRUE(item.values) << item.name;
    EXPECT_FALSE(item.values->isUbiquitousItem);
    EXPECT_FALSE(item.values->isUploaded);
    EXPECT_FALSE(item.values->contentModificationDate);
  }
}

TEST_P(WalkMetadata, item_withAnEmptyAttribute_isUbiquitousAndClean) {
  makeItem("file", "");
  const auto values = onlyItemNamed(walk(), "file").values;
  ASSERT_TRUE(values);
  EXPECT_TRUE(values->isUbiquitousItem);
  EXPECT_FALSE(values->isUploaded);
}

TEST_P(WalkMetadata, item_withEverything_hasEverything) {
  makeItem("file",
           "isUbiquitous=true\nisUploaded=false\nisUploading=true\nhasUnresolvedConflicts=true\n"
           "downloadingStatus=downloaded\nuploadingError=No room.\ndownloadingError=No network.");
  const auto values = onlyItemNamed(walk(), "file").values;
  ASSERT_TRUE(values);
  EXPECT_FALSE(values->isDirectory);
  EXPECT_TRUE(values->isUbiquitousItem);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_EQ(values->isUploading, true);
  EXPECT_EQ(values->hasUnresolvedConflicts, true);
  EXPECT_EQ(values->downloadingStatus, DownloadingStatus::downloaded);
  EXPECT_EQ(values->uploadingError, "No room.");
  EXPECT_EQ(values->downloadingError, "No network.");
  EXPECT_TRUE(values->contentModificationDate);
}

TEST_P(WalkMetadata, folder_withAttribute_isAUbiquitousFolder) {
  makeFolder(folder_ / "folder");
  setICloudAttribute(folder_ / "folder", "isUploaded=false");
  const auto values = onlyItemNamed(walk(), "folder").values;
  ASSERT_TRUE(values);
  EXPECT_TRUE(values->isDirectory);
  EXPECT_TRUE(values->isUbiquitousItem);
}

TEST_P(WalkMetadata, otherAttributes_areNotLookedAt) {
  writeFile(folder_ / "file");
  for (const char* name : {"user.icloud2", "user.iclou", "user.ICLOUD"}) {
    ASSERT_EQ(setxattr((folder_ / "file").c_str(), name, "bad", 3, 0), 0);
  }
  const auto values = onlyItemNamed(walk(), "file").values;
  ASSERT_TRUE(values);
  EXPECT_FALSE(values->isUbiquitousItem);
}

TEST_P(WalkMetadata, malformedAttribute_leavesThatItemAloneWithoutValues) {
  makeItem("before", "isUploaded=false");
  makeItem("badValue", "isUploaded=maybe");
  makeItem("noSeparator", "isUploaded");
  makeItem("notUTF8", "uploadingError=\xFF");
  makeItem("onlyNUL", "\0"s);
  makeItem("good", "isUploaded=true");
  makeFolder(folder_ / "folder");
  setICloudAttribute(folder_ / "folder", "bad");
  makeItem("folder/below", "isUploaded=true");
  const auto items = walk();
  EXPECT_EQ(items.size(), 8U);
  for (const char* name : {"badValue", "noSeparator", "notUTF8", "onlyNUL", "folder"}) {
    EXPECT_FALSE(onlyItemNamed(items, name).values) << name;
  }
  for (const char* name : {"before", "good", "below"}) {
    EXPECT_TRUE(onlyItemNamed(items, name).values) << name;
  }
}

TEST_P(WalkMetadata, attribute_aroundTheUsualSizes_isReadWhole) {
  const std::string key = "uploadingError=";
  for (const std::size_t size : {16U, 511U, 512U, 513U, 1024U, 3000U}) {
    makeItem(std::to_string(size), key + std::string(size - key.size(), 'e'));
  }
  const auto items = walk();
  EXPECT_EQ(items.size(), 6U);
  for (const WalkedItem& item : items) {
    ASSERT_TRUE(item.values && item.values->uploadingError) << item.name;
    EXPECT_EQ(*item.values->uploadingError, std::string(std::stoul(item.name) - key.size(), 'e'));
  }
}

TEST_P(WalkMetadata, longestAttributeOfTheFileSystem_isReadWhole) {
  writeFile(folder_ / "file");
  const std::string key = "isUploaded=false\nuploadingError=";
  std::string text(64 * 1024, 'e');
  text.replace(0, key.size(), key);
  // What fits differs from file system to file system; the kernel's own limit is what the text begins with.
  while (setxattr((folder_ / "file").c_str(), kICloudAttributeName, text.data(), text.size(), 0) != 0) {
    ASSERT_TRUE(errno == ENOSPC || errno == E2BIG) << errno;
    text.resize(text.size() - 512);
    ASSERT_GT(text.size(), 512U);
  }
  const auto values = onlyItemNamed(walk(), "file").values;
  ASSERT_TRUE(values);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_EQ(values->uploadingError, text.substr(key.size()));
}

TEST_P(WalkMetadata, longMalformedAttribute_leavesTheItemWithoutValues) {
  makeItem("file", std::string(2000, 'x'));
  makeItem("other", "isUploaded=true");
  const auto items = walk();
  EXPECT_FALSE(onlyItemNamed(items, "file").values);
  EXPECT_TRUE(onlyItemNamed(items, "other").values);
}

TEST_P(WalkMetadata, fileSystemWithoutAttributes_hasNoUbiquitousItems) {
  const std::string folder = "/proc/self/attr";
  ASSERT_LT(lgetxattr((folder + "/current").c_str(), kICloudAttributeName, nullptr, 0), 0);
  ASSERT_EQ(errno, ENOTSUP);
  const auto item = onlyItemNamed(walked(GetParam(), folder), "current");
  ASSERT_TRUE(item.values);
  EXPECT_FALSE(item.values->isUbiquitousItem);
  EXPECT_FALSE(item.values->isDirectory);
}

TEST_P(WalkMetadata, attributeThatMayNotBeRead_leavesTheItemWithoutValues) {
  makeItem("secret", "isUploaded=true");
  makeItem("open", "isUploaded=true");
  ASSERT_EQ(chmod((folder_ / "secret").c_str(), 0), 0);
  const WithoutPrivileges privileges;
  ASSERT_LT(lgetxattr((folder_ / "secret").c_str(), kICloudAttributeName, nullptr, 0), 0);
  ASSERT_EQ(errno, EACCES);
  const auto items = walk();
  EXPECT_EQ(items.size(), 2U);
  EXPECT_FALSE(onlyItemNamed(items, "secret").values);
  EXPECT_TRUE(onlyItemNamed(items, "open").values);
}

TEST_P(WalkMetadata, subfolderThatMayNotBeListed_isPassedOver) {
  makeItem("closed/below", "isUploaded=false");
  makeItem("open/below too", "isUploaded=false");
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0), 0);
  std::vector<WalkedItem> items;
  {
    const WithoutPrivileges privileges;
    ASSERT_LT(open((folder_ / "closed").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
    ASSERT_EQ(errno, EACCES);
    items = walk();
  }
  EXPECT_THAT(pathsOf(items), UnorderedElementsAre(folder_ / "closed", folder_ / "open", folder_ / "open/below too"));
  // Its own state is as unreadable as its contents.
  EXPECT_FALSE(onlyItemNamed(items, "closed").values);
}

TEST_P(WalkMetadata, watchedFolderThatMayNotBeListed_hasNoItems) {
  makeItem("closed/below", "isUploaded=false");
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0), 0);
  const WithoutPrivileges privileges;
  ASSERT_LT(open((folder_ / "closed").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
  ASSERT_EQ(errno, EACCES);
  const auto walk = GetParam().start(folder_ / "closed");
  EXPECT_THAT(restOf(*walk), IsEmpty());
  EXPECT_FALSE(walk->isComplete());
}

TEST_P(WalkMetadata, folderThatMayBeListedButNotSearched_hasItemsWithoutValues) {
  makeItem("listed/file", "isUploaded=false");
  makeItem("listed/folder/below", "isUploaded=false");
  makeItem("beside", "isUploaded=false");
  ASSERT_EQ(chmod((folder_ / "listed").c_str(), 0400), 0);
  const WithoutPrivileges privileges;
  struct stat status {};
  ASSERT_NE(stat((folder_ / "listed/file").c_str(), &status), 0);
  ASSERT_EQ(errno, EACCES);
  const auto items = walk();
  EXPECT_THAT(pathsOf(items), UnorderedElementsAre(folder_ / "listed", folder_ / "beside", folder_ / "listed/file",
                                                   folder_ / "listed/folder"));
  EXPECT_FALSE(onlyItemNamed(items, "file").values);
  EXPECT_FALSE(onlyItemNamed(items, "folder").values);
  EXPECT_TRUE(onlyItemNamed(items, "listed").values);
  EXPECT_TRUE(onlyItemNamed(items, "beside").values);
}

TEST_P(WalkMetadata, folderThatMayBeSearchedButNotListed_isPassedOver) {
  makeItem("searchable/file", "isUploaded=false");
  ASSERT_EQ(chmod((folder_ / "searchable").c_str(), 0100), 0);
  const WithoutPrivileges privileges;
  ASSERT_LT(open((folder_ / "searchable").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
  ASSERT_EQ(errno, EACCES);
  EXPECT_THAT(pathsOf(walk()), UnorderedElementsAre(folder_ / "searchable"));
}

TEST_P(WalkMetadata, modificationDates_areKeptToTheMicrosecond) {
  struct DateCase {
    const char* name;
    std::int64_t seconds;
    long nanoseconds;
    std::int64_t microseconds;
  };
  constexpr std::array<DateCase, 8> kDates = {{
      {"epoch", 0, 0, 0},
      {"now", 1'763'231'000, 123'456'789, 1'763'231'000'123'456},
      {"last nanosecond", 1'763'231'000, 999'999'999, 1'763'231'000'999'999},
      {"below a microsecond", 5, 999, 5'000'000},
      {"just before 1970", -1, 999'999'000, -1},
      {"before 1970", -2, 500'000'000, -1'500'000},
      {"1902", -2'145'916'800, 0, -2'145'916'800'000'000},
      {"2400", 13'569'465'600, 1'000, 13'569'465'600'000'001},
  }};
  for (const DateCase& date : kDates) {
    makeItem(date.name, "isUploaded=false");
    setDate(date.name, date.seconds, date.nanoseconds);
  }
  const auto items = walk();
  for (const DateCase& date : kDates) {
    const auto values = onlyItemNamed(items, date.name).values;
    ASSERT_TRUE(values && values->contentModificationDate) << date.name;
    EXPECT_EQ(values->contentModificationDate->time_since_epoch().count(), date.microseconds) << date.name;
  }
}

TEST_P(WalkMetadata, date_ofEveryStateThatIsReportedWithOne_isRead) {
  const std::vector<std::string> states = {
      "isUploaded=false", "isUploading=true",   "downloadingStatus=downloaded",     "downloadingStatus=notDownloaded",
      "uploadingError=",  "downloadingError=x", "isUploaded=true\nisUploading=true"};
  for (std::size_t index = 0; index < states.size(); ++index) {
    makeItem(std::to_string(index), states[index]);
    setDate(std::to_string(index), static_cast<std::int64_t>(index) + 1000, 0);
  }
  const auto items = walk();
  EXPECT_EQ(items.size(), states.size());
  for (const WalkedItem& item : items) {
    ASSERT_TRUE(item.values) << states.at(std::stoul(item.name));
    EXPECT_EQ(item.values->contentModificationDate, Time(std::chrono::seconds(std::stol(item.name) + 1000)))
        << states.at(std::stoul(item.name));
  }
}

TEST_P(WalkMetadata, date_ofWhatIsReportedWithoutOne_isNotRead) {
  const std::vector<std::string> states = {
      "", "isUploaded=true\nisUploading=false\nhasUnresolvedConflicts=false\ndownloadingStatus=current",
      "hasUnresolvedConflicts=true", "isUbiquitous=false\nisUploaded=false\nuploadingError=x"};
  for (std::size_t index = 0; index < states.size(); ++index) {
    makeItem(std::to_string(index), states[index]);
  }
  makeFolder(folder_ / "folder");
  setICloudAttribute(folder_ / "folder", "isUploaded=false");
  for (const WalkedItem& item : walk()) {
    ASSERT_TRUE(item.values) << item.name;
    EXPECT_FALSE(item.values->contentModificationDate) << item.name;
  }
}

TEST_P(WalkMetadata, twoNamesOfOneFile_areTwoItemsWithTheSameState) {
  makeItem("first", "isUploaded=false");
  ASSERT_EQ(::link((folder_ / "first").c_str(), (folder_ / "second").c_str()), 0);
  const auto items = walk();
  EXPECT_EQ(items.size(), 2U);
  EXPECT_EQ(onlyItemNamed(items, "first").values->isUploaded, false);
  EXPECT_EQ(onlyItemNamed(items, "second").values->isUploaded, false);
}

}  // namespace
}  // namespace cirrovane::test
