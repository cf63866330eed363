#include "platform/macos/plain/FolderAlias.h"

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

TEST(FolderAlias, isBelow_ofAnItemByEitherName_isTrue) {
  for (const FolderAlias& alias : {FolderAlias{"/link", "/a"}, FolderAlias{"/link/", "/a/"}}) {
    for (const char* path : {"/a/b", "/a/b/c", "/link/b", "/a/b/"}) {
      EXPECT_TRUE(alias.isBelow(path)) << path;
    }
  }
  EXPECT_TRUE((FolderAlias{"/", "/"}.isBelow("/a")));
}

TEST(FolderAlias, isBelow_ofTheFolderItselfOrWhatIsElsewhere_isFalse) {
  for (const FolderAlias& alias : {FolderAlias{"/link", "/a"}, FolderAlias{"/link/", "/a/"}}) {
    for (const char* path : {"/a", "/a/", "/link", "/link/", "/ab", "/linked/b", "/", "", "a/b", "/A/b"}) {
      EXPECT_FALSE(alias.isBelow(path)) << path;
    }
  }
  EXPECT_FALSE((FolderAlias{"/", "/"}.isBelow("/")));
  EXPECT_FALSE((FolderAlias{"", ""}.isBelow("/a")));
}

TEST(FolderAlias, folderNameThatComesAgainFurtherDown_isReplacedOnceOnly) {
  EXPECT_EQ((FolderAlias{"/link", "/a"}.asAsked("/a/a/a")), "/link/a/a");
}

}  // namespace
}  // namespace cirrovane
