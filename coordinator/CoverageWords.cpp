#include "coordinator/CoverageWords.h"

#include <algorithm>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string counted(std::int64_t count, std::string_view singular, std::string_view plural) {
  return fmt::format("{} {}", count, count == 1 ? singular : plural);
}

}  // namespace

std::string examinedText(const CoverageExamined& examined) {
  return fmt::format("{}, {} and {} in them", counted(examined.hidden, "hidden item", "hidden items"),
                     counted(examined.packages, "package", "packages"), counted(examined.inPackages, "item", "items"));
}

std::string adviceOn(GapKind kind) {
  return fmt::format("{} {}", meaningOf(kind), remedyFor(kind));
}

std::int64_t unvouchedCount(const CoverageReport& report) {
  return report.gapCounts.all() + static_cast<std::int64_t>(report.notExamined.size());
}

std::string unvouchedSentence(const CoverageReport& report) {
  const std::int64_t count = unvouchedCount(report);
  return count == 0 ? "" : fmt::format("The verdict does not vouch for {}.", counted(count, "item", "items"));
}

std::string gapSummary(const CoverageReport& report) {
  std::string parts;
  const auto add = [&](std::int64_t count, std::string_view title) {
    if (count > 0) {
      parts += fmt::format("{}{} {}", parts.empty() ? "" : ", ", count, title);
    }
  };
  for (const GapKind kind : kAllGapKinds) {
    add(report.gapCounts.of(kind), displayTitle(kind));
  }
  add(static_cast<std::int64_t>(report.notExamined.size()), kNotLookedAtTitle);
  return parts;
}

std::string acknowledgedText(std::int64_t count) {
  return count == 0 ? "" : counted(count, "gap is", "gaps are") + " acknowledged";
}

std::string notListedText(const CoverageReport& report, GapKind kind) {
  const std::int64_t more = report.gapCounts.of(kind) - std::ranges::count(report.gaps, kind, &CoverageGap::kind);
  return more > 0 ? fmt::format("and {} more", more) : "";
}

std::string notAcknowledgedText(std::string_view reason) {
  return fmt::format("It could not be acknowledged: {}", reason);
}

std::string notUTF8Text(std::string_view path) {
  return fmt::format("{} is not UTF-8, so it cannot be acknowledged.", path);
}

}  // namespace cirrovane
