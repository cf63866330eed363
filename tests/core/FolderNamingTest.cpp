#include "core/FolderNaming.h"

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(IsInsideICloudDrive, driveAndAnythingBelow_isInside) {
  EXPECT_TRUE(isInsideICloudDrive("/Users/a/Library/Mobile Documents/com~apple~CloudDocs"));
  EXPECT_TRUE(isInsideICloudDrive("/Users/a/Library/Mobile Documents/com~apple~CloudDocs/Work/Deep"));
}

TEST(IsInsideICloudDrive, driveTextAnywhereInThePath_isInside) {
  EXPECT_TRUE(isInsideICloudDrive("/Library/Mobile Documents/com~apple~CloudDocs"));
  EXPECT_TRUE(isInsideICloudDrive("/Volumes/Old Disk/Library/Mobile Documents/com~apple~CloudDocs/Work"));
  EXPECT_TRUE(isInsideICloudDrive("/Users/a/Library/Mobile Documents/com~apple~CloudDocs-old/Work"));
}

TEST(IsInsideICloudDrive, anythingElse_isOutside) {
  for (const char* path :
       {"", "/", "/Users/a/Documents", "/Users/a/Library/Mobile Documents/com~apple~CloudDoc",
        "/Users/a/Library/Mobile Documents/com~other~App", "/Users/a/Library/Mobile Documents",
        "/Users/a/library/mobile documents/com~apple~clouddocs",
        "/Users/a/Library/Mobile Documents/com~apple~clouddocs", "Library/Mobile Documents/com~apple~CloudDocs",
        "/Users/a/Library//Mobile Documents/com~apple~CloudDocs"}) {
    EXPECT_FALSE(isInsideICloudDrive(path)) << path;
  }
}

TEST(WatchFolderName, inICloudDrive_isICloudDrive) {
  EXPECT_EQ(watchFolderName("/Users/a/Library/Mobile Documents/com~apple~CloudDocs"), "iCloud Drive");
  EXPECT_EQ(watchFolderName("/Users/a/Library/Mobile Documents/com~apple~CloudDocs/Work"), "iCloud Drive");
}

TEST(WatchFolderName, inTheContainerOfAnyApp_isICloudDrive) {
  EXPECT_EQ(watchFolderName("/Users/a/Library/Mobile Documents/com~other~App"), "iCloud Drive");
  EXPECT_EQ(watchFolderName("/Users/a/Library/Mobile Documents/"), "iCloud Drive");
}

TEST(WatchFolderName, elsewhere_isTheLastComponent) {
  EXPECT_EQ(watchFolderName("/Users/a/Documents"), "Documents");
  EXPECT_EQ(watchFolderName("/Users/a/Documents/"), "Documents");
  EXPECT_EQ(watchFolderName("/Users/a/Library/Mobile Documents"), "Mobile Documents");
  EXPECT_EQ(watchFolderName("/Users/a/library/mobile documents/x"), "x");
  EXPECT_EQ(watchFolderName("/\xC3\x84rger"), "\xC3\x84rger");
  EXPECT_EQ(watchFolderName("/a b\nc"), "a b\nc");
}

TEST(WatchFolderName, rootItself_isASlash) {
  EXPECT_EQ(watchFolderName("/"), "/");
}

TEST(WatchFolderName, noComponent_isFolder) {
  EXPECT_EQ(watchFolderName(""), "Folder");
}

}  // namespace
}  // namespace cirrovane::test
