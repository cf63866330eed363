#include "tests/cli/Program.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(Usage, help_ofTheProgram_teachesCommandsOptionsAndExitStatuses) {
  const ChildResult result = ctl({"--help"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, AllOf(HasSubstr("Is it safe to close this Mac"), HasSubstr("cirrovanectl"),
                                HasSubstr("--mac-root"), HasSubstr("check"), HasSubstr("Exit status"),
                                HasSubstr("0  safe to close"), HasSubstr("1  not safe"), HasSubstr("2  wrong usage"),
                                HasSubstr("3  could not"), HasSubstr("cirrovanectl check --help")));
}

TEST(Usage, help_ofCheck_teachesEveryOptionWithExamples) {
  const ChildResult result = ctl({"check", "--help"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("FOLDER"), HasSubstr("--wait"), HasSubstr("--timeout"), HasSubstr("--interval"),
                    HasSubstr("--json"), HasSubstr("Examples:"), HasSubstr("cirrovanectl check ~/Documents")));
}

TEST(Usage, help_besideOtherArguments_needsNoMachine) {
  EXPECT_EQ(ctl({"--mac-root", "/missing", "check", "--help"}).exitStatus, 0);
  EXPECT_EQ(ctl({"-h"}).exitStatus, 0);
}

class WrongUsage : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(WrongUsage, arguments_thatMakeNoSense_giveStatus2AndSayWhere) {
  const ChildResult result = ctl(GetParam());
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, HasSubstr("--help"));
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongUsage,
    testing::Values(std::vector<std::string>{}, std::vector<std::string>{"chekc"}, std::vector<std::string>{"--json"},
                    std::vector<std::string>{"--unknown"}, std::vector<std::string>{"check", "--unknown"},
                    std::vector<std::string>{"check", "-x"}, std::vector<std::string>{"check", ""},
                    std::vector<std::string>{"check", "/", ""}, std::vector<std::string>{"--mac-root"},
                    std::vector<std::string>{"check", "--timeout", "5"},
                    std::vector<std::string>{"check", "--interval", "5"},
                    std::vector<std::string>{"check", "--json", "--timeout", "5", "/"},
                    std::vector<std::string>{"check", "--wait", "--timeout"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "soon"},
                    std::vector<std::string>{"check", "--wait", "--timeout", ""},
                    std::vector<std::string>{"check", "--wait", "--timeout", "-1"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "5s"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "nan"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "0", "--interval", "0"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "0", "--interval", "-1"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "0", "--interval", "nan"},
                    std::vector<std::string>{"check", "--wait", "--timeout", "0", "--interval", "often"}));

TEST(Usage, wrongArgument_withAnEscapeSequence_isNotPrintedRaw) {
  for (const std::string& argument : std::vector<std::string>{"--\x1b[2J", "--\xE2\x80\xAEx", "--\xFF", "--a\rb"}) {
    const ChildResult result = ctl({"check", argument});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_THAT(result.err, AllOf(Not(HasSubstr("\x1b")), Not(HasSubstr("\xE2\x80\xAE")), Not(HasSubstr("\xFF")),
                                  Not(HasSubstr("\r")), HasSubstr("--")));
  }
}

TEST(Usage, missingMacRoot_givesStatus3AndNamesIt) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const ChildResult result = ctl({"--mac-root", folder / "missing", "check"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, HasSubstr(folder / "missing"));
}

TEST(Usage, fileAsMacRoot_givesStatus3) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  writeFile(folder / "file");
  const ChildResult result = ctl({"--mac-root", folder / "file", "check", "--json"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, HasSubstr(folder / "file"));
}

TEST(Usage, badMachineDescription_givesStatus3AndSaysWhatIsWrong) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const auto complaintAbout = [&](const std::string& text) {
    writeFile(folder / "machine.json", text);
    const ChildResult result = ctl({"--mac-root", folder.path(), "check", "--json", folder.path()});
    EXPECT_EQ(result.exitStatus, 3) << text;
    EXPECT_THAT(result.out, IsEmpty()) << text;
    EXPECT_THAT(result.err, HasSubstr(folder / "machine.json")) << text;
    return result.err;
  };
  EXPECT_THAT(complaintAbout("{"), HasSubstr("not JSON"));
  EXPECT_THAT(complaintAbout(""), HasSubstr("not JSON"));
  EXPECT_THAT(complaintAbout("[]"), HasSubstr("not a JSON object"));
  EXPECT_THAT(complaintAbout(R"({"home": 1})"), HasSubstr("\"home\""));
  EXPECT_THAT(complaintAbout(R"({"lowPowerMode": "on"})"), HasSubstr("\"lowPowerMode\""));
}

TEST(Usage, macRootWithAHostileName_isNamedHarmlessly) {
  const ChildResult result = ctl({"--mac-root", "/missing\x1b[2J\nx", "check"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, AllOf(Not(HasSubstr("\x1b")), HasSubstr("\\x1b[2J\\nx")));
}

TEST(Usage, relativeMacRoot_isMeantInTheWorkingDirectory) {
  const MacTree mac;
  mac.addFile("file");
  const auto slash = mac.path().rfind('/');
  const ChildResult result = ctl({"--mac-root", "./" + mac.path().substr(slash + 1), "check", "--json"},
                                 {.workingDirectory = mac.path().substr(0, slash), .environment = {}});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_EQ(parsed(result.out)["metrics"]["totalFiles"], 1);
}

TEST(Usage, options_afterOrBeforeTheCommand_areTakenAlike) {
  const MacTree mac;
  mac.addFile("file", "isUploaded=false");
  EXPECT_EQ(ctl({"--mac-root", mac.path(), "check", "--json"}).exitStatus, 1);
  EXPECT_EQ(ctl({"check", "--json", "--mac-root", mac.path()}).exitStatus, 1);
  EXPECT_EQ(ctl({"--mac-root=" + mac.path(), "check"}).exitStatus, 1);
}

}  // namespace
}  // namespace cirrovane::test
