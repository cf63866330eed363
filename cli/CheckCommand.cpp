#include "base/Heaps.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/CoverageText.h"
#include "cli/LiveSession.h"
#include "cli/UploadLine.h"
#include "cli/WaitOptions.h"
#include "cli/WatchLine.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// Scans follow each other no faster, whatever the user asks for: the machine has other things to do.
constexpr std::chrono::duration<double> kShortestInterval{0.01};

struct CheckOptions {
  std::vector<std::string> folders;
  bool waits = false;
  /// Whether the coverage has to be complete too.
  bool isStrict = false;
  /// Seconds; absent for no limit.
  std::optional<double> timeout;
  /// Seconds; absent where full scans come at the verdict's own pace.
  std::optional<double> interval;
};

struct WatchOptions {
  std::vector<std::string> folders;
  /// Seconds; absent for no limit.
  std::optional<double> timeout;
};

ExitStatus statusOf(const SyncHealthReport& report) {
  return report.safeToClose ? ExitStatus::done : ExitStatus::notSafe;
}

ExitStatus waitUntilSafe(const CheckOptions& options, CommandContext& context) {
  limitHeaps();
  LivePace pace{.isWaiting = true, .interval = asDuration(options.interval)};
  if (pace.interval) {
    pace.interval = std::max(*pace.interval, std::chrono::duration_cast<std::chrono::nanoseconds>(kShortestInterval));
  }
  LiveSession session(context, options.folders, pace);
  // Kept, so that no later report can lie where it lay.
  std::optional<Shared<SyncHealthReport>> told;
  std::optional<Shared<SyncHealthReport>> last;
  UploadLine uploads(context.uploads(), *context.machine.fileSystem, *context.machine.clock, context.err);
  if (context.err.isErasable()) {
    session.lookEvery(kUploadsShown);
  }
  std::unique_ptr<VouchedYes> strict;
  if (options.isStrict) {
    strict = session.waitForCoverage();
  }
  bool isVouchedFor = false;
  session.run(asDuration(options.timeout), [&] {
    last = session.verdict().report().value();
    if (!last) {
      return false;
    }
    const SyncHealthReport& report = **last;
    isVouchedFor = strict ? strict->isVouchedFor(report.safeToClose, session.verdict().folders()) : report.safeToClose;
    // An answer takes one look at the coverage, as it takes one scan.
    const bool hasAnswer = !strict || !report.safeToClose || strict->hasLooked();
    const bool isOver = isVouchedFor || (session.isTimeUp() && hasAnswer);
    if (!isOver && context.err.isTerminal() && (!told || &**told != &report)) {
      told = last;
      uploads.erase();
      context.err.write(report.safeToClose ? "Not vouched for yet. Waiting.\n"
                                           : fmt::format("Not safe yet. {} Waiting.\n", report.summary));
    }
    if (isOver) {
      uploads.erase();
    } else {
      uploads.show(report);
    }
    return isOver;
  });
  if (!last) {
    return ExitStatus::notSafe;
  }
  writeReport(**last, context);
  if (const auto left = strict ? strict->lastReport() : std::nullopt) {
    context.err.write(gapLines(**left));
  }
  const ExitStatus status = isVouchedFor ? ExitStatus::done : ExitStatus::notSafe;
  session.leave(status);
  return status;
}

std::string complaintAboutInterval(const std::string& text) {
  return numberOf(text) > 0.0 ? "" : text + " is no number of seconds above 0";
}

ExitStatus check(const CheckOptions& options, CommandContext& context) {
  if (options.waits) {
    return waitUntilSafe(options, context);
  }
  const std::vector<WatchFolder> folders = context.foldersMeantBy(options.folders);
  const SyncHealthReport report = context.scan(folders);
  writeReport(report, context);
  if (!options.isStrict) {
    return statusOf(report);
  }
  const CoverageReport coverage = context.lookAtCoverage(folders);
  context.err.write(gapLines(coverage));
  return coverage.complete ? statusOf(report) : ExitStatus::notSafe;
}

ExitStatus watch(const WatchOptions& options, CommandContext& context) {
  limitHeaps();
  LiveSession session(context, options.folders, {.isWaiting = true, .interval = std::nullopt});
  std::optional<WatchLine> last;
  session.endOnSignals();
  session.endOnClosedOutput();
  session.run(asDuration(options.timeout), [&] {
    const std::optional<Shared<SyncHealthReport>>& report = session.verdict().report().value();
    if (!report || !session.verdict().hasWatchAnswered()) {
      return false;
    }
    const WatchLine line = watchLine(**report, session.verdict(), *context.machine.clock);
    bool isHeard = true;
    if (!last || !line.saysTheSame(*last)) {
      const TextStyle style(context.out.isColoured());
      isHeard = context.out.write(context.wantsJSON ? lineOfJSON(line) : lineOfText(line, style));
      last = line;
    }
    return !isHeard || session.isTimeUp();
  });
  const ExitStatus status = last && last->safeToClose ? ExitStatus::done : ExitStatus::notSafe;
  session.leave(status);
  return status;
}

}  // namespace

void addCheckCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App& command = addCommand(app, "check", "Scan folders and say whether it is safe to close",
                                 "Without a FOLDER, the watchlist is scanned. Nothing is recorded.\n\n"
                                 "Examples:\n"
                                 "  cirrovanectl check\n"
                                 "  cirrovanectl check ~/Documents/Clients ~/Invoices\n"
                                 "  cirrovanectl check --wait --timeout 600 && systemctl suspend\n"
                                 "  cirrovanectl check --strict ~/Documents/Clients\n"
                                 "  cirrovanectl check --json | jq -r '.blockers[].filePath'");
  addArgument(command, {.name = "FOLDER", .help = "Folders to scan", .complaint = complaintAboutFolder},
              options->folders);
  CLI::Option& wait = addFlag(command, "--wait", options->waits, "Wait until it is safe, or time is up");
  addArgument(command,
              {.name = "--timeout",
               .help = "With --wait: give up after S seconds (default: never)",
               .valueName = "S",
               .complaint = complaintAboutTimeout,
               .neededOption = &wait},
              options->timeout);
  addArgument(command,
              {.name = "--interval",
               .help = "With --wait: scan everything again every S seconds (default: when the files ask for it)",
               .valueName = "S",
               .complaint = complaintAboutInterval,
               .neededOption = &wait},
              options->interval);
  addFlag(command, "--strict", options->isStrict, "Safe only if nothing is left out either (see coverage)");
  addJSONOption(command, chosen);
  onChosen(command, [&chosen, options] {
    chosen.run = [options](CommandContext& context) { return check(*options, context); };
  });
}

void addWatchCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto options = std::make_shared<WatchOptions>();
  CLI::App& command =
      addCommand(app, "watch", "Say whether it is safe to close, now and at every change",
                 "Without a FOLDER, the watchlist is followed. Nothing is recorded. Ends with the exit\n"
                 "status of the last verdict.\n\n"
                 "Examples:\n"
                 "  cirrovanectl watch\n"
                 "  cirrovanectl watch ~/Documents/Clients --timeout 60\n"
                 "  cirrovanectl watch --json | jq --unbuffered .safeToClose");
  addArgument(command, {.name = "FOLDER", .help = "Folders to watch", .complaint = complaintAboutFolder},
              options->folders);
  addArgument(command,
              {.name = "--timeout",
               .help = "End after S seconds (default: never)",
               .valueName = "S",
               .complaint = complaintAboutTimeout},
              options->timeout);
  addFlag(command, "--json", chosen.wantsJSON, "Print one JSON object a line instead of text");
  onChosen(command, [&chosen, options] {
    chosen.run = [options](CommandContext& context) { return watch(*options, context); };
  });
}

}  // namespace cirrovane
