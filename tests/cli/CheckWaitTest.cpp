#include "tests/cli/Program.h"

#include <array>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CheckWait : public testing::Test {
 protected:
  std::vector<std::string> arguments(std::vector<std::string> more) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "check", "--wait"});
    return more;
  }

  const MacTree mac_;
};

TEST_F(CheckWait, safeAtOnce_endsAtOnce) {
  mac_.addFile("clean");
  const ChildResult result = ctl(arguments({}));
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, testing::StartsWith("SAFE TO CLOSE"));
}

TEST_F(CheckWait, treeThatTurnsSafeMeanwhile_endsWithStatus0) {
  const std::string path = mac_.addFile("pending", "isUploaded=false");
  const TemporaryFolder output(CIRROVANE_TEST_DIR);
  const FileDescriptor out(open((output / "out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  ASSERT_TRUE(out.isOpen());
  Terminal terminal;
  RunningProgram program(arguments({"--interval", "0.01", "--json"}), out.get(), terminal.programEnd());
  terminal.closeProgramEnd();
  // It has seen the tree unsafe, and again.
  terminal.waitFor("Not safe yet. ");
  terminal.waitFor("\x1b[KNot safe yet. ");
  setICloudAttribute(path, "isUploaded=true");
  EXPECT_THAT(terminal.wholeText(), HasSubstr("1 issues found."));
  EXPECT_EQ(program.exitStatus(), 0);
  const auto report = parsed(readFile(output / "out"));
  EXPECT_EQ(report["safeToClose"], true);
}

TEST_F(CheckWait, fileThatIsUploaded_endsItWithinASecondWithoutAnInterval) {
  const std::string path = mac_.addFile("pending", "isUploaded=false");
  mac_.addFile("clean");
  Terminal terminal;
  RunningProgram program(arguments({}), terminal.programEnd(), terminal.programEnd());
  terminal.closeProgramEnd();
  terminal.waitFor("Not safe yet. ");
  const auto uploaded = std::chrono::steady_clock::now();
  setICloudAttribute(path, "isUploaded=true");
  EXPECT_EQ(program.exitStatus(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - uploaded, std::chrono::seconds(1));
  EXPECT_THAT(terminal.wholeText(), HasSubstr("SAFE TO CLOSE"));
}

TEST_F(CheckWait, missingFolder_isWaitedForToo) {
  Terminal terminal;
  const std::string folder = mac_.iCloudDrive() + "/later";
  RunningProgram program(arguments({"--interval", "0.01", folder}), terminal.programEnd(), terminal.programEnd());
  terminal.closeProgramEnd();
  terminal.waitFor("Not safe yet. ");
  makeFolder(folder);
  EXPECT_THAT(terminal.wholeText(), HasSubstr("SAFE TO CLOSE"));
  EXPECT_EQ(program.exitStatus(), 0);
}

TEST_F(CheckWait, timeThatRunsOut_endsWithStatus1AndTheLastReport) {
  mac_.addFile("pending", "isUploaded=false");
  const ChildResult result = ctl(arguments({"--timeout", "0.05", "--interval", "0.01", "--json"}));
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(parsed(result.out)["metrics"]["pendingUploads"], 1);
}

TEST_F(CheckWait, timeoutShorterThanTheInterval_isNotOverslept) {
  // With an interval of a day, this test would not end.
  mac_.addFile("pending", "isUploaded=false");
  EXPECT_EQ(ctl(arguments({"--timeout", "0.05", "--interval", "86400"})).exitStatus, 1);
}

TEST_F(CheckWait, timeoutOfNothing_looksOnce) {
  mac_.addFile("pending", "isUploaded=false");
  EXPECT_EQ(ctl(arguments({"--timeout", "0"})).exitStatus, 1);
  EXPECT_EQ(ctl(arguments({"--timeout", "0", "--interval", "1e308"})).exitStatus, 1);
}

TEST_F(CheckWait, timesBeyondAllClocks_areForEver) {
  mac_.addFile("clean");
  EXPECT_EQ(ctl(arguments({"--timeout", "1e308", "--interval", "1e308"})).exitStatus, 0);
  const std::string path = mac_.addFile("pending", "isUploaded=false");
  Terminal terminal;
  RunningProgram program(arguments({"--timeout", "1e300", "--interval", "0.01"}), terminal.programEnd(),
                         terminal.programEnd());
  terminal.closeProgramEnd();
  terminal.waitFor("Not safe yet. ");
  setICloudAttribute(path, "");
  EXPECT_THAT(terminal.wholeText(), HasSubstr("SAFE TO CLOSE"));
  EXPECT_EQ(program.exitStatus(), 0);
}

TEST_F(CheckWait, outputThatIsNoTerminal_getsNothingButTheLastReport) {
  mac_.addFile("pending", "isUploaded=false");
  const ChildResult result = ctl(arguments({"--timeout", "0.03", "--interval", "0.01"}));
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, Not(HasSubstr("Not safe yet")));
  EXPECT_THAT(result.out, testing::StartsWith("NOT SAFE TO CLOSE\n"));
  EXPECT_EQ(result.out.find("NOT SAFE", 1), std::string::npos) << "printed more than one report";
}

}  // namespace
}  // namespace cirrovane::test
