#include "tests/support/ChildProcess.h"

#include "base/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace cirrovane::test {
namespace {

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) {
    throw std::runtime_error("no pipe");
  }
  for (const int end : ends) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

[[noreturn]] void becomeProgram(const std::string& program, const std::vector<std::string>& arguments,
                                const ChildOptions& options, int out, int err) {
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  if (!options.workingDirectory.empty() && chdir(options.workingDirectory.c_str()) != 0) {
    _exit(126);
  }
  for (const auto& [name, value] : options.environment) {
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

/// Moves what is there to read into the text; false at the end of the stream.
bool readInto(std::string& text, int descriptor) {
  std::array<char, 65536> buffer{};
  const ssize_t length = read(descriptor, buffer.data(), buffer.size());
  if (length > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(length));
  }
  return length > 0 || (length < 0 && errno == EINTR);
}

}  // namespace

ChildResult runProgram(const std::string& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options) {
  Pipe out = makePipe();
  Pipe err = makePipe();
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("no child process");
  }
  if (child == 0) {
    becomeProgram(program, arguments, options, out.writeEnd.get(), err.writeEnd.get());
  }
  out.writeEnd = FileDescriptor();
  err.writeEnd = FileDescriptor();

  ChildResult result;
  std::array<pollfd, 2> streams{{{out.readEnd.get(), POLLIN, 0}, {err.readEnd.get(), POLLIN, 0}}};
  while (streams[0].fd >= 0 || streams[1].fd >= 0) {
    poll(streams.data(), streams.size(), -1);
    for (std::size_t index = 0; index < streams.size(); ++index) {
      std::string& text = index == 0 ? result.out : result.err;
      if (streams[index].revents != 0 && !readInto(text, streams[index].fd)) {
        streams[index].fd = -1;
      }
    }
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) {
    result.exitStatus = WEXITSTATUS(status);
  }
  return result;
}

}  // namespace cirrovane::test
