#include "cli/ProgressLine.h"
#include "tests/cli/Program.h"

#include <chrono>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <deque>
#include <fcntl.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

const std::string kErase = "\r\x1b[K";
constexpr std::chrono::milliseconds kPatience{500};

/// The states of the line, in the order in which they were shown.
std::vector<std::string> linesOf(const std::string& shown) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while ((start = shown.find(kErase, start)) != std::string::npos) {
    start += kErase.size();
    lines.push_back(shown.substr(start, shown.find(kErase, start) - start));
  }
  return lines;
}

/// How many columns of a terminal a text takes. Each of its characters takes some.
std::size_t columnsOf(const std::string& text) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  std::size_t columns = 0;
  std::mbstate_t state{};
  for (std::size_t index = 0; index < text.size();) {
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, text.data() + index, text.size() - index, &state);
    EXPECT_TRUE(length > 0 && length <= text.size()) << "no UTF-8: " << text;
    const int width = wcwidth(character);
    EXPECT_GE(width, 0) << "no printable character in " << text;
    columns += static_cast<std::size_t>(width);
    index += length;
  }
  return columns;
}

class ProgressTest : public testing::Test {
 protected:
  ProgressTest() { setenv("TERM", "xterm", 1); }

  /// What a terminal of this width has been shown once the line came up and went.
  std::string shown(unsigned short columns, const std::string& awaited = "Scanning") {
    Terminal terminal;
    terminal.setColumns(columns);
    {
      Output out(terminal.programEnd());
      const ProgressLine line(progress_, out);
      terminal.waitFor(awaited);
    }
    terminal.closeProgramEnd();
    return terminal.wholeText();
  }

  ScanProgress progress_;
};

TEST_F(ProgressTest, scanOfHalfASecond_showsFilesRateAndFolderAndErasesThem) {
  progress_.enterFolder("/Users/demo/Invoices");
  progress_.addFiles(123'456);
  const auto start = std::chrono::steady_clock::now();
  const std::string text = shown(120);
  EXPECT_GE(std::chrono::steady_clock::now() - start, kPatience);
  const std::vector<std::string> lines = linesOf(text);
  ASSERT_GE(lines.size(), 2U);
  EXPECT_THAT(lines.front(), MatchesRegex("Scanning: 123456 files, [0-9]+ a second  /Users/demo/Invoices"));
  EXPECT_THAT(lines.back(), IsEmpty());
  EXPECT_THAT(text, AllOf(EndsWith(kErase), Not(HasSubstr("\n"))));
}

TEST_F(ProgressTest, rate_isFilesOverTheTimeSoFar) {
  progress_.addFiles(1'000'000);
  const auto start = std::chrono::steady_clock::now();
  const std::vector<std::string> lines = linesOf(shown(120));
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  ASSERT_FALSE(lines.empty());
  const std::size_t comma = lines.front().find(", ");
  ASSERT_NE(comma, std::string::npos);
  const double rate = std::stod(lines.front().substr(comma + 2));
  EXPECT_LE(rate, 2'000'000);
  EXPECT_GE(rate, 1'000'000 / elapsed.count() - 1);
}

TEST_F(ProgressTest, shortScan_showsNothing) {
  Terminal terminal;
  {
    Output out(terminal.programEnd());
    const ProgressLine line(progress_, out);
  }
  terminal.closeProgramEnd();
  EXPECT_THAT(terminal.wholeText(), IsEmpty());
}

TEST_F(ProgressTest, scanThatGoesOn_isFollowed) {
  Terminal terminal;
  {
    Output out(terminal.programEnd());
    const ProgressLine line(progress_, out);
    progress_.enterFolder("/first");
    progress_.addFiles(7);
    terminal.waitFor("Scanning: 7 files, ");
    progress_.addFiles(4);
    progress_.enterFolder("/second");
    terminal.waitFor("Scanning: 11 files, ");
    terminal.waitFor("/second");
  }
  terminal.closeProgramEnd();
  EXPECT_THAT(linesOf(terminal.wholeText()).back(), IsEmpty());
}

TEST_F(ProgressTest, outputThatIsNoTerminal_getsNothing) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const FileDescriptor file(open((folder / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  Output out(file.get());
  EXPECT_FALSE(out.isErasable());
  // To wait half a second for nothing would prove little: no thread is started that could show something.
  const std::size_t before = namesIn("/proc/self/task").size();
  const ProgressLine line(progress_, out);
  EXPECT_EQ(namesIn("/proc/self/task").size(), before);
}

TEST_F(ProgressTest, terminalThatCannotErase_getsNothing) {
  setenv("TERM", "dumb", 1);
  const Terminal terminal;
  Output out(terminal.programEnd());
  EXPECT_TRUE(out.isTerminal());
  EXPECT_FALSE(out.isErasable());
  unsetenv("TERM");
  EXPECT_FALSE(Output(terminal.programEnd()).isErasable());
}

TEST_F(ProgressTest, longFolder_showsItsEnd) {
  progress_.enterFolder("/Users/demo/" + std::string(300, 'x') + "/Quarter 4/end");
  const std::vector<std::string> lines = linesOf(shown(80));
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines.front(), AllOf(HasSubstr("a second  …xxx"), EndsWith("/Quarter 4/end")));
  // One column stays free, and one more for a wide "…".
  EXPECT_EQ(columnsOf(lines.front()), 78U);
}

TEST(ProgressWidth, everyWidthAndName_fitsTheTerminal) {
  setenv("TERM", "xterm", 1);
  const std::vector<std::string> folders = {"/x", "/請求書/二〇二六年/十一月/最終版/写真/契約書類一式",
                                            "/Users/demo/Кафе/Счета/2026",
                                            "/\xF0\x9F\x8F\xA0/\xF0\x9F\x93\x81/e\xCC\x81"};
  struct Shown {
    Shown(const std::string& folder, unsigned short width) : columns(width) {
      progress.enterFolder(folder);
      terminal.setColumns(columns);
      line.emplace(progress, out);
    }

    unsigned short columns;
    ScanProgress progress;
    Terminal terminal;
    Output out{terminal.programEnd()};
    std::optional<ProgressLine> line;
  };
  // All at once, because each takes half a second to come up.
  std::deque<Shown> all;
  for (const std::string& folder : folders) {
    for (const int columns : {1, 2, 10, 36, 37, 38, 39, 40, 41, 42, 60}) {
      all.emplace_back(folder, static_cast<unsigned short>(columns));
    }
  }
  for (Shown& one : all) {
    one.terminal.waitFor(kErase);
    one.line.reset();
    one.terminal.closeProgramEnd();
    for (const std::string& line : linesOf(one.terminal.wholeText())) {
      EXPECT_LT(columnsOf(line), one.columns) << line;
    }
  }
}

TEST_F(ProgressTest, hostileFolder_isEscaped) {
  progress_.enterFolder("/a\x1b[2J\n\r\xE2\x80\xAE\xFF/b");
  const std::vector<std::string> lines = linesOf(shown(200));
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines.front(), EndsWith("/a\\x1b[2J\\n\\x0d\\u{202e}\\xff/b"));
}

#ifdef CIRROVANE_SLOW_ATTRIBUTES

/// The real program, whose scan stands still until the gate is opened.
class ProgressOfTheProgram : public testing::TestWithParam<std::vector<std::string>> {
 protected:
  ProgressOfTheProgram() {
    mac_.addFile("late", "isUploaded=false");
    writeFile(mac_ / "machine.json", "{}");
    EXPECT_EQ(mkfifo(gate_.c_str(), 0600), 0);
  }
  std::vector<std::string> arguments() const {
    std::vector<std::string> arguments = {"--mac-root", mac_.path()};
    arguments.insert(arguments.end(), GetParam().begin(), GetParam().end());
    return arguments;
  }
  std::map<std::string, std::string> environment() const {
    return {{"LD_PRELOAD", CIRROVANE_SLOW_ATTRIBUTES}, {"CIRROVANE_TEST_GATE", gate_}, {"TERM", "xterm"}};
  }
  FileDescriptor openGate() const { return FileDescriptor(open(gate_.c_str(), O_RDWR | O_CLOEXEC)); }

  const MacTree mac_;
  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const std::string gate_ = folder_ / "gate";
};

INSTANTIATE_TEST_SUITE_P(All, ProgressOfTheProgram,
                         testing::Values(std::vector<std::string>{"check"}, std::vector<std::string>{"refresh"},
                                         std::vector<std::string>{"explain"}, std::vector<std::string>{"export", "-"}),
                         [](const auto& tested) { return tested.param.front(); });

TEST_P(ProgressOfTheProgram, slowScan_showsItsFolderOnStandardErrorAndErasesIt) {
  Terminal terminal;
  terminal.setColumns(300);
  const FileDescriptor out(open((folder_ / "out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  RunningProgram program(arguments(), out.get(), terminal.programEnd(), environment());
  terminal.closeProgramEnd();
  terminal.waitFor("Scanning: 0 files, 0 a second  " + mac_.iCloudDrive());
  const FileDescriptor gate = openGate();
  const std::vector<std::string> lines = linesOf(terminal.wholeText());
  EXPECT_EQ(program.exitStatus(), GetParam().front() == "export" ? 0 : 1);
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines.back(), IsEmpty());
  EXPECT_THAT(readFile(folder_ / "out"), AllOf(Not(IsEmpty()), Not(HasSubstr("Scanning")), Not(HasSubstr("\x1b"))));
}

TEST_P(ProgressOfTheProgram, quickScan_showsNothing) {
  Terminal terminal;
  const FileDescriptor gate = openGate();
  const FileDescriptor out(open((folder_ / "out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  // Quick it is unless the machine is held up for half a second; then it may show itself, but not remain.
  RunningProgram program(arguments(), out.get(), terminal.programEnd(), environment());
  terminal.closeProgramEnd();
  const std::string text = terminal.wholeText();
  EXPECT_TRUE(text.empty() || text.ends_with(kErase)) << text;
  EXPECT_EQ(program.exitStatus(), GetParam().front() == "export" ? 0 : 1);
}

#endif

}  // namespace
}  // namespace cirrovane::test
