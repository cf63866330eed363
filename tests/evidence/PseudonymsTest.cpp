#include "evidence/Pseudonyms.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr std::string_view kDrive = "/Library/Mobile Documents/com~apple~CloudDocs";

class PseudonymsTest : public testing::Test {
 protected:
  std::string name(std::string_view text) {
    std::string out;
    pseudonyms_.appendName(text, out);
    return out;
  }
  std::string path(std::string_view text) {
    std::string out;
    pseudonyms_.appendPath(text, out);
    return out;
  }

  Pseudonyms pseudonyms_{true, {}};
};

TEST_F(PseudonymsTest, names_areNumberedByTheirFirstAppearance) {
  EXPECT_EQ(name("Taxes.pdf"), "name-1.pdf");
  EXPECT_EQ(name("a"), "name-2");
  EXPECT_EQ(name("Taxes.pdf"), "name-1.pdf");
  EXPECT_EQ(name("Taxes.PDF"), "name-3.PDF");
  EXPECT_EQ(name("name-2"), "name-4");
}

TEST_F(PseudonymsTest, strict_hasNoExtensions) {
  Pseudonyms strict(false, {});
  std::string out;
  strict.appendName("Taxes.pdf", out);
  EXPECT_EQ(out, "name-1");
}

TEST_F(PseudonymsTest, extension_isAShortEndingOfOneCase) {
  for (const auto& [whole, extension] : {std::pair<std::string_view, std::string_view>{"a.pdf", ".pdf"},
                                         {"a.b.JPEG", ".JPEG"},
                                         {"a.mp4", ".mp4"},
                                         {"a.7z", ".7z"},
                                         {".gitignore", ""},
                                         {".a.icloud", ".icloud"},
                                         {"a.", ""},
                                         {"a", ""},
                                         {"2026.11", ""},
                                         {"Letter to J.Smith", ""},
                                         {"Mr. Smith", ""},
                                         {"a.abcdefgh", ".abcdefgh"},
                                         {"a.abcdefghi", ""},
                                         {"a.\xC3\xA4", ""}}) {
    EXPECT_EQ(extensionOf(whole), extension) << whole;
  }
}

TEST_F(PseudonymsTest, homes_areATilde_andTheWayToTheDriveStays) {
  EXPECT_EQ(path("/Users/anna" + std::string(kDrive) + "/Work/a.pdf"),
            "~/Library/Mobile Documents/com~apple~CloudDocs/name-1/name-2.pdf");
  EXPECT_EQ(path("/Users/anna"), "~");
  EXPECT_EQ(path("/Users/anna/"), "~/");
  EXPECT_EQ(path("/Users/bob/Work"), "~2/name-1");
  EXPECT_EQ(path("/Users/anna/Library/Work"), "~/name-3/name-1");
  EXPECT_EQ(path("/export/carl" + std::string(kDrive)), "~3/Library/Mobile Documents/com~apple~CloudDocs");
  EXPECT_EQ(path("/export/carl" + std::string(kDrive) + "2/x"), "/name-4/name-5/name-3/name-6/name-7/name-8");
}

TEST_F(PseudonymsTest, homeThatTheDriveTellsOf_isKnownFromThenOn) {
  EXPECT_EQ(path("/export/carl/Desktop"), "/name-1/name-2/name-3");
  EXPECT_EQ(path("/export/carl" + std::string(kDrive)), "~/Library/Mobile Documents/com~apple~CloudDocs");
  EXPECT_EQ(path("/export/carl/Desktop"), "~/name-3");
}

TEST_F(PseudonymsTest, knownHome_isATildeWhereverItLies) {
  Pseudonyms known(true, "/root/");
  std::string out;
  known.appendPath("/root/a", out);
  known.appendPath("/rooted/a", out);
  EXPECT_EQ(out, "~/name-1/name-2/name-1");
}

TEST_F(PseudonymsTest, oddPaths_keepTheirSlashesAlone) {
  EXPECT_EQ(path(""), "");
  EXPECT_EQ(path("/"), "/");
  EXPECT_EQ(path("//a//b/"), "//name-1//name-2/");
  EXPECT_EQ(path("a/~"), "name-1/name-3");
  EXPECT_EQ(path("/Users/"), "/name-4/");
  EXPECT_EQ(path("/Users//a"), "/name-4//name-1");
}

TEST_F(PseudonymsTest, namesThatAreTheSameInAFile_areTheSame) {
  EXPECT_EQ(name("a\xFF"), name("a\xFE"));
  EXPECT_NE(name("a\xFF"), name("a"));
}

}  // namespace
}  // namespace cirrovane::test
