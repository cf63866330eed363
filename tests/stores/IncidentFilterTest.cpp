#include "stores/IncidentFilter.h"

#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

IncidentRecord record(DiagnosticSeverity severity, bool isResolved) {
  IncidentRecord made;
  made.severity = severity;
  made.isResolved = isResolved;
  return made;
}

/// Which of an active warning, a resolved warning, an active error and a resolved error are kept.
std::string kept(const IncidentFilter& filter) {
  std::string letters;
  for (const auto severity : {DiagnosticSeverity::warning, DiagnosticSeverity::error}) {
    for (const bool isResolved : {false, true}) {
      const char letter = severity == DiagnosticSeverity::warning ? 'w' : 'e';
      const char shown = isResolved ? static_cast<char>(letter - 'a' + 'A') : letter;
      letters += filter.keeps(record(severity, isResolved)) ? shown : '-';
    }
  }
  return letters;
}

TEST(IncidentFilterTest, bothFilters_keepWhatBothKeep) {
  EXPECT_EQ(kept({IncidentScope::all, IncidentSeverityFilter::all}), "wWeE");
  EXPECT_EQ(kept({IncidentScope::active, IncidentSeverityFilter::all}), "w-e-");
  EXPECT_EQ(kept({IncidentScope::resolved, IncidentSeverityFilter::all}), "-W-E");
  EXPECT_EQ(kept({IncidentScope::all, IncidentSeverityFilter::warning}), "wW--");
  EXPECT_EQ(kept({IncidentScope::all, IncidentSeverityFilter::error}), "--eE");
  EXPECT_EQ(kept({IncidentScope::active, IncidentSeverityFilter::error}), "--e-");
  EXPECT_EQ(kept({IncidentScope::resolved, IncidentSeverityFilter::warning}), "-W--");
}

TEST(IncidentFilterTest, otherSeverities_areKeptByNoSeverityFilterButAll) {
  // Only a file edited by hand has them.
  for (const auto severity : {DiagnosticSeverity::info, DiagnosticSeverity::ok}) {
    EXPECT_TRUE(IncidentFilter().keeps(record(severity, false)));
    for (const auto filter : {IncidentSeverityFilter::warning, IncidentSeverityFilter::error}) {
      EXPECT_FALSE((IncidentFilter{IncidentScope::all, filter}.keeps(record(severity, false))));
    }
  }
}

TEST(IncidentFilterTest, rawValues_nameTheirChoiceExactly) {
  for (const auto& choice : kIncidentScopes) {
    IncidentScope scope{};
    EXPECT_TRUE(fromRawValue(rawValue(choice.value), scope));
    EXPECT_EQ(scope, choice.value);
  }
  for (const auto& choice : kIncidentSeverityFilters) {
    IncidentSeverityFilter filter{};
    EXPECT_TRUE(fromRawValue(rawValue(choice.value), filter));
    EXPECT_EQ(filter, choice.value);
  }
  IncidentScope scope = IncidentScope::active;
  EXPECT_FALSE(fromRawValue("Resolved", scope));
  EXPECT_FALSE(fromRawValue("", scope));
  EXPECT_EQ(scope, IncidentScope::active);
}

}  // namespace
}  // namespace cirrovane::test
