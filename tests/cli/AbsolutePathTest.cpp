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
                         testing::Values(PathCase{"/", "/work", "/"}, PathCase{"/a/b", "/work", "/a/b"},
                                         PathCase{"/a/b/", "/work", "/a/b/"}, PathCase{"//a///b", "/work", "/a/b"},
                                         PathCase{"/a/b//", "/work", "/a/b/"}, PathCase{"/a/./b/.", "/work", "/a/b"},
                                         PathCase{"/a/../b", "/work", "/b"}, PathCase{"/a/b/..", "/work", "/a"},
                                         PathCase{"/a/b/../", "/work", "/a/"}, PathCase{"/..", "/work", "/"},
                                         PathCase{"/../../a", "/work", "/a"}, PathCase{"/../", "/work", "/"},
                                         PathCase{"///", "/work", "/"}, PathCase{"/a/...", "/work", "/a/..."},
                                         PathCase{"/a/..b/.c", "/work", "/a/..b/.c"},
                                         PathCase{"/a b/\xFF", "/work", "/a b/\xFF"}));

INSTANTIATE_TEST_SUITE_P(Relative, AbsolutePath,
                         testing::Values(PathCase{"a", "/work", "/work/a"}, PathCase{"a/b/", "/work", "/work/a/b/"},
                                         PathCase{".", "/work/x", "/work/x"}, PathCase{"./", "/work/x", "/work/x/"},
                                         PathCase{"..", "/work/x", "/work"}, PathCase{"../", "/work/x", "/work/"},
                                         PathCase{"../../..", "/work/x", "/"}, PathCase{"./a", "/work", "/work/a"},
                                         PathCase{"../a", "/work/x", "/work/a"},
                                         PathCase{"a/../..", "/work/x", "/work"}, PathCase{"a", "/", "/a"},
                                         PathCase{".", "/", "/"}, PathCase{"~", "/work", "/work/~"},
                                         PathCase{" ", "/work", "/work/ "}, PathCase{"a\nb", "/work", "/work/a\nb"}));

TEST(AbsolutePathOfThisProcess, relativeArgument_isMeantInItsWorkingDirectory) {
  EXPECT_EQ(absolutePath("a"), (std::filesystem::current_path() / "a").native());
  EXPECT_EQ(absolutePath("/a"), "/a");
}

}  // namespace
}  // namespace cirrovane
