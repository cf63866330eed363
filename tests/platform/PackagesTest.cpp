#include "platform/linux/walk/Packages.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using namespace std::string_view_literals;

class PackageExtension : public testing::TestWithParam<std::string_view> {};

std::string upperCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
  return text;
}

TEST_P(PackageExtension, name_withTheExtensionInAnyCase_isAPackage) {
  const std::string extension(GetParam());
  EXPECT_TRUE(isPackageName("Name." + extension));
  EXPECT_TRUE(isPackageName("Name." + upperCase(extension)));
  std::string mixed = extension;
  mixed.front() = upperCase(mixed).front();
  EXPECT_TRUE(isPackageName("Name." + mixed));
  EXPECT_TRUE(isPackageName("two.dots." + extension));
  EXPECT_TRUE(isPackageName("\xFF\n." + extension));
}

TEST_P(PackageExtension, name_thatOnlyLooksLikeIt_isNoPackage) {
  const std::string extension(GetParam());
  EXPECT_FALSE(isPackageName(extension));
  EXPECT_FALSE(isPackageName("." + extension));
  EXPECT_FALSE(isPackageName("Name." + extension + "x"));
  EXPECT_FALSE(isPackageName("Name.x" + extension));
  EXPECT_FALSE(isPackageName("Name." + extension + "."));
  EXPECT_FALSE(isPackageName("Name." + extension + " "));
  EXPECT_FALSE(isPackageName("Name." + extension + ".zip"));
  EXPECT_FALSE(isPackageName("Name." + extension + std::string(1, '\0')));
}

INSTANTIATE_TEST_SUITE_P(All, PackageExtension,
                         testing::Values("app"sv, "bundle"sv, "photoslibrary"sv, "rtfd"sv, "pages"sv, "key"sv,
                                         "numbers"sv, "xcodeproj"sv, "logicx"sv, "sparsebundle"sv, "framework"sv,
                                         "kext"sv, "plugin"sv, "pkg"sv, "xcworkspace"sv, "playground"sv, "band"sv,
                                         "dSYM"sv, "xcarchive"sv, "musiclibrary"sv),
                         [](const auto& tested) { return std::string(tested.param); });

TEST(Packages, name_ofAnOrdinaryFolder_isNoPackage) {
  for (const std::string_view name : {""sv, "."sv, ".."sv, "Documents"sv, "2024.11"sv, "v1."sv, "archive.zip"sv,
                                      "appendix"sv, "My app"sv, "key.d"sv, "rtf"sv, "a.ap"sv, "a.appp"sv}) {
    EXPECT_FALSE(isPackageName(name)) << name;
  }
}

TEST(Packages, name_withALetterThatOnlyUnicodeFolds_isNoPackage) {
  // The Kelvin sign folds to "k" in Unicode; file systems and launch services compare extensions by plain letters.
  EXPECT_FALSE(
      isPackageName("slides.\xE2\x84\xAA"
                    "ey"));
  // Letters next to the alphabet in ASCII must not be moved into it.
  EXPECT_FALSE(isPackageName("Name.\x01pp"));
  EXPECT_FALSE(isPackageName("Name.a@p"));
}

}  // namespace
}  // namespace cirrovane
