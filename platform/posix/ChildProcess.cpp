#include "platform/posix/ChildProcess.h"

#include "platform/posix/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#ifdef __APPLE__
#include <crt_externs.h>
#endif

namespace cirrovane {
namespace {

/// No tool that is worth listening to prints more; one that never stops must not eat the machine's memory.
constexpr std::size_t kLargestOutput = std::size_t{64} << 20U;
constexpr int kFirstFreeDescriptor = 3;

bool holdsNUL(const std::string& text) {
  return text.find('\0') != std::string::npos;
}

char** ownEnvironment() {
#ifdef __APPLE__
  return *_NSGetEnviron();
#else
  return environ;
#endif
}

/// Pointers to texts, as the system takes lists of them.
class TextList {
 public:
  TextList& add(const std::string& text) {
    // The system's signature is older than const; it does not write.
    texts_.insert(texts_.end() - 1, const_cast<char*>(text.c_str()));
    return *this;
  }
  TextList& add(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
      add(text);
    }
    return *this;
  }
  char* const* get() const { return texts_.data(); }

 private:
  std::vector<char*> texts_ = {nullptr};
};

/// What the system is to do with descriptors on the way to the child.
class FileActions {
 public:
  FileActions() : isGood_(posix_spawn_file_actions_init(&actions_) == 0), isInitialised_(isGood_) {}
  ~FileActions() {
    if (isInitialised_) {
      posix_spawn_file_actions_destroy(&actions_);
    }
  }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  FileActions& open(int descriptor, const char* path, int flags) {
    isGood_ = isGood_ && posix_spawn_file_actions_addopen(&actions_, descriptor, path, flags, 0) == 0;
    return *this;
  }
  FileActions& duplicate(int from, int to) {
    isGood_ = isGood_ && posix_spawn_file_actions_adddup2(&actions_, from, to) == 0;
    return *this;
  }
  /// Descriptors that a library, or whoever started us, left open for any child.
  FileActions& closeAllOthers() {
#ifndef __APPLE__
    isGood_ = isGood_ && posix_spawn_file_actions_addclosefrom_np(&actions_, kFirstFreeDescriptor) == 0;
#endif
    return *this;
  }

  /// nullptr when the actions could not all be noted.
  const posix_spawn_file_actions_t* get() const { return isGood_ ? &actions_ : nullptr; }

 private:
  posix_spawn_file_actions_t actions_{};
  bool isGood_;
  bool isInitialised_;
};

/// Signals as a program expects to find them, whatever we ignore or block.
class SpawnAttributes {
 public:
  SpawnAttributes() : isGood_(posix_spawnattr_init(&attributes_) == 0), isInitialised_(isGood_) {
    sigset_t none;
    sigemptyset(&none);
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    sigaddset(&usual, SIGCHLD);
    short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#ifdef __APPLE__
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
    isGood_ = isGood_ && posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
              posix_spawnattr_setsigdefault(&attributes_, &usual) == 0 &&
              posix_spawnattr_setflags(&attributes_, flags) == 0;
  }
  ~SpawnAttributes() {
    if (isInitialised_) {
      posix_spawnattr_destroy(&attributes_);
    }
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  const posix_spawnattr_t* get() const { return isGood_ ? &attributes_ : nullptr; }

 private:
  posix_spawnattr_t attributes_{};
  bool isGood_;
  bool isInitialised_;
};

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

/// The same file under a number above the standard streams', which the child's own will take.
FileDescriptor aboveStandardStreams(FileDescriptor file) {
  if (!file.isOpen() || file.get() >= kFirstFreeDescriptor) {
    return file;
  }
  return FileDescriptor(fcntl(file.get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
}

/// A pipe that no other child inherits; absent when the process has no descriptors left.
std::optional<Pipe> makePipe() {
  std::array<int, 2> ends{};
#ifdef __APPLE__
  if (pipe(ends.data()) != 0) {
    return std::nullopt;
  }
  for (const int end : ends) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
#else
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    return std::nullopt;
  }
#endif
  FileDescriptor readEnd(ends[0]);
  FileDescriptor writeEnd(ends[1]);
  Pipe made{aboveStandardStreams(std::move(readEnd)), aboveStandardStreams(std::move(writeEnd))};
  return made.readEnd.isOpen() && made.writeEnd.isOpen() ? std::optional(std::move(made)) : std::nullopt;
}

/// Everything that comes out of a pipe until nobody can write into it any more; absent when that is too much. It is
/// read to the end in any case, for a full pipe would hold the writer up.
std::optional<std::string> readToEnd(const FileDescriptor& pipe) {
  std::array<char, std::size_t{64} * 1024> buffer{};
  std::string text;
  bool isTooMuch = false;
  while (true) {
    const ssize_t length = read(pipe.get(), buffer.data(), buffer.size());
    if (length < 0 && errno == EINTR) {
      continue;
    }
    if (length <= 0) {
      return isTooMuch || length < 0 ? std::nullopt : std::optional(std::move(text));
    }
    const auto count = static_cast<std::size_t>(length);
    isTooMuch = isTooMuch || text.size() + count > kLargestOutput;
    if (isTooMuch) {
      text = std::string();
    } else {
      text.append(buffer.data(), count);
    }
  }
}

/// Waits for the end of a child. Absent when a signal ended it, or somebody else took its status away.
std::optional<int> waitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return std::nullopt;
    }
  }
  return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

/// Starts the child with its two output streams on the given descriptor, or on nothing; absent when that fails.
std::optional<pid_t> start(const std::string& executable, const std::vector<std::string>& arguments,
                           const FileDescriptor* output, const std::optional<Environment>& environment) {
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  if (output != nullptr) {
    actions.duplicate(output->get(), STDOUT_FILENO);
  } else {
    actions.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
  }
  actions.duplicate(STDOUT_FILENO, STDERR_FILENO).closeAllOthers();

  const SpawnAttributes attributes;
  if (actions.get() == nullptr || attributes.get() == nullptr) {
    return std::nullopt;
  }
  const TextList argumentList = TextList().add(executable).add(arguments);
  TextList variables;
  if (environment) {
    variables.add(*environment);
  }
  pid_t child = 0;
  const int error = posix_spawn(&child, executable.c_str(), actions.get(), attributes.get(), argumentList.get(),
                                environment ? variables.get() : ownEnvironment());
  return error == 0 ? std::optional(child) : std::nullopt;
}

}  // namespace

std::optional<CommandResult> runChild(const std::string& executable, const std::vector<std::string>& arguments,
                                      CommandOutput output, const std::optional<Environment>& environment) {
  // The system would take a text to end at its NUL, and run something else than what was asked for.
  if (holdsNUL(executable) || std::ranges::any_of(arguments, holdsNUL)) {
    return std::nullopt;
  }
  if (output == CommandOutput::discarded) {
    const std::optional<pid_t> child = start(executable, arguments, nullptr, environment);
    return child ? std::optional(CommandResult{waitFor(*child), ""}) : std::nullopt;
  }
  std::optional<Pipe> pipe = makePipe();
  if (!pipe) {
    return std::nullopt;
  }
  const std::optional<pid_t> child = start(executable, arguments, &pipe->writeEnd, environment);
  if (!child) {
    return std::nullopt;
  }
  pipe->writeEnd = FileDescriptor();
  std::optional<std::string> text = readToEnd(pipe->readEnd);
  const std::optional<int> exitStatus = waitFor(*child);
  return text ? std::optional(CommandResult{exitStatus, std::move(*text)}) : std::nullopt;
}

bool isExecutableFile(const std::string& path) {
  struct stat status {};
  return !holdsNUL(path) && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

}  // namespace cirrovane
