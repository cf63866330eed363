#include "tests/cli/Program.h"

#include <array>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kEscape = "\x1b";

class OutputStreams : public testing::Test {
 protected:
  std::vector<std::string> check(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "check"});
    return more;
  }
  std::string onTerminal(const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment) const {
    Terminal terminal;
    RunningProgram program(arguments, terminal.programEnd(), terminal.programEnd(), environment);
    terminal.closeProgramEnd();
    std::string text = terminal.wholeText();
    EXPECT_TRUE(program.exitStatus().has_value());
    return text;
  }

  const MacTree mac_;
};

TEST_F(OutputStreams, terminal_getsColours) {
  mac_.addFile("clean");
  EXPECT_THAT(onTerminal(check(), {{"TERM", "xterm"}, {"NO_COLOR", ""}}),
              AllOf(HasSubstr("\x1b[1m"), HasSubstr("\x1b[32mSAFE TO CLOSE\x1b[0m")));
  mac_.addFile("pending", "isUploaded=false");
  EXPECT_THAT(onTerminal(check(), {{"TERM", "xterm"}, {"NO_COLOR", ""}}),
              AllOf(HasSubstr("NOT SAFE TO CLOSE\x1b[0m"), Not(HasSubstr("\x1b[32mNOT SAFE"))));
}

TEST_F(OutputStreams, terminal_ofAUserWhoWantsNoColours_getsNone) {
  mac_.addFile("pending", "isUploaded=false");
  const std::string text = onTerminal(check(), {{"TERM", "xterm"}, {"NO_COLOR", "1"}});
  EXPECT_THAT(text, AllOf(HasSubstr("NOT SAFE TO CLOSE"), Not(HasSubstr(kEscape))));
}

TEST_F(OutputStreams, terminal_thatKnowsNoColours_getsNone) {
  mac_.addFile("pending", "isUploaded=false");
  const std::string text = onTerminal(check(), {{"TERM", "dumb"}, {"NO_COLOR", ""}});
  EXPECT_THAT(text, AllOf(HasSubstr("NOT SAFE TO CLOSE"), Not(HasSubstr(kEscape))));
}

TEST_F(OutputStreams, terminal_getsJSONWithoutColours) {
  mac_.addFile("pending", "isUploaded=false");
  const std::string text = onTerminal(check({"--json"}), {{"TERM", "xterm"}, {"NO_COLOR", ""}});
  EXPECT_EQ(parsed(text)["metrics"]["pendingUploads"], 1);
}

TEST_F(OutputStreams, pipe_getsNoColours) {
  mac_.addFile("pending", "isUploaded=false");
  const ChildResult result =
      ctl(check(), {.workingDirectory = {}, .environment = {{"TERM", "xterm"}, {"NO_COLOR", ""}}});
  EXPECT_THAT(result.out, AllOf(HasSubstr("NOT SAFE TO CLOSE"), Not(HasSubstr(kEscape))));
}

TEST_F(OutputStreams, pipeWithoutReader_isNoErrorAndKeepsTheVerdict) {
  mac_.addFile("clean");
  for (const bool isSafe : {true, false}) {
    if (!isSafe) {
      mac_.addFile("pending", "isUploaded=false");
    }
    for (const std::vector<std::string>& arguments : {check(), check({"--json"})}) {
      std::array<int, 2> ends{};
      ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
      close(ends[0]);
      const FileDescriptor writeEnd(ends[1]);
      const TemporaryFolder output(CIRROVANE_TEST_DIR);
      const FileDescriptor err(open((output / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
      RunningProgram program(arguments, writeEnd.get(), err.get());
      EXPECT_EQ(program.exitStatus(), isSafe ? 0 : 1);
      EXPECT_EQ(readFile(output / "err"), "");
    }
  }
}

TEST_F(OutputStreams, readerThatLeavesInTheMiddle_isNoErrorAndKeepsTheVerdict) {
  // More than a pipe holds, so that the program is still writing when the reader goes.
  for (int index = 0; index < 400; ++index) {
    mac_.addFile(fmt::format("{:a>200}", index), "isUploaded=false");
  }
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  FileDescriptor readEnd(ends[0]);
  FileDescriptor writeEnd(ends[1]);
  const TemporaryFolder output(CIRROVANE_TEST_DIR);
  const FileDescriptor err(open((output / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  RunningProgram program(check({"--json"}), writeEnd.get(), err.get());
  writeEnd = FileDescriptor();
  char first = 0;
  ASSERT_EQ(read(readEnd.get(), &first, 1), 1);
  readEnd = FileDescriptor();
  EXPECT_EQ(program.exitStatus(), 1);
  EXPECT_EQ(readFile(output / "err"), "");
}

TEST_F(OutputStreams, fullDisk_givesStatus3AndAMessage) {
  mac_.addFile("clean");
  for (const std::vector<std::string>& arguments : {check(), check({"--json"})}) {
    const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    ASSERT_TRUE(full.isOpen());
    const TemporaryFolder output(CIRROVANE_TEST_DIR);
    const FileDescriptor err(open((output / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    RunningProgram program(arguments, full.get(), err.get());
    EXPECT_EQ(program.exitStatus(), 3);
    EXPECT_THAT(readFile(output / "err"), HasSubstr("could not be written"));
  }
}

TEST_F(OutputStreams, fullDiskForHelp_givesStatus3) {
  const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(full.isOpen());
  const TemporaryFolder output(CIRROVANE_TEST_DIR);
  const FileDescriptor err(open((output / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  RunningProgram program({"--help"}, full.get(), err.get());
  EXPECT_EQ(program.exitStatus(), 3);
}

TEST_F(OutputStreams, fullDiskForErrors_keepsTheVerdict) {
  mac_.addFile("pending", "isUploaded=false");
  const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(full.isOpen());
  const FileDescriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
  RunningProgram program(check(), nothing.get(), full.get());
  EXPECT_EQ(program.exitStatus(), 1);
}

}  // namespace
}  // namespace cirrovane::test
