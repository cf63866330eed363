#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderArgument.h"
#include "cli/ReportText.h"
#include "core/FolderNaming.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using Seconds = std::chrono::duration<double>;
using std::chrono::steady_clock;

/// Beyond this a number of seconds means "for ever", and would not fit the clock's arithmetic.
constexpr Seconds kLongestTime{1e9};
constexpr Seconds kDefaultInterval{5};
/// Scans follow each other no faster, whatever the user asks for: the machine has other things to do.
constexpr Seconds kShortestInterval{0.01};

struct CheckOptions {
  std::vector<std::string> folders;
  bool waits = false;
  /// Seconds; absent for no limit.
  std::optional<double> timeout;
  double interval = kDefaultInterval.count();
};

steady_clock::duration asDuration(double seconds) {
  return std::chrono::duration_cast<steady_clock::duration>(std::min(Seconds(seconds), kLongestTime));
}

std::vector<WatchFolder> namedFolders(const std::vector<std::string>& arguments) {
  UUIDGenerator makeID;
  std::vector<WatchFolder> folders;
  for (const std::string& argument : arguments) {
    const std::string path = absolutePath(argument);
    folders.push_back({makeID(), watchFolderName(path), path});
  }
  return folders;
}

/// The folders are asked for before each scan, because the watchlist may change while we wait.
SyncHealthReport scanUntilSafe(const CheckOptions& options, const std::function<std::vector<WatchFolder>()>& folders,
                               const CommandContext& context) {
  std::optional<steady_clock::time_point> deadline;
  if (options.timeout) {
    deadline = steady_clock::now() + asDuration(*options.timeout);
  }
  while (true) {
    SyncHealthReport report = context.scan(folders());
    const auto now = steady_clock::now();
    if (report.safeToClose || !options.waits || (deadline && now >= *deadline)) {
      return report;
    }
    auto pause = asDuration(std::max(options.interval, kShortestInterval.count()));
    if (deadline) {
      pause = std::min(pause, *deadline - now);
    }
    if (context.err.isTerminal()) {
      context.err.write(
          fmt::format("Not safe yet. {} Looking again in {:.3g} s.\n", report.summary, Seconds(pause).count()));
    }
    std::this_thread::sleep_for(pause);
  }
}

// The parser's own ranges let "nan" pass, which is no time to wait, and name their limits with hundreds of digits.

std::string complaintAboutTimeout(const std::string& text) {
  return numberOf(text) >= 0.0 ? "" : text + " is no number of seconds from 0 on";
}

std::string complaintAboutInterval(const std::string& text) {
  return numberOf(text) > 0.0 ? "" : text + " is no number of seconds above 0";
}

ExitStatus check(const CheckOptions& options, CommandContext& context) {
  const auto folders = [&] {
    return options.folders.empty() ? context.openWatchlist()->folders() : namedFolders(options.folders);
  };
  const SyncHealthReport report = scanUntilSafe(options, folders, context);
  if (context.wantsJSON) {
    writeJSONDocument(context.out, report);
  } else {
    context.out.write(reportText(report, TextStyle(context.out.isColoured())));
  }
  return report.safeToClose ? ExitStatus::done : ExitStatus::notSafe;
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
                                 "  cirrovanectl check --json | jq -r '.blockers[].filePath'");
  addArgument(command, {.name = "FOLDER", .help = "Folders to scan", .complaint = isFolderArgument}, options->folders);
  CLI::Option& wait = addFlag(command, "--wait", options->waits, "Scan again until it is safe, or time is up");
  addArgument(command,
              {.name = "--timeout",
               .help = "With --wait: give up after S seconds (default: never)",
               .valueName = "S",
               .complaint = complaintAboutTimeout,
               .neededOption = &wait},
              options->timeout);
  addArgument(command,
              {.name = "--interval",
               .help = "With --wait: seconds between two scans (default: 5)",
               .valueName = "S",
               .complaint = complaintAboutInterval,
               .neededOption = &wait},
              options->interval);
  addJSONOption(command, chosen);
  onChosen(command, [&chosen, options] {
    chosen.run = [options](CommandContext& context) { return check(*options, context); };
  });
}

}  // namespace cirrovane
