#include "cli/FolderArgument.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

struct PathCase {
  const char* argument;
  const char* workingDirectory;
  const char* expected;
};

void PrintTo(const PathCase& tested, std::ostream* out) {
  *out << tested.argument << " in " << tested.workingDirectory;
}

class AbsolutePath : public testing::TestWithParam<PathCase> {};

TEST_P(AbsolutePath, argument_inAWorkingDirectory_meansOnePath) {
  EXPECT_EQ(absolutePath(GetParam().argument, GetParam().workingDirectory), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Absolute, AbsolutePath,
                         testing::Values(PathCase{"/", "/here", "/"}, PathCase{"/a/b", "/here", "/a/b"},
                                         PathCase{"/a/b/", "/here", "/a/b/"}, PathCase{"//a///b", "/here", "/a/b"},
                                         PathCase{"/a/b//", "/here", "/a/b/"}, PathCase{"/a/./b/.", "/here", "/a/b"},
                                         PathCase{"/a/../b", "/here", "/b"}, PathCase{"/a/b/..", "/here", "/a"},
                                         PathCase{"/a/b/../", "/here", "/a/"}, PathCase{"/..", "/here", "/"},
                                         PathCase{"/../../a", "/here", "/a"}, PathCase{"/../", "/here", "/"},
                                         PathCase{"///", "/here", "/"}, PathCase{"/a/...", "/here", "/a/..."},
                                         PathCase{"/a/..b/.c", "/here", "/a/..b/.c"},
                                         PathCase{"/a b/\xFF", "/here", "/a b/\xFF"}));

INSTANTIATE_TEST_SUITE_P(Relative, AbsolutePath,
                         testing::Values(PathCase{"a", "/here", "/here/a"}, PathCase{"a/b/", "/here", "/here/a/b/"},
                                         PathCase{".", "/here/x", "/here/x"}, PathCase{"./", "/here/x", "/here/x/"},
                                         PathCase{"..", "/here/x", "/here"}, PathCase{"../", "/here/x", "/here/"},
                                         PathCase{"../../..", "/here/x", "/"}, PathCase{"./a", "/here", "/here/a"},
                                         PathCase{"../a", "/here/x", "/here/a"},
                                         PathCase{"a/../..", "/here/x", "/here"}, PathCase{"a", "/", "/a"},
                                         PathCase{".", "/", "/"}, PathCase{"~", "/here", "/here/~"},
                                         PathCase{" ", "/here", "/here/ "}, PathCase{"a\nb", "/here", "/here/a\nb"}));

TEST(AbsolutePathOfThisProcess, relativeArgument_isMeantInItsWorkingDirectory) {
  EXPECT_EQ(absolutePath("a"), (std::filesystem::current_path() / "a").native());
  EXPECT_EQ(absolutePath("/a"), "/a");
}

}  // namespace
}  // namespace cirrovane
