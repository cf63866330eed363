#include "base/DisplayText.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/CoverageText.h"
#include "cli/LocalTime.h"
#include "cli/TextStyle.h"
#include "coordinator/Explanation.h"

#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

class ExplanationPage {
 public:
  ExplanationPage(const Explanation& explanation, const CoverageReport& coverage, HealthState state,
                  const TextStyle& style, Output& out)
      : explanation_(explanation), coverage_(coverage), state_(state), style_(style), out_(out) {}

  void print() {
    const bool isSafe = explanation_.safeToClose;
    out_.write(style_.bold(style_.inVerdictColour(isSafe, state_, isSafe ? "SAFE TO CLOSE" : "NOT SAFE TO CLOSE")) +
               "\n");
    printTopBlocker();
    printCriteria();
    heading("Coverage");
    out_.write(fmt::format("  {}\n", coverageSentence(coverage_)));
    printHistory();
    printIncidents();
  }

 private:
  void heading(std::string_view text) { out_.write(fmt::format("\n{}\n", style_.bold(text))); }

  void printTopBlocker() {
    if (!explanation_.topBlocker) {
      return;
    }
    const SyncBlocker& blocker = *explanation_.topBlocker;
    heading("Top blocker");
    out_.write(fmt::format("  {:<23}{}\n", displayTitle(blocker.reason), displayText(blocker.filePath)));
    out_.write(fmt::format("  {:<23}{}\n", "", style_.dim(displayText(blocker.details))));
  }

  void printCriteria() {
    heading("Criteria");
    for (const SafetyCriterion& criterion : explanation_.criteria) {
      const std::string mark = criterion.isPassing ? style_.inStateColour(HealthState::safe, "pass")
                                                   : style_.inStateColour(HealthState::danger, "fail");
      out_.write(fmt::format("  {}  {:<28}{}\n", mark, criterion.title, style_.dim(criterion.detail)));
    }
  }

  void printHistory() {
    heading("History");
    out_.write(fmt::format("  {}\n", explanation_.recentStabilityText));
    printSnapshot("Last safe scan", explanation_.lastSafeSnapshot);
    printSnapshot("Last failed scan", explanation_.lastFailedSnapshot);
  }

  void printSnapshot(std::string_view label, const std::optional<ScanSnapshot>& snapshot) {
    if (!snapshot) {
      return;
    }
    const std::string cause =
        snapshot->topBlockerReason ? fmt::format("  {}", displayTitle(*snapshot->topBlockerReason)) : "";
    out_.write(fmt::format("  {:<18}{}{}\n", label, localTimeText(snapshot->timestamp), style_.dim(cause)));
  }

  void printIncidents() {
    heading("Incidents");
    out_.write(fmt::format("  {} active, {} of them recurring; {} resolved\n", explanation_.activeIncidentCount,
                           explanation_.recurringIncidentCount, explanation_.resolvedIncidentCount));
  }

  const Explanation& explanation_;
  const CoverageReport& coverage_;
  HealthState state_;
  const TextStyle& style_;
  Output& out_;
};

ExitStatus explainVerdict(CommandContext& context) {
  const std::vector<WatchFolder> folders = context.openWatchlist()->folders();
  const SyncHealthReport report = context.scan(folders);
  const auto history = context.openHistory();
  const auto incidents = context.openIncidents();
  const Explanation explanation = explain(report, history->snapshots(), incidents->records());
  if (context.wantsJSON) {
    writeJSONDocument(context.out, explanation);
  } else {
    const CoverageReport coverage = context.lookAtCoverage(folders);
    ExplanationPage(explanation, coverage, report.status, TextStyle(context.out.isColoured()), context.out).print();
  }
  return report.safeToClose ? ExitStatus::done : ExitStatus::notSafe;
}

}  // namespace

void addExplainCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command =
      addCommand(app, "explain", "Scan the watchlist and say why the verdict is what it is",
                 "Nothing is recorded.\n\n"
                 "Examples:\n"
                 "  cirrovanectl explain\n"
                 "  cirrovanectl explain --json | jq '.criteria[] | select(.isPassing | not) | .detail'");
  addJSONOption(command, chosen);
  onChosen(command, [&chosen] { chosen.run = explainVerdict; });
}

}  // namespace cirrovane
