#pragma once

#include "base/Published.h"
#include "coordinator/LiveVerdict.h"
#include "coordinator/leaving/AwakeKeeper.h"
#include "coordinator/leaving/LeaveQuestion.h"
#include "coordinator/leaving/LeaveWait.h"
#include "platform/PowerGate.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What the user lets this program do about leaving. All of it is off at first.
struct LeavePreferences {
  bool keepsAwakeWhilePending = false;
  AwakeRules awake;
  bool asksBeforeShutdown = false;

  friend bool operator==(const LeavePreferences&, const LeavePreferences&) = default;
};

using MakePowerGate = std::function<std::unique_ptr<PowerGate>(PowerGateListener& listener)>;

/// What a leave gate needs; outlives it and all work that it has under way.
struct LeaveGateEnvironment {
  Executor& main;
  /// Executors of their own, since a look and the system's answers take their time.
  Executor& looking;
  Executor& acting;
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  struct Alarms {
    Alarm& look;
    Alarm& limit;
    Alarm& power;
    Alarm& question;
  } alarms;
  LiveVerdict& live;
  std::shared_ptr<const CoverageKeeper> coverage;
  MakePowerGate makeGate;
  /// What the machine draws its power from. Callable on any thread.
  std::function<PowerSupply()> supply;
};

/// All that a running application does about the moment when its user leaves: it waits until that is safe, keeps the
/// machine awake meanwhile, and asks before a shutdown that comes too early. Main thread only; it may be destroyed at
/// any time, and then holds nothing.
class LeaveGate {
 public:
  explicit LeaveGate(const LeaveGateEnvironment& environment);
  ~LeaveGate();

  LeaveGate(const LeaveGate&) = delete;
  LeaveGate& operator=(const LeaveGate&) = delete;

  const Published<LeaveStanding>& wait() const { return wait_.standing(); }
  const Published<AwakeStanding>& awake() const { return awake_.standing(); }
  const Published<QuestionState>& question() const { return question_.state(); }
  /// Why nobody can be asked before a shutdown, in a sentence for people; absent while one can, or need not be.
  const Published<std::optional<std::string>>& obstacleToAsking() const { return obstacleToAsking_; }

  void setPreferences(const LeavePreferences& preferences);

  void leaveWhenSafe(PowerAct act);
  void cancel() { wait_.cancel(); }
  /// Answers the question: "Wait", or "Leave Anyway".
  void answerWait();
  void answerLeave() { question_.take(QuestionEvent::leaveAnyway); }
  /// To be told when the machine wakes.
  void wake() { look(); }

 private:
  class Announcements;

  void lookSoon();
  void look();
  void announced(PowerAct act);
  void stays(PowerAct act);
  /// Whether the verdict, as it is shown, is a YES.
  bool isSafe() const;
  std::optional<std::string> reasonToStayAwake() const;
  void ask(bool asks);

  LeaveGateEnvironment environment_;
  LeavePreferences preferences_;
  std::unique_ptr<Announcements> announcements_;
  /// For what is done; shared with what is under way.
  std::shared_ptr<PowerGate> gate_;
  /// Announces, while the user wants to be asked.
  std::unique_ptr<PowerGate> announcer_;
  Published<std::optional<std::string>> obstacleToAsking_;
  LeaveWait wait_;
  AwakeKeeper awake_;
  LeaveQuestion question_;
  std::vector<Subscription> subscriptions_;
  bool isLookPosted_ = false;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
