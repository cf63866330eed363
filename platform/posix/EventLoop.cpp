#include "platform/posix/EventLoop.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace cirrovane {
namespace {

constexpr std::array kQuittingSignals = {SIGINT, SIGTERM};

// A signal's handler is a plain function, and can reach what it ends in no other way.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<EventLoop*> loopToQuit{nullptr};
std::array<struct sigaction, kQuittingSignals.size()> formerActions;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

void quitLoop(int /*signal*/) {
  if (EventLoop* loop = loopToQuit.load()) {
    loop->quit();
  }
}

std::array<FileDescriptor, 2> makeWakingPipe() {
  std::array<int, 2> ends{-1, -1};
  if (pipe(ends.data()) != 0) {
    throw std::runtime_error("No pipe can be made.");
  }
  for (const int end : ends) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(end, F_SETFL, O_NONBLOCK);
  }
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace

class EventLoop::LoopAlarm final : public Alarm {
 public:
  explicit LoopAlarm(EventLoop& loop) : loop_(loop) { loop_.alarms_.push_back(this); }
  ~LoopAlarm() override { std::erase(loop_.alarms_, this); }

  LoopAlarm(const LoopAlarm&) = delete;
  LoopAlarm& operator=(const LoopAlarm&) = delete;

  void set(std::chrono::nanoseconds after, std::function<void()> ring) override {
    due_ = loop_.clock_.sinceBoot() + after;
    ring_ = std::move(ring);
  }
  void clear() override { ring_ = nullptr; }

  bool isSet() const { return ring_ != nullptr; }
  std::chrono::nanoseconds due() const { return due_; }
  void ring() {
    if (const auto ring = std::exchange(ring_, nullptr)) {
      ring();
    }
  }

 private:
  EventLoop& loop_;
  std::chrono::nanoseconds due_{0};
  std::function<void()> ring_;
};

EventLoop::EventLoop(const MonotonicClock& clock) : clock_(clock), wakeUp_(makeWakingPipe()) {}

EventLoop::~EventLoop() = default;

void EventLoop::post(std::function<void()> task) {
  bool isFirst = false;
  {
    const std::lock_guard lock(mutex_);
    isFirst = tasks_.empty();
    tasks_.push_back(std::move(task));
  }
  if (isFirst) {
    // A full pipe wakes the loop as well.
    [[maybe_unused]] const ssize_t written = write(wakeUp_.back().get(), "", 1);
  }
}

void EventLoop::quit() {
  const int before = errno;
  isQuitting_ = true;
  [[maybe_unused]] const ssize_t written = write(wakeUp_.back().get(), "", 1);
  errno = before;
}

void EventLoop::run() {
  while (!isQuitting_) {
    runPosted();
    if (!isQuitting_) {
      ringDue();
    }
    if (!isQuitting_) {
      wait();
    }
  }
  std::deque<std::function<void()>> dropped;
  const std::lock_guard lock(mutex_);
  dropped.swap(tasks_);
}

void EventLoop::watchDescriptor(int descriptor, std::function<void()> told) {
  watched_.push_back({descriptor, POLLIN, false, std::move(told)});
}

void EventLoop::watchForClosing(int descriptor, std::function<void()> closed) {
  watched_.push_back({descriptor, 0, true, std::move(closed)});
}

std::unique_ptr<Alarm> EventLoop::makeAlarm() {
  return std::make_unique<LoopAlarm>(*this);
}

void EventLoop::ringAlarms() {
  // One that rings may set others, or end them.
  const std::vector<LoopAlarm*> alarms = alarms_;
  for (LoopAlarm* alarm : alarms) {
    if (std::ranges::find(alarms_, alarm) != alarms_.end()) {
      alarm->ring();
    }
  }
}

void EventLoop::wait() {
  std::vector<pollfd> polled{{wakeUp_.front().get(), POLLIN, 0}};
  // Counted in poll's own type, which differs between the systems.
  nfds_t count = 1;
  for (const Watched& watched : watched_) {
    polled.push_back({watched.descriptor, watched.events, 0});
    ++count;
  }
  if (poll(polled.data(), count, timeout()) <= 0) {
    return;
  }
  if (polled[0].revents != 0) {
    std::array<std::byte, 64> bytes{};
    while (read(wakeUp_.front().get(), bytes.data(), bytes.size()) > 0) {
    }
  }
  std::vector<std::function<void()>> told;
  for (std::size_t index = watched_.size(); index-- > 0;) {
    if (polled[index + 1].revents == 0) {
      continue;
    }
    const bool isGone = (polled[index + 1].revents & POLLNVAL) != 0;
    if (!isGone) {
      told.push_back(watched_[index].told);
    }
    if (watched_[index].isOnce || isGone) {
      watched_.erase(watched_.begin() + static_cast<std::ptrdiff_t>(index));
    }
  }
  for (const auto& tell : told) {
    tell();
  }
}

void EventLoop::runPosted() {
  while (!isQuitting_) {
    std::function<void()> task;
    {
      const std::lock_guard lock(mutex_);
      if (tasks_.empty()) {
        return;
      }
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
  }
}

void EventLoop::ringDue() {
  const std::chrono::nanoseconds now = clock_.sinceBoot();
  const std::vector<LoopAlarm*> alarms = alarms_;
  for (LoopAlarm* alarm : alarms) {
    if (std::ranges::find(alarms_, alarm) != alarms_.end() && alarm->isSet() && alarm->due() <= now) {
      alarm->ring();
    }
  }
}

int EventLoop::timeout() const {
  {
    const std::lock_guard lock(mutex_);
    if (!tasks_.empty()) {
      return 0;
    }
  }
  const LoopAlarm* next = nullptr;
  for (const LoopAlarm* alarm : alarms_) {
    if (alarm->isSet() && (next == nullptr || alarm->due() < next->due())) {
      next = alarm;
    }
  }
  if (next == nullptr) {
    return -1;
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(next->due() - clock_.sinceBoot()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, INT_MAX));
}

QuitOnSignals::QuitOnSignals(EventLoop& loop) {
  loopToQuit = &loop;
  for (std::size_t index = 0; index < kQuittingSignals.size(); ++index) {
    struct sigaction action {};
    action.sa_handler = quitLoop;
    sigaction(kQuittingSignals[index], &action, &formerActions[index]);
  }
}

QuitOnSignals::~QuitOnSignals() {
  for (std::size_t index = 0; index < kQuittingSignals.size(); ++index) {
    sigaction(kQuittingSignals[index], &formerActions[index], nullptr);
  }
  loopToQuit = nullptr;
}

}  // namespace cirrovane
