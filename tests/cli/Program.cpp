#include "tests/cli/Program.h"

#include "core/FolderNaming.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <pty.h>
#include <signal.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include <gtest/gtest.h>

namespace cirrovane::test {

ChildResult ctl(const std::vector<std::string>& arguments, const ChildOptions& options) {
  return runProgram(kProgram, arguments, options);
}

ChildResult ctlOnAFullDisk(const std::vector<std::string>& arguments) {
  std::vector<std::string> shell = {"-c", "trap '' XFSZ; ulimit -f 0; exec \"$@\"", "sh", kProgram};
  shell.insert(shell.end(), arguments.begin(), arguments.end());
  return runProgram("/bin/sh", shell);
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

nlohmann::json parsed(const std::string& text) {
  auto document = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (document.is_discarded()) {
    ADD_FAILURE() << "no JSON document: " << text;
    return nullptr;
  }
  return document;
}

std::vector<std::string> keysOf(const nlohmann::json& object) {
  std::vector<std::string> keys;
  for (const auto& entry : object.items()) {
    keys.push_back(entry.key());
  }
  return keys;
}

MacTree::MacTree() : iCloudDrive_(root_ / ("Users/demo" + std::string(kICloudDriveSubpath))) {
  makeFolder(iCloudDrive_);
}

std::string MacTree::addFile(const std::string& name, const std::string& state) const {
  std::string path = iCloudDrive_ + "/" + name;
  writeFile(path);
  setICloudAttribute(path, state);
  return path;
}

RunningProgram::RunningProgram(const std::vector<std::string>& arguments, int out, int err,
                               const std::map<std::string, std::string>& environment)
    : RunningProgram(kProgram, arguments, out, err, environment) {}

RunningProgram::RunningProgram(const std::string& program, const std::vector<std::string>& arguments, int out, int err,
                               const std::map<std::string, std::string>& environment)
    : process_(fork()) {
  if (process_ < 0) {
    throw std::runtime_error("no child process");
  }
  if (process_ > 0) {
    return;
  }
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  for (const auto& [name, value] : environment) {
    setenv(name.c_str(), value.c_str(), 1);
  }
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  execv(program.c_str(), argv.data());
  _exit(127);
}

RunningProgram::~RunningProgram() {
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
}

void RunningProgram::signal(int number) const {
  kill(process_, number);
}

std::optional<int> RunningProgram::exitStatus() {
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
  return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

Terminal::Terminal() {
  int testEnd = -1;
  int programEnd = -1;
  if (openpty(&testEnd, &programEnd, nullptr, nullptr, nullptr) != 0) {
    throw std::runtime_error("no pseudo-terminal");
  }
  testEnd_ = FileDescriptor(testEnd);
  programEnd_ = FileDescriptor(programEnd);
  fcntl(testEnd, F_SETFD, FD_CLOEXEC);
  fcntl(programEnd, F_SETFD, FD_CLOEXEC);
}

void Terminal::setColumns(unsigned short columns) const {
  const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
  if (ioctl(programEnd_.get(), TIOCSWINSZ, &size) != 0) {
    throw std::runtime_error("no width for the pseudo-terminal");
  }
}

void Terminal::waitFor(std::string_view text) {
  while (text_.find(text) == std::string::npos) {
    if (!readMore()) {
      FAIL() << "the program ended without \"" << text << "\": " << text_;
    }
  }
}

std::string Terminal::wholeText() {
  while (readMore()) {
  }
  return text_;
}

bool Terminal::readMore() {
  std::array<char, 4096> buffer{};
  ssize_t length = 0;
  do {
    length = read(testEnd_.get(), buffer.data(), buffer.size());
  } while (length < 0 && errno == EINTR);
  if (length > 0) {
    text_.append(buffer.data(), static_cast<std::size_t>(length));
  }
  return length > 0;
}

}  // namespace cirrovane::test
