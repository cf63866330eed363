#include "platform/posix/ChildProcess.h"

#include "base/FileDescriptor.h"
#include "platform/Clock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#ifdef __APPLE__
#include <crt_externs.h>
#endif

namespace cirrovane {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

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

/// The process group that a child begins in.
enum class ProcessGroup { ours, own };

/// Signals as a program expects to find them, whatever we ignore or block.
class SpawnAttributes {
 public:
  explicit SpawnAttributes(ProcessGroup group)
      : isGood_(posix_spawnattr_init(&attributes_) == 0), isInitialised_(isGood_) {
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
    if (group == ProcessGroup::own) {
      // The default group of the attributes is a new one.
      flags |= POSIX_SPAWN_SETPGROUP;
    }
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

/// What comes out of a pipe.
class PipeText {
 public:
  explicit PipeText(const FileDescriptor& pipe) : pipe_(pipe) {}

  /// Whether nobody can write into the pipe any more, or it cannot be read.
  bool isAtEnd() const { return isAtEnd_; }

  /// How many bytes have come.
  std::size_t count() const { return count_; }

  /// Reads what one call gives, of so many bytes at most. A pipe that does not block may give nothing.
  void readOnce(std::size_t most = kBufferSize) {
    std::array<char, kBufferSize> buffer;  // NOLINT(*-member-init): it is written before it is read
    const ssize_t length = read(pipe_.get(), buffer.data(), std::min(most, buffer.size()));
    if (length > 0) {
      add({buffer.data(), static_cast<std::size_t>(length)});
    } else if (length == 0 || (errno != EINTR && errno != EAGAIN)) {
      isAtEnd_ = true;
      isLost_ = isLost_ || length < 0;
    }
  }

  /// The whole text; absent when it is too much, or could not be read.
  std::optional<std::string> take() { return isLost_ ? std::nullopt : std::optional(std::move(text_)); }

 private:
  static constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

  /// Text that is too much is read all the same, for a full pipe would hold the writer up.
  void add(std::string_view piece) {
    count_ += piece.size();
    isLost_ = isLost_ || text_.size() + piece.size() > kLargestOutput;
    if (isLost_) {
      text_ = std::string();
    } else {
      text_.append(piece);
    }
  }

  const FileDescriptor& pipe_;
  std::string text_;
  std::size_t count_ = 0;
  bool isAtEnd_ = false;
  bool isLost_ = false;
};

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
                           const FileDescriptor* output, const std::optional<Environment>& environment,
                           ProcessGroup group) {
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  if (output != nullptr) {
    actions.duplicate(output->get(), STDOUT_FILENO);
  } else {
    actions.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
  }
  actions.duplicate(STDOUT_FILENO, STDERR_FILENO).closeAllOthers();

  const SpawnAttributes attributes(group);
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

/// The outcome of a child that takes as long as it likes; `pipe` is where it prints, if anybody reads that.
std::optional<CommandResult> waitForEver(pid_t child, const FileDescriptor* pipe) {
  std::optional<std::string> output = "";
  if (pipe != nullptr) {
    PipeText text(*pipe);
    while (!text.isAtEnd()) {
      text.readOnce();
    }
    output = text.take();
  }
  const std::optional<int> exitStatus = waitFor(child);
  return output ? std::optional(CommandResult{exitStatus, std::move(*output)}) : std::nullopt;
}

void waitForText(const FileDescriptor& pipe, nanoseconds atMost) {
  pollfd awaited{pipe.get(), POLLIN, 0};
  poll(&awaited, 1, static_cast<int>(std::chrono::ceil<milliseconds>(atMost).count()));
}

/// Takes what is in the pipe now; whoever else holds its other end may write for ever.
void readWhatIsThere(const FileDescriptor& pipe, PipeText& text) {
  int length = 0;
  if (ioctl(pipe.get(), FIONREAD, &length) != 0 || length < 0) {
    return;
  }
  auto rest = static_cast<std::size_t>(length);
  while (rest > 0 && !text.isAtEnd()) {
    const std::size_t before = text.count();
    text.readOnce(rest);
    rest -= text.count() - before;
  }
}

/// The outcome of a child that has so much time; `pipe` is where it prints, if anybody reads that.
template <class Start>
std::optional<CommandResult> runWithin(milliseconds limit, const Start& start, const FileDescriptor* pipe) {
  // A child makes no use of the time that the machine sleeps.
  const SystemMonotonicClock clock;
  const nanoseconds began = clock.awakeSinceBoot();
  LimitedChild child(start);
  if (!child.isStarted()) {
    return std::nullopt;
  }
  std::optional<PipeText> text;
  if (pipe != nullptr) {
    fcntl(pipe->get(), F_SETFL, O_NONBLOCK);
    text.emplace(*pipe);
  }
  Pauses pauses(began);
  while (!child.hasEnded()) {
    const nanoseconds now = clock.awakeSinceBoot();
    if (now - began >= limit) {
      return CommandResult{.exitStatus = std::nullopt, .output = "", .isOutOfTime = true};
    }
    const nanoseconds pause = std::min<nanoseconds>(pauses.next(now), limit - (now - began));
    if (text && !text->isAtEnd()) {
      waitForText(*pipe, pause);
      text->readOnce();
      if (text->isAtEnd()) {
        // Most children end with their output.
        pauses = Pauses(clock.awakeSinceBoot());
      }
    } else {
      pauseFor(pause);
    }
  }
  if (!text) {
    return CommandResult{child.exitStatus(), ""};
  }
  if (!text->isAtEnd()) {
    readWhatIsThere(*pipe, *text);
  }
  std::optional<std::string> output = text->take();
  return output ? std::optional(CommandResult{child.exitStatus(), std::move(*output)}) : std::nullopt;
}

}  // namespace

std::optional<CommandResult> runChild(const std::string& executable, const std::vector<std::string>& arguments,
                                      CommandOutput output, const std::optional<Environment>& environment,
                                      TimeLimit limit) {
  // The system would take a text to end at its NUL, and run something else than what was asked for.
  if (holdsNUL(executable) || std::ranges::any_of(arguments, holdsNUL)) {
    return std::nullopt;
  }
  const bool isCollected = output == CommandOutput::collected;
  std::optional<Pipe> pipe = isCollected ? makePipe() : std::nullopt;
  if (isCollected && !pipe) {
    return std::nullopt;
  }
  const auto startIn = [&](ProcessGroup group) {
    const std::optional<pid_t> child =
        start(executable, arguments, pipe ? &pipe->writeEnd : nullptr, environment, group);
    if (pipe) {
      pipe->writeEnd = FileDescriptor();
    }
    return child;
  };
  const FileDescriptor* text = pipe ? &pipe->readEnd : nullptr;
  if (limit) {
    return runWithin(
        *limit, [&] { return startIn(ProcessGroup::own); }, text);
  }
  const std::optional<pid_t> child = startIn(ProcessGroup::ours);
  return child ? waitForEver(*child, text) : std::nullopt;
}

std::unique_ptr<LimitedChild> startChild(const std::string& executable, const std::vector<std::string>& arguments,
                                         const std::optional<Environment>& environment) {
  if (holdsNUL(executable) || std::ranges::any_of(arguments, holdsNUL)) {
    return nullptr;
  }
  auto child = std::make_unique<LimitedChild>(
      [&] { return start(executable, arguments, nullptr, environment, ProcessGroup::own); });
  return child->isStarted() ? std::move(child) : nullptr;
}

bool isExecutableFile(const std::string& path) {
  struct stat status {};
  return !holdsNUL(path) && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

}  // namespace cirrovane
