#include "demo/Arguments.h"
#include "demo/Command.h"
#include "demo/DemoMac.h"
#include "demo/Failure.h"
#include "demo/Text.h"
#include "demo/Uploading.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <ctime>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::demo {
namespace {

/// A longer wait is longer than anybody looks on, and all of them together fit the clock.
constexpr double kLongestWait = 1e6;
constexpr double kFastest = 1e12;

struct UploadOptions {
  std::string folder;
  std::string rate = "5000";
  std::vector<std::string> stuck;
  std::vector<std::string> pauses;
};

/// A number above zero and at most `most`; absent for anything else.
std::optional<double> positiveNumber(std::string_view text, double most) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() && number > 0 && number <= most;
  return isNumber ? std::optional(number) : std::nullopt;
}

std::chrono::nanoseconds secondsOf(double count) {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(count));
}

/// "60:300".
std::optional<UploadPause> pauseOf(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view start = text.substr(0, colon);
  const std::optional<double> begin = start == "0" ? std::optional(0.0) : positiveNumber(start, kLongestWait);
  const std::optional<double> length = positiveNumber(text.substr(colon + 1), kLongestWait);
  return begin && length ? std::optional(UploadPause{secondsOf(*begin), secondsOf(*length)}) : std::nullopt;
}

std::string complaintAboutRate(const std::string& text) {
  return positiveNumber(text, kFastest) ? "" : "The rate is a number of bytes a second above zero, such as 20000.";
}

std::string complaintAboutPause(const std::string& text) {
  return pauseOf(text) ? "" : "A pause is START:LENGTH in seconds, such as 60:300.";
}

std::string complaintAboutName(const std::string& text) {
  return text.empty() ? "The name cannot be empty." : "";
}

/// Takes the signals that end the program, so that each is taken between two files.
class EndingSignals {
 public:
  EndingSignals() : start_(std::chrono::steady_clock::now()) {
    sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
      sigaddset(&signals_, signal);
    }
    sigprocmask(SIG_BLOCK, &signals_, &before_);
  }
  ~EndingSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  /// False when one of them has come.
  bool waitUntil(std::chrono::nanoseconds sinceStart) const {
    while (true) {
      const auto left = std::max<std::chrono::nanoseconds>(start_ + sinceStart - std::chrono::steady_clock::now(),
                                                           std::chrono::nanoseconds(0));
      const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
      const timespec wait{seconds.count(), (left - seconds).count()};
      if (sigtimedwait(&signals_, nullptr, &wait) > 0) {
        return false;
      }
      // Stopped and continued by a person, it waits on.
      if (errno != EINTR) {
        return true;
      }
    }
  }

 private:
  std::chrono::steady_clock::time_point start_;
  sigset_t signals_{};
  sigset_t before_{};
};

std::string filesText(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " file" : " files");
}

void uploadFiles(const UploadOptions& options, std::ostream& out) {
  const DemoMac mac = DemoMac::open(absolutePath(options.folder));
  UploadPlan plan;
  plan.bytesPerSecond = positiveNumber(options.rate, kFastest).value_or(1);
  plan.stuck = options.stuck;
  for (const std::string& pause : options.pauses) {
    plan.pauses.push_back(pauseOf(pause).value_or(UploadPause()));
  }
  const EndingSignals signals;
  const UploadOutcome outcome = upload(
      mac.root(), plan, [&](std::chrono::nanoseconds sinceStart) { return signals.waitUntil(sinceStart); },
      [&](const WaitingFile& file, std::size_t waiting) {
        out << "Uploaded " << printable(file.path.lexically_relative(mac.home()).native()) << ", " << file.size
            << " bytes; " << waiting << " to go.\n"
            << std::flush;
      });
  out << (outcome.wasStopped ? "Stopped. " : "") << filesText(outcome.left) << " uploaded, " << outcome.stayed
      << " still pending.\n";
}

}  // namespace

void addUploadCommand(CLI::App& app, Action& chosen) {
  const auto options = std::make_shared<UploadOptions>();
  CLI::App& command = addCommand(
      app, "upload", "Let the pending files reach iCloud, one after another",
      "Files leave in the order of their paths, each at the moment at which it would have been sent. Files that "
      "become\n"
      "pending meanwhile follow. It ends when no file is pending but those that are stuck, or with Ctrl-C.\n\n"
      "Examples:\n"
      "  cirrovane-demo-mac upload ~/demo-mac\n"
      "  cirrovane-demo-mac upload ~/demo-mac --rate 20000 --stuck 'Invoice 2031'\n"
      "  cirrovane-demo-mac upload ~/demo-mac --pause 10:120",
      [&chosen, options] { chosen = [options](std::ostream& out) { uploadFiles(*options, out); }; });
  addPathArgument(command, "DIR", options->folder, "A demo Mac");
  addOption(command, "--rate", "BYTES", options->rate, "Bytes a second (default: 5000)", complaintAboutRate);
  addRepeatedOption(command, "--stuck", "TEXT", options->stuck,
                    "Files with TEXT in their path never leave; may be given several times", complaintAboutName);
  addRepeatedOption(command, "--pause", "START:LENGTH", options->pauses,
                    "Nothing leaves for LENGTH seconds from START on; may be given several times", complaintAboutPause);
}

}  // namespace cirrovane::demo
