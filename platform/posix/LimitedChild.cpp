#include "platform/posix/LimitedChild.h"

#include "platform/Clock.h"
#include "platform/CommandRunner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <sys/wait.h>

namespace cirrovane {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// A place holds a process, the negative of one that was killed and is still to be buried, or one of these.
constexpr pid_t kFree = 0;
constexpr pid_t kStarting = 1;
constexpr pid_t kBeingBuried = -1;

constexpr nanoseconds kShortestPause = microseconds(50);
constexpr nanoseconds kLongestPause = milliseconds(4);
constexpr int kShareOfTimeTaken = 8;
/// A killed process is usually gone in less than one.
constexpr nanoseconds kTimeToDie = milliseconds(100);
/// What a start may take that endLimitedCommands() waits for.
constexpr int kMillisecondsToStart = 50;

// A signal handler has nothing else to go by than what is known to the whole process.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
std::array<std::atomic<pid_t>, 64> places{};
std::atomic<bool> isEnding = false;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)
static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

/// Keeps every signal from this thread.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

void killGroup(pid_t process) {
  kill(-process, SIGKILL);
  // It may have gone over to another group.
  kill(process, SIGKILL);
}

void buryTheDead() {
  for (std::atomic<pid_t>& place : places) {
    pid_t dead = place.load();
    if (dead >= kFree || dead == kBeingBuried || !place.compare_exchange_strong(dead, kBeingBuried)) {
      continue;
    }
    place = waitpid(-dead, nullptr, WNOHANG) == 0 ? dead : kFree;
  }
}

/// A place for a process that is about to be started; nullptr when there is none.
std::atomic<pid_t>* takePlace() {
  for (std::atomic<pid_t>& place : places) {
    pid_t free = kFree;
    if (place.compare_exchange_strong(free, kStarting)) {
      return &place;
    }
  }
  return nullptr;
}

/// The process of a place once it has started; kFree when there is none, or it takes too long.
pid_t processIn(const std::atomic<pid_t>& place, int& millisecondsLeft) {
  while (place == kStarting && millisecondsLeft > 0) {
    poll(nullptr, 0, 1);
    --millisecondsLeft;
  }
  const pid_t process = place;
  return process > kStarting ? process : kFree;
}

void endOnSignal(int signal) {
  const int error = errno;
  endLimitedCommands();
  // The handler is gone by now, so that this ends the program as soon as it returns.
  raise(signal);
  errno = error;
}

}  // namespace

void pauseFor(nanoseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  timespec left{};
  left.tv_sec = seconds.count();
  left.tv_nsec = (time - seconds).count();
  nanosleep(&left, nullptr);
}

nanoseconds Pauses::next(nanoseconds now) const {
  return std::clamp((now - began_) / kShareOfTimeTaken, kShortestPause, kLongestPause);
}

LimitedChild::LimitedChild(const Start& start) {
  buryTheDead();
  // Else a handler could interrupt us while the process is there and not noted yet.
  const SignalsBlocked blocked;
  std::atomic<pid_t>* const place = takePlace();
  if (place == nullptr) {
    return;
  }
  if (!isEnding) {
    process_ = start().value_or(kFree);
  }
  *place = process_;
  place_ = place;
}

LimitedChild::~LimitedChild() {
  if (isStarted() && !hasEnded_) {
    killGroup(process_);
    bury();
  }
}

bool LimitedChild::hasEnded() {
  int status = 0;
  if (hasEnded_) {
    return true;
  }
  const pid_t ended = waitpid(process_, &status, WNOHANG);
  if (ended == 0) {
    return false;
  }
  *place_ = kFree;
  hasEnded_ = true;
  if (ended == process_ && WIFEXITED(status)) {
    exitStatus_ = WEXITSTATUS(status);
  }
  return true;
}

void LimitedChild::bury() {
  const SystemMonotonicClock clock;
  const nanoseconds began = clock.awakeSinceBoot();
  const Pauses pauses(began);
  while (!hasEnded()) {
    const nanoseconds now = clock.awakeSinceBoot();
    if (now - began >= kTimeToDie) {
      *place_ = -process_;
      return;
    }
    pauseFor(pauses.next(now));
  }
}

void endLimitedCommands() {
  isEnding = true;
  int millisecondsLeft = kMillisecondsToStart;
  for (const std::atomic<pid_t>& place : places) {
    if (const pid_t process = processIn(place, millisecondsLeft); process != kFree) {
      killGroup(process);
    }
  }
}

void endLimitedCommandsOnSignals() {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    struct sigaction present {};
    if (sigaction(signal, nullptr, &present) != 0 || present.sa_handler != SIG_DFL) {
      continue;
    }
    struct sigaction action {};
    action.sa_handler = endOnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace cirrovane
