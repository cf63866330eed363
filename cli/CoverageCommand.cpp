#include "base/Path.h"
#include "base/UTF8.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/CoverageText.h"
#include "cli/FolderArgument.h"
#include "cli/TextStyle.h"
#include "coordinator/CoverageWords.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {
namespace {

using Arguments = std::vector<std::string>;

constexpr std::int64_t kMostDays = 3650;

struct Acknowledging {
  Arguments paths;
  /// Absent for good.
  std::optional<std::int64_t> days;
};

ExitStatus showCoverage(const Arguments& folders, CommandContext& context) {
  const CoverageReport report = context.lookAtCoverage(context.foldersMeantBy(folders));
  if (context.wantsJSON) {
    writeJSONDocument(context.out, report);
  } else {
    context.out.write(coverageText(report, TextStyle(context.out.isColoured())));
  }
  return report.complete ? ExitStatus::done : ExitStatus::notSafe;
}

ExitStatus showAcknowledged(CommandContext& context) {
  const std::vector<Acknowledgement> current = makeCoverageKeeper(context.machine)->acknowledgements();
  if (context.wantsJSON) {
    writeJSONDocument(context.out, current);
  } else {
    context.out.write(acknowledgementText(current, TextStyle(context.out.isColoured())));
  }
  return ExitStatus::done;
}

std::vector<std::string> absolutePaths(const Arguments& arguments) {
  std::vector<std::string> paths;
  for (const std::string& argument : arguments) {
    paths.emplace_back(withoutTrailingSlash(absolutePath(argument)));
  }
  return paths;
}

ExitStatus acknowledge(const Acknowledging& wanted, CommandContext& context) {
  const std::vector<std::string> paths = absolutePaths(wanted.paths);
  for (const std::string& path : paths) {
    // The file could only hold another name, which would cover nothing.
    if (!isValidUTF8(path)) {
      return reportFailure(context, notUTF8Text(path));
    }
  }
  std::optional<Time> expiresAt;
  if (wanted.days) {
    expiresAt = context.machine.clock->now() + std::chrono::days(*wanted.days);
  }
  if (const auto failure = makeCoverageKeeper(context.machine)->acknowledge(paths, expiresAt)) {
    return reportFailure(context, notAcknowledgedText(failure->message));
  }
  return showAcknowledged(context);
}

ExitStatus forget(const Arguments& arguments, CommandContext& context) {
  if (const auto failure = makeCoverageKeeper(context.machine)->forget(absolutePaths(arguments))) {
    return reportFailure(context, failure->message);
  }
  return showAcknowledged(context);
}

std::string complaintAboutDays(const std::string& text) {
  const std::optional<std::int64_t> days = wholeNumberOf(text);
  return days && *days >= 1 && *days <= kMostDays ? "" : text + " is no number of days from 1 to 3650";
}

std::string complaintAboutPath(const std::string& text) {
  return text.empty() ? "A path cannot be empty." : "";
}

}  // namespace

void addCoverageCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto folders = std::make_shared<Arguments>();
  CLI::App& command =
      addCommand(app, "coverage", "Say what the verdict does not vouch for",
                 "Looks at hidden items, packages, items that iCloud leaves out and folders that cannot be\n"
                 "listed. Without a FOLDER, at those of the watchlist. Ends with 0 when there is nothing that\n"
                 "you do not know of. A folder named like a verb is given as ./acknowledge.\n\n"
                 "Examples:\n"
                 "  cirrovanectl coverage\n"
                 "  cirrovanectl coverage acknowledge ~/Documents/Clients/build.nosync --days 30\n"
                 "  cirrovanectl coverage --json | jq -r '.gaps[] | .kind + \" \" + .path'");
  takeVerbs(command);
  addArgument(command, {.name = "FOLDER", .help = "Folders to look at", .complaint = complaintAboutFolder}, *folders);
  addJSONOption(command, chosen);

  const auto wanted = std::make_shared<Acknowledging>();
  CLI::App& acknowledgeVerb = addCommand(command, "acknowledge", "Leave out what is at a path and below it");
  addArgument(acknowledgeVerb,
              {.name = "PATH",
               .help = "What you know of; it need not exist",
               .isRequired = true,
               .complaint = complaintAboutPath},
              wanted->paths);
  addArgument(acknowledgeVerb,
              {.name = "--days",
               .help = "For so many days, 1 to 3650 (default: for good)",
               .valueName = "N",
               .complaint = complaintAboutDays},
              wanted->days);
  addJSONOption(acknowledgeVerb, chosen);

  const auto forgotten = std::make_shared<Arguments>();
  CLI::App& forgetVerb = addCommand(command, "forget", "Take an acknowledgement back");
  addArgument(forgetVerb,
              {.name = "PATH", .help = "Acknowledged paths", .isRequired = true, .complaint = complaintAboutPath},
              *forgotten);
  addJSONOption(forgetVerb, chosen);

  CLI::App& listVerb = addCommand(command, "acknowledged", "Show what is acknowledged");
  addJSONOption(listVerb, chosen);

  onChosen(command, [&chosen, folders, &acknowledgeVerb, wanted, &forgetVerb, forgotten, &listVerb] {
    const bool hasVerb = isChosen(acknowledgeVerb) || isChosen(forgetVerb) || isChosen(listVerb);
    if (hasVerb && !folders->empty()) {
      refuseUsage("FOLDER and a verb exclude each other");
    }
    if (isChosen(acknowledgeVerb)) {
      chosen.run = [wanted](CommandContext& context) { return acknowledge(*wanted, context); };
    } else if (isChosen(forgetVerb)) {
      chosen.run = [forgotten](CommandContext& context) { return forget(*forgotten, context); };
    } else if (isChosen(listVerb)) {
      chosen.run = showAcknowledged;
    } else {
      chosen.run = [folders](CommandContext& context) { return showCoverage(*folders, context); };
    }
  });
}

}  // namespace cirrovane
