#pragma once

#include "base/Published.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

namespace cirrovane {

/// Where the question before a shutdown stands.
enum class QuestionState : std::uint8_t {
  /// Nothing is announced, or the machine may go on with it.
  calm,
  /// The user is asked.
  asked,
  /// The user wants to wait, and the machine waits for as long as it does.
  staying,
};

/// What happens to the question.
enum class QuestionEvent : std::uint8_t {
  /// A shutdown is announced while it is not safe, or while it is.
  announcedUnsafe,
  announcedSafe,
  /// The user's answers: "Wait" and "Leave Anyway".
  wait,
  leaveAnyway,
  /// Nobody answered in time.
  silence,
  /// It is safe by now.
  safe,
  /// The shutdown does not happen.
  calledOff,
};

struct QuestionEdge {
  QuestionState from;
  QuestionEvent event;
  QuestionState to;
  /// Whether the machine is told to go on.
  bool letsGo;

  friend bool operator==(const QuestionEdge&, const QuestionEdge&) = default;
};

/// Every edge, by the states in their order.
std::span<const QuestionEdge> questionTable();

/// Asks the user before the machine shuts down while that is not safe. Main thread only; it may be destroyed at any
/// time, and then lets go of nothing by itself.
class LeaveQuestion {
 public:
  /// Without an answer in this time the machine goes on, or sooner where it does not wait that long.
  static constexpr std::chrono::seconds kPatience{35};

  /// `letGo` has the machine go on with what it announced. The alarm is this question's own; both outlive it.
  LeaveQuestion(Alarm& alarm, const MonotonicClock& monotonicClock, std::function<void()> letGo)
      : alarm_(alarm), monotonicClock_(monotonicClock), letGo_(std::move(letGo)) {}
  ~LeaveQuestion() { alarm_.clear(); }

  LeaveQuestion(const LeaveQuestion&) = delete;
  LeaveQuestion& operator=(const LeaveQuestion&) = delete;

  const Published<QuestionState>& state() const { return state_; }
  /// How long the latest question waits for an answer.
  std::chrono::milliseconds patience() const { return patience_; }

  /// A shutdown is announced, which waits that long.
  void announce(bool isSafe, std::chrono::milliseconds within);
  void take(QuestionEvent event);

 private:
  /// An alarm may ring before its time.
  void awaitDeadline();

  Alarm& alarm_;
  const MonotonicClock& monotonicClock_;
  std::function<void()> letGo_;
  std::chrono::milliseconds patience_ = kPatience;
  std::chrono::nanoseconds deadline_{0};
  Published<QuestionState> state_{QuestionState::calm};
};

}  // namespace cirrovane
