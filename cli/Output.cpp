#include "cli/Output.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace cirrovane {
namespace {

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

bool knowsEscapeSequences() {
  const char* terminal = std::getenv("TERM");
  return terminal != nullptr && std::string_view(terminal) != "dumb";
}

}  // namespace

Output::Output(int descriptor)
    : descriptor_(descriptor),
      isTerminal_(isatty(descriptor) == 1),
      isErasable_(isTerminal_ && knowsEscapeSequences()),
      isColoured_(isErasable_ && !isSet("NO_COLOR")) {}

std::size_t Output::columns() const {
  winsize size{};
  return ioctl(descriptor_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

bool Output::write(std::string_view text) {
  while (!text.empty() && !isClosed_) {
    const ssize_t written = ::write(descriptor_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      isClosed_ = true;
      hasLostText_ = errno != EPIPE;
    }
  }
  return !isClosed_;
}

ExitStatus statusAfterWriting(ExitStatus status, const Output& out, Output& err) {
  if (out.hasLostText()) {
    err.write("cirrovanectl: The answer could not be written in full.\n");
    return ExitStatus::couldNot;
  }
  return status;
}

void ignoreClosedPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace cirrovane
