#include "cli/CoverageText.h"

#include "base/DisplayText.h"
#include "cli/LocalTime.h"

#include <cstdint>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string counted(std::int64_t count, std::string_view singular, std::string_view plural) {
  return fmt::format("{} {}", count, count == 1 ? singular : plural);
}

std::string examinedText(const CoverageExamined& examined) {
  return fmt::format("{}, {} and {} in them", counted(examined.hidden, "hidden item", "hidden items"),
                     counted(examined.packages, "package", "packages"), counted(examined.inPackages, "item", "items"));
}

std::string gapText(const CoverageGap& gap) {
  const std::string rule = gap.rule ? fmt::format("  ({})", displayText(*gap.rule)) : "";
  return displayText(gap.path) + rule;
}

std::int64_t shownOf(const CoverageReport& report, GapKind kind) {
  std::int64_t shown = 0;
  for (const CoverageGap& gap : report.gaps) {
    shown += gap.kind == kind ? 1 : 0;
  }
  return shown;
}

std::string moreText(std::int64_t count) {
  return count > 0 ? fmt::format("    and {} more\n", count) : "";
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
    text += fmt::format("\n{}\n  {} {}\n", style.bold(fmt::format("{} ({})", displayTitle(kind), count)),
                        style.dim(meaningOf(kind)), style.dim(remedyFor(kind)));
    for (const CoverageGap& gap : report.gaps) {
      text += gap.kind == kind ? fmt::format("    {}\n", gapText(gap)) : "";
    }
    text += moreText(count - shownOf(report, kind));
  }
  if (!report.notExamined.empty()) {
    text += fmt::format("\n{}\n", style.bold("Not Looked At"));
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
  text += moreText(report.gapCounts.all() - static_cast<std::int64_t>(report.gaps.size()));
  for (const std::string& path : report.notExamined) {
    text += fmt::format("  {:<26}{}\n", "Not Looked At", displayText(path));
  }
  return text;
}

std::string coverageSentence(const CoverageReport& report) {
  if (report.complete) {
    const std::string known = report.acknowledged > 0
                                  ? fmt::format("; {} acknowledged", counted(report.acknowledged, "gap is", "gaps are"))
                                  : "";
    return fmt::format("Complete: {} looked at{}.", examinedText(report.examined), known);
  }
  std::string parts;
  for (const GapKind kind : kAllGapKinds) {
    if (const std::int64_t count = report.gapCounts.of(kind); count > 0) {
      parts += fmt::format("{}{} {}", parts.empty() ? "" : ", ", count, displayTitle(kind));
    }
  }
  if (!report.notExamined.empty()) {
    parts += fmt::format("{}{} Not Looked At", parts.empty() ? "" : ", ", report.notExamined.size());
  }
  return fmt::format("Not vouched for: {}. See cirrovanectl coverage.", parts);
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
