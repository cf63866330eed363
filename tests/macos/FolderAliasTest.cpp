#include "platform/macos/plain/FolderAlias.h"

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

const FolderAlias kAlias{"/tmp/files", "/private/tmp/files"};

TEST(FolderAlias, folderAndItemsBelow_haveTheirRealPaths) {
  EXPECT_EQ(kAlias.realPathOf("/tmp/files"), "/private/tmp/files");
  EXPECT_EQ(kAlias.realPathOf("/tmp/files/a/b"), "/private/tmp/files/a/b");
}

TEST(FolderAlias, whatIsNotBelow_keepsItsPath) {
  EXPECT_EQ(kAlias.realPathOf("/tmp/filestore/a"), "/tmp/filestore/a");
  EXPECT_EQ(kAlias.realPathOf("/private/tmp/files/a"), "/private/tmp/files/a");
  EXPECT_EQ(kAlias.realPathOf(""), "");
}

TEST(FolderAlias, itemByItsRealPath_isBelowTheFolderThatWasAskedFor) {
  EXPECT_EQ(kAlias.asAsked("/private/tmp/files/a/b"), "/tmp/files/a/b");
  EXPECT_EQ(kAlias.asAsked("/private/tmp/files"), "/tmp/files");
  EXPECT_EQ(kAlias.asAsked("/private/tmp/filestore/a"), "/private/tmp/filestore/a");
  EXPECT_EQ(kAlias.asAsked("/tmp/files/a"), "/tmp/files/a");
  EXPECT_EQ((FolderAlias{"/link", "/"}.asAsked("/a")), "/link/a");
}

TEST(FolderAlias, slashesAtTheEnd_comeOnlyOnce) {
  for (const FolderAlias& alias :
       {FolderAlias{"/link/", "/a/"}, FolderAlias{"/link", "/a/"}, FolderAlias{"/link/", "/a"}}) {
    EXPECT_EQ(alias.realPathOf("/link/b"), "/a/b");
    EXPECT_EQ(alias.realPathOf("/link/"), "/a");
  }
}

TEST(FolderAlias, root_isNoSpecialCase) {
  EXPECT_EQ((FolderAlias{"/", "/"}.realPathOf("/")), "/");
  EXPECT_EQ((FolderAlias{"/", "/"}.realPathOf("/a")), "/a");
  EXPECT_EQ((FolderAlias{"/link", "/"}.realPathOf("/link/a")), "/a");
  EXPECT_EQ((FolderAlias{"/", "/a"}.realPathOf("/b")), "/a/b");
}

TEST(FolderAlias, folderNameThatComesAgainFurtherDown_isReplacedOnceOnly) {
  EXPECT_EQ((FolderAlias{"/a", "/real"}.realPathOf("/a/a/a")), "/real/a/a");
}

}  // namespace
}  // namespace cirrovane
