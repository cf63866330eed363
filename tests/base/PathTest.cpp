#include "base/Path.h"

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

TEST(Path, lastComponent_isWhatFollowsTheLastSlash) {
  EXPECT_EQ(lastPathComponent("/a/b.txt"), "b.txt");
  EXPECT_EQ(lastPathComponent("b.txt"), "b.txt");
  EXPECT_EQ(lastPathComponent("/a/"), "");
  EXPECT_EQ(lastPathComponent("/"), "");
  EXPECT_EQ(lastPathComponent(""), "");
}

TEST(Path, parent_isWhatStandsBeforeTheLastSlash) {
  EXPECT_EQ(parentPath("/a/b.txt"), "/a");
  EXPECT_EQ(parentPath("/b.txt"), "");
  EXPECT_EQ(parentPath("b.txt"), "b.txt");
  EXPECT_EQ(parentPath("/a/b/"), "/a/b");
}

TEST(Path, trailingSlashes_goButTheRoots) {
  EXPECT_EQ(withoutTrailingSlash("/a/b//"), "/a/b");
  EXPECT_EQ(withoutTrailingSlash("/a"), "/a");
  EXPECT_EQ(withoutTrailingSlash("/a//b///"), "/a//b");
  EXPECT_EQ(withoutTrailingSlash("///"), "/");
  EXPECT_EQ(withoutTrailingSlash("/"), "/");
  EXPECT_EQ(withoutTrailingSlash(""), "");
}

}  // namespace
}  // namespace cirrovane
