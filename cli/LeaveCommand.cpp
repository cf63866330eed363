#include "base/Heaps.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/CoverageText.h"
#include "cli/LiveSession.h"
#include "cli/UploadLine.h"
#include "cli/WaitOptions.h"
#include "coordinator/leaving/AwakeKeeper.h"
#include "coordinator/leaving/LeaveWait.h"
#include "diagnostics/PowerReading.h"
#include "platform/PowerGate.h"
#include "platform/posix/ThreadExecutor.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

struct LeaveOptions {
  /// Seconds; absent for no limit.
  std::optional<double> timeout;
  std::string then = "nothing";
};

std::optional<PowerAct> actOf(const std::string& then) {
  if (then == "sleep") {
    return PowerAct::sleep;
  }
  return then == "shutdown" ? std::optional(PowerAct::shutdown) : std::nullopt;
}

/// A command asks for the machine's leave, and leaves what the machine announces to others.
class NoAnnouncements final : public PowerGateListener {
 public:
  void leaving(PowerAct /*act*/, std::chrono::milliseconds /*within*/) override {}
  void stays(PowerAct /*act*/) override {}
  void stands(std::optional<std::string> /*reasonAgainst*/) override {}
};

/// One `leave`: the wait, what keeps the machine awake meanwhile, and what is said of both.
class Leaving {
 public:
  explicit Leaving(CommandContext& context)
      : context_(context),
        session_(context, {}, {.isWaiting = true, .interval = std::nullopt}),
        gate_(context.machine.makePowerGate(announcements_)),
        lookAlarm_(session_.loop().makeAlarm()),
        limitAlarm_(session_.loop().makeAlarm()),
        powerAlarm_(session_.loop().makeAlarm()),
        wait_({.main = session_.loop(),
               .looking = session_.looks(),
               .acting = acting_,
               .monotonicClock = *context.machine.monotonicClock,
               .lookAlarm = *lookAlarm_,
               .limitAlarm = *limitAlarm_,
               .coverage = makeCoverageKeeper(context.machine),
               .sight = [this] { return sightOf(session_.verdict(), *context_.machine.monotonicClock); },
               .folders = [this] { return session_.verdict().folders(); },
               .perform = [gate = gate_](PowerAct act) { return gate->perform(act); }}),
        awake_({.main = session_.loop(),
                .acting = acting_,
                .clock = *context.machine.clock,
                .monotonicClock = *context.machine.monotonicClock,
                .alarm = *powerAlarm_,
                .supply = [&system = *context.machine.systemInformation] { return powerSupply(system.powerSources()); },
                .hold = [gate = gate_](const std::string& reason) { return gate->keepAwake(reason); }}),
        uploads_(context.uploads(), *context.machine.fileSystem, *context.machine.clock, context.err) {
    subscriptions_.push_back(wait_.standing().afterChange([this](const LeaveStanding& standing) {
      if (standing.state == LeaveState::acting) {
        // Nothing may be written any more once the machine leaves.
        writeReport();
      }
      session_.lookSoon();
    }));
    subscriptions_.push_back(awake_.standing().afterChange(
        [this](const AwakeStanding& standing) { sayWhatKeepsItFromStayingAwake(standing); }));
  }

  ExitStatus run(const LeaveOptions& options) {
    session_.endOnSignals();
    if (context_.err.isErasable()) {
      session_.lookEvery(kUploadsShown);
    }
    wait_.begin({actOf(options.then), asDuration(options.timeout)});
    awake_.want(std::string(kReasonToWaitAwake));
    session_.run(std::nullopt, [this] { return look(); });
    uploads_.erase();
    awake_.want(std::nullopt);
    const ExitStatus status = conclude();
    session_.leave(status);
    if (acting_.isBusy()) {
      session_.endAtOnce(status);
    }
    return status;
  }

 private:
  bool look() {
    wait_.look();
    const bool isOver = !wait_.standing().value().isWaiting();
    last_ = session_.verdict().report().value();
    if (!isOver && last_) {
      const SyncHealthReport& report = **last_;
      if (context_.err.isTerminal() && (!told_ || &**told_ != &report)) {
        told_ = last_;
        uploads_.erase();
        context_.err.write(report.safeToClose ? "Not vouched for yet. Waiting.\n"
                                              : fmt::format("Not safe yet. {} Waiting.\n", report.summary));
      }
      uploads_.show(report);
    }
    return isOver;
  }

  void sayWhatKeepsItFromStayingAwake(const AwakeStanding& standing) {
    if (standing.obstacle != AwakeObstacle::none) {
      uploads_.erase();
      context_.err.write(fmt::format("The machine may fall asleep meanwhile. {}\n", standing.reason));
    }
  }

  void writeReport() {
    if (const auto& report = session_.verdict().report().value(); report && !isWritten_) {
      isWritten_ = true;
      uploads_.erase();
      cirrovane::writeReport(**report, context_);
    }
  }

  ExitStatus conclude() {
    writeReport();
    const LeaveStanding& standing = wait_.standing().value();
    if (!standing.outcome) {
      return ExitStatus::notSafe;
    }
    switch (*standing.outcome) {
      case LeaveOutcome::done:
        return ExitStatus::done;
      case LeaveOutcome::refused:
        return reportFailure(context_, "It is safe, but the machine does not leave: " + standing.refusal);
      case LeaveOutcome::slept:
        context_.err.write("The machine slept meanwhile, so nothing is done any more.\n");
        return ExitStatus::notSafe;
      case LeaveOutcome::lastingGaps:
      case LeaveOutcome::timeUp:
        if (const auto& coverage = wait_.coverage(); coverage && last_ && (*last_)->safeToClose) {
          context_.err.write(gapLines(**coverage));
        }
        return ExitStatus::notSafe;
      case LeaveOutcome::cancelled:
        break;
    }
    return ExitStatus::notSafe;
  }

  CommandContext& context_;
  LiveSession session_;
  NoAnnouncements announcements_;
  std::shared_ptr<PowerGate> gate_;
  ThreadExecutor acting_;
  std::unique_ptr<Alarm> lookAlarm_;
  std::unique_ptr<Alarm> limitAlarm_;
  std::unique_ptr<Alarm> powerAlarm_;
  LeaveWait wait_;
  AwakeKeeper awake_;
  UploadLine uploads_;
  /// Kept, so that no later report can lie where it lay.
  std::optional<Shared<SyncHealthReport>> last_;
  std::optional<Shared<SyncHealthReport>> told_;
  bool isWritten_ = false;
  std::vector<Subscription> subscriptions_;
};

ExitStatus leave(const LeaveOptions& options, CommandContext& context) {
  limitHeaps();
  return Leaving(context).run(options);
}

}  // namespace

void addLeaveCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto options = std::make_shared<LeaveOptions>();
  CLI::App& command =
      addCommand(app, "leave", "Wait until it is safe to close, then sleep or shut down",
                 "Waits for a verdict that holds and leaves nothing out, and keeps the machine awake meanwhile\n"
                 "(not on a battery below 30%). Ends with 1 when the time is up, and as soon as only gaps are\n"
                 "left that waiting cannot close; with 3 where it is safe, but the machine does not leave.\n\n"
                 "Examples:\n"
                 "  cirrovanectl leave --then sleep\n"
                 "  cirrovanectl leave --timeout 3600 --then shutdown\n"
                 "  cirrovanectl leave && say \"You can close the lid\"");
  addArgument(command,
              {.name = "--timeout",
               .help = "Give up after S seconds (default: never)",
               .valueName = "S",
               .complaint = complaintAboutTimeout},
              options->timeout);
  addArgument(command,
              {.name = "--then",
               .help = "What to do once it is safe (default: nothing)",
               .choices = {"nothing", "sleep", "shutdown"}},
              options->then);
  addJSONOption(command, chosen);
  onChosen(command, [&chosen, options] {
    chosen.run = [options](CommandContext& context) { return leave(*options, context); };
  });
}

}  // namespace cirrovane
