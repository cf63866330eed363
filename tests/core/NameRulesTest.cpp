#include "core/NameRules.h"

#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

std::string ruleOf(std::string_view name, ItemKind kind = ItemKind::file) {
  const auto rule = exclusionRuleFor(name, kind);
  return rule ? std::string(kExclusionRules.at(*rule).pattern) : "";
}

TEST(NameRules, eachPattern_takesTheNamesThatItDescribes) {
  EXPECT_EQ(ruleOf("build.nosync"), "*.nosync");
  EXPECT_EQ(ruleOf("page.nosync.html"), "*.nosync.*");
  EXPECT_EQ(ruleOf("Family.photoslibrary", ItemKind::folder), "*.photoslibrary");
  EXPECT_EQ(ruleOf("a.weakpkg.b"), "*.weakpkg*");
  EXPECT_EQ(ruleOf("(A Document Being Saved By Pages 2)"), "(A Document Being Saved*");
  EXPECT_EQ(ruleOf("cache.tmp", ItemKind::folder), "*.tmp");
  EXPECT_EQ(ruleOf("notes.txt~"), "*~");
  EXPECT_EQ(ruleOf("desktop.ini"), "desktop.ini");
}

TEST(NameRules, letterCase_makesNoDifference) {
  EXPECT_EQ(ruleOf("Build.NOSYNC"), "*.nosync");
  EXPECT_EQ(ruleOf("TMP", ItemKind::folder), "tmp");
}

TEST(NameRules, ruleForFolders_leavesFilesAlone) {
  EXPECT_EQ(ruleOf("tmp", ItemKind::folder), "tmp");
  EXPECT_EQ(ruleOf("tmp"), "");
}

TEST(NameRules, ordinaryNames_matchNothing) {
  for (const char* name : {"a.txt", "nosync", "tmpfile", "photoslibrary", ".env", "a.tmp.txt", "desktop.ini.txt", ""}) {
    EXPECT_EQ(ruleOf(name, ItemKind::folder), "") << name;
  }
}

TEST(NameRules, passingNames_areThoseOfProgramsAndTheSystem) {
  for (const char* name : {"~$Letter.docx", ".~lock.Letter.odt#", "a.tmp", ".tmp", ".DS_Store", ".localized",
                           "._Letter.docx", "Icon\r", ".Letter.docx.icloud"}) {
    EXPECT_TRUE(isPassingName(name)) << name;
  }
  for (const char* name : {".env", "Icon", "a.TMP", "DS_Store", "$Letter", "Letter.icloud", ".icloud", "tmp", ""}) {
    EXPECT_FALSE(isPassingName(name)) << name;
  }
}

TEST(NameRules, everyRule_hasItsSourceInTheDocumentation) {
  std::ifstream file(CIRROVANE_SOURCE_DIR "/docs/coverage.md");
  std::stringstream text;
  text << file.rdbuf();
  for (const ExclusionRule& rule : kExclusionRules) {
    EXPECT_NE(text.str().find("| `" + std::string(rule.pattern) + "` |"), std::string::npos) << rule.pattern;
  }
}

}  // namespace
}  // namespace cirrovane
