#include "platform/macos/FolderAlias.h"

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

const FolderAlias kAlias{"/tmp/files", "/private/tmp/files"};

TEST(FolderAlias, itemBelowTheRealFolder_isBelowTheAskedOne) {
  EXPECT_EQ(kAlias.asAsked("/private/tmp/files/a/b"), "/tmp/files/a/b");
}

TEST(FolderAlias, itemOfAnotherFolder_keepsItsPath) {
  EXPECT_EQ(kAlias.asAsked("/private/tmp/filestore/a"), "/private/tmp/filestore/a");
  EXPECT_EQ(kAlias.asAsked("/tmp/files/a"), "/tmp/files/a");
  EXPECT_EQ(kAlias.asAsked(""), "");
}

TEST(FolderAlias, realFolderItself_keepsItsPath) {
  EXPECT_EQ(kAlias.asAsked("/private/tmp/files"), "/private/tmp/files");
}

TEST(FolderAlias, folderWithoutLinks_changesNothing) {
  EXPECT_EQ((FolderAlias{"/a", "/a"}.asAsked("/a/b")), "/a/b");
}

TEST(FolderAlias, folderNameThatComesAgainFurtherDown_isReplacedOnceOnly) {
  EXPECT_EQ((FolderAlias{"/link", "/a"}.asAsked("/a/a/a")), "/link/a/a");
}

}  // namespace
}  // namespace cirrovane
