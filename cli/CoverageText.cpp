#include "cli/CoverageText.h"

#include "base/DisplayText.h"
#include "cli/LocalTime.h"
#include "coordinator/CoverageWords.h"

#include <cstdint>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string counted(std::int64_t count, std::string_view singular, std::string_view plural) {
  return fmt::format("{} {}", count, count == 1 ? singular : plural);
}

std::string gapText(const CoverageGap& gap) {
  const std::string rule = gap.rule ? fmt::format("  ({})", displayText(*gap.rule)) : "";
  return displayText(gap.path) + rule;
}

}  // namespace

std::string coverageText(const CoverageReport& report, const TextStyle& style) {
  const HealthState state = report.complete ? HealthState::safe : HealthState::warning;
  std::string text = style.bold(style.inStateColour(state, report.complete ? "COMPLETE" : "NOT COMPLETE"));
  text += fmt::format("\n\n  Looked at {}.\n", examinedText(report.examined));
  if (report.acknowledged > 0) {
    text += fmt::format("  {} left out.\n", counted(report.acknowledged, "acknowledged gap", "acknowledged gaps"));
  }
  for (const GapKind kind : kAllGapKinds) {
    const std::int64_t count = report.gapCounts.of(kind);
    if (count == 0) {
      continue;
    }
    text += fmt::format("\n{}\n  {}\n", style.bold(fmt::format("{} ({})", displayTitle(kind), count)),
                        style.dim(adviceOn(kind)));
    for (const CoverageGap& gap : report.gaps) {
      text += gap.kind == kind ? fmt::format("    {}\n", gapText(gap)) : "";
    }
    if (const std::string more = notListedText(report, kind); !more.empty()) {
      text += fmt::format("    {}\n", more);
    }
  }
  if (!report.notExamined.empty()) {
    text += fmt::format("\n{}\n", style.bold(std::string(kNotLookedAtTitle)));
    for (const std::string& path : report.notExamined) {
      text += fmt::format("    {}\n", displayText(path));
    }
  }
  return text;
}

std::string gapLines(const CoverageReport& report) {
  if (report.complete) {
    return "";
  }
  std::string text = "The verdict does not vouch for all:\n";
  for (const CoverageGap& gap : report.gaps) {
    text += fmt::format("  {:<26}{}\n", displayTitle(gap.kind), gapText(gap));
  }
  if (const auto more = report.gapCounts.all() - static_cast<std::int64_t>(report.gaps.size()); more > 0) {
    text += fmt::format("    and {} more\n", more);
  }
  for (const std::string& path : report.notExamined) {
    text += fmt::format("  {:<26}{}\n", kNotLookedAtTitle, displayText(path));
  }
  return text;
}

std::string coverageSentence(const CoverageReport& report) {
  if (report.complete) {
    const std::string known = acknowledgedText(report.acknowledged);
    return fmt::format("Complete: {} looked at{}{}.", examinedText(report.examined), known.empty() ? "" : "; ", known);
  }
  return fmt::format("Not vouched for: {}. See cirrovanectl coverage.", gapSummary(report));
}

std::string acknowledgementText(const std::vector<Acknowledgement>& acknowledgements, const TextStyle& style) {
  if (acknowledgements.empty()) {
    return "Nothing is acknowledged.\n";
  }
  std::string text;
  for (const Acknowledgement& one : acknowledgements) {
    const std::string end = one.expiresAt ? "until " + localTimeText(*one.expiresAt) : "for good";
    text += fmt::format("{}\n  {}\n", displayText(one.path),
                        style.dim(fmt::format("since {}, {}", localTimeText(one.acknowledgedAt), end)));
  }
  return text;
}

}  // namespace cirrovane
