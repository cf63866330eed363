#include "base/UTF8.h"
#include "tests/cli/Program.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::string_literals;
using nlohmann::json;
using testing::HasSubstr;

struct HostileName {
  const char* title;
  std::string name;
  /// As a person may see it.
  std::string shown;
  /// As JSON tells it.
  std::string told;
};

HostileName honest(const char* title, const std::string& name) {
  return {title, name, name, name};
}

std::vector<HostileName> hostileNames() {
  return {
      {"escapeSequence", "\x1b[2J\x1b[31mx", "\\x1b[2J\\x1b[31mx", "\x1b[2J\x1b[31mx"},
      {"newline", "a\nSAFE TO CLOSE\nb", "a\\nSAFE TO CLOSE\\nb", "a\nSAFE TO CLOSE\nb"},
      {"tabAndReturn", "a\tb\rc", "a\\tb\\x0dc", "a\tb\rc"},
      {"bellAndBackspace", "a\a\b\x7f", "a\\x07\\x08\\x7f", "a\a\b\x7f"},
      {"lateControl", "a\xC2\x9Bx", "a\\xc2\\x9bx", "a\xC2\x9Bx"},
      {"rightToLeftOverride", "a\xE2\x80\xAEgpj.exe", "a\\u{202e}gpj.exe", "a\xE2\x80\xAEgpj.exe"},
      {"isolates", "\xE2\x81\xA6x\xE2\x81\xA9", "\\u{2066}x\\u{2069}", "\xE2\x81\xA6x\xE2\x81\xA9"},
      {"lineSeparator", "a\xE2\x80\xA8x", "a\\u{2028}x", "a\xE2\x80\xA8x"},
      {"invalidByte", "a\xFFz", "a\\xffz", "a\xEF\xBF\xBDz"},
      {"brokenCharacter", "a\xE2\x82z", "a\\xe2\\x82z", "a\xEF\xBF\xBDz"},
      {"backslash", "a\\x1b\\n", "a\\x1b\\n", "a\\x1b\\n"},
      honest("accents", "caf\xC3\xA9 cafe\xCC\x81"),
      honest("farCharacters", "\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80 \xD7\x90"),
      honest("quotesAndBraces", "\"a'{}{0}%s%n"),
      honest("spaces", " a  b "),
      honest("longest", std::string(255, 'n')),
      {"longestInvalid", std::string(255, '\xFF'), "\\xff\\xff\\xff", "\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
}

class HostileNames : public testing::TestWithParam<HostileName> {
 protected:
  ChildResult check(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "check"});
    return ctl(more);
  }

  const MacTree mac_;
};

void PrintTo(const HostileName& tested, std::ostream* out) {
  *out << tested.title;
}

INSTANTIATE_TEST_SUITE_P(All, HostileNames, testing::ValuesIn(hostileNames()),
                         [](const auto& tested) { return std::string(tested.param.title); });

/// Fails the test where the text could move a cursor, change its direction or is no text at all.
void expectHarmless(std::string_view text) {
  ASSERT_TRUE(isValidUTF8(text)) << text;
  for (std::size_t position = 0; position < text.size();) {
    const DecodedCharacter character = decodeCharacter(text, position);
    const char32_t code = character.codePoint;
    ASSERT_TRUE(code == U'\n' || code >= 0x20) << "control at " << position << ": " << text;
    ASSERT_FALSE(code >= 0x7F && code <= 0x9F) << "control at " << position << ": " << text;
    ASSERT_FALSE((code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069)) << "direction: " << text;
    position += character.length;
  }
}

TEST_P(HostileNames, file_inText_isWrittenHarmlessly) {
  mac_.addFile(GetParam().name, "hasUnresolvedConflicts=true\nisUploaded=false");
  const ChildResult result = check();
  EXPECT_EQ(result.exitStatus, 1);
  expectHarmless(result.out);
  EXPECT_THAT(result.out, HasSubstr(mac_.iCloudDrive() + "/" + GetParam().shown));
  EXPECT_THAT(result.out, HasSubstr("Conflict state reported for " + GetParam().shown));
}

TEST_P(HostileNames, file_inJSON_keepsItsBytesWhereTheyAreText) {
  mac_.addFile(GetParam().name, "isUploaded=false");
  const ChildResult result = check({"--json"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_TRUE(isValidUTF8(result.out));
  const json report = parsed(result.out);
  ASSERT_EQ(report["blockers"].size(), 1U);
  const auto path = report["blockers"][0]["filePath"].get<std::string>();
  EXPECT_TRUE(path.starts_with(mac_.iCloudDrive() + "/" + GetParam().told)) << path;
  if (isValidUTF8(GetParam().name)) {
    EXPECT_EQ(path, mac_.iCloudDrive() + "/" + GetParam().name);
  }
}

TEST_P(HostileNames, watchedFolder_inTextAndJSON_isHarmless) {
  const std::string folder = mac_ / GetParam().name;
  makeFolder(folder);
  const ChildResult text = check({folder});
  expectHarmless(text.out);
  EXPECT_THAT(text.out, HasSubstr(mac_ / GetParam().shown));
  const json report = parsed(check({"--json", folder}).out);
  EXPECT_TRUE(report["folderHealth"][0]["folder"]["name"].get<std::string>().starts_with(GetParam().told));
}

TEST_P(HostileNames, missingFolder_inText_isHarmless) {
  const ChildResult result = check({mac_ / GetParam().name});
  EXPECT_EQ(result.exitStatus, 1);
  expectHarmless(result.out);
  EXPECT_THAT(result.out, HasSubstr(mac_ / GetParam().shown));
}

TEST_P(HostileNames, errorText_inTextAndJSON_isHarmless) {
  if (!isValidUTF8(GetParam().name) || GetParam().name.find('\n') != std::string::npos) {
    // Such an attribute is malformed, or has more lines: the item then has no values, which nothing may break either.
    mac_.addFile("file", "uploadingError=" + GetParam().name);
    const ChildResult result = check();
    expectHarmless(result.out);
    EXPECT_EQ(parsed(check({"--json"}).out)["metrics"]["errors"], 1);
    return;
  }
  mac_.addFile("file", "uploadingError=" + GetParam().name);
  const ChildResult result = check();
  expectHarmless(result.out);
  EXPECT_THAT(result.out, HasSubstr(GetParam().shown));
  EXPECT_EQ(parsed(check({"--json"}).out)["blockers"][0]["details"], GetParam().told);
}

TEST(HostileTree, everyNameAtOnce_isToldInOneDocument) {
  const MacTree mac;
  for (const HostileName& hostile : hostileNames()) {
    mac.addFile(hostile.name + "/" + hostile.name.substr(0, 100), "isUploaded=false");
  }
  const ChildResult text = ctl({"--mac-root", mac.path(), "check"});
  EXPECT_EQ(text.exitStatus, 1);
  expectHarmless(text.out);
  const json report = parsed(ctl({"--mac-root", mac.path(), "check", "--json"}).out);
  EXPECT_EQ(report["blockers"].size(), hostileNames().size());
}

}  // namespace
}  // namespace cirrovane::test
