#pragma once

#include "stores/IncidentRecord.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cirrovane {

/// Which incidents to show, by whether they are over.
enum class IncidentScope : std::uint8_t { all, active, resolved };

/// Which incidents to show, by how serious they are.
enum class IncidentSeverityFilter : std::uint8_t { all, warning, error };

/// A choice of a filter: its name in commands, and on screen.
template <class Filter>
struct FilterChoice {
  Filter value;
  std::string_view rawValue;
  std::string_view title;
};

/// Every choice, in the order in which they are offered.
inline constexpr std::array<FilterChoice<IncidentScope>, 3> kIncidentScopes = {{
    {IncidentScope::all, "all", "All"},
    {IncidentScope::active, "active", "Active"},
    {IncidentScope::resolved, "resolved", "Resolved"},
}};
inline constexpr std::array<FilterChoice<IncidentSeverityFilter>, 3> kIncidentSeverityFilters = {{
    {IncidentSeverityFilter::all, "all", "All"},
    {IncidentSeverityFilter::warning, "warning", "Warnings"},
    {IncidentSeverityFilter::error, "error", "Errors"},
}};

/// What of the incidents is shown: those that both keep, in the order in which they stand.
struct IncidentFilter {
  IncidentScope scope = IncidentScope::all;
  IncidentSeverityFilter severity = IncidentSeverityFilter::all;

  constexpr bool keeps(const IncidentRecord& record) const {
    const bool isInScope = scope == IncidentScope::all || (scope == IncidentScope::resolved) == record.isResolved;
    const DiagnosticSeverity wanted =
        severity == IncidentSeverityFilter::error ? DiagnosticSeverity::error : DiagnosticSeverity::warning;
    return isInScope && (severity == IncidentSeverityFilter::all || record.severity == wanted);
  }
};

constexpr std::string_view rawValue(IncidentScope scope) {
  return kIncidentScopes.at(static_cast<std::size_t>(scope)).rawValue;
}
constexpr std::string_view rawValue(IncidentSeverityFilter filter) {
  return kIncidentSeverityFilters.at(static_cast<std::size_t>(filter)).rawValue;
}

namespace detail {

template <class Choices, class Filter>
constexpr bool choiceOfRawValue(const Choices& choices, std::string_view text, Filter& target) {
  for (const auto& choice : choices) {
    if (choice.rawValue == text) {
      target = choice.value;
      return true;
    }
  }
  return false;
}

}  // namespace detail

/// The choice of an exact raw value; false, and the target untouched, for any other text.
constexpr bool fromRawValue(std::string_view text, IncidentScope& target) {
  return detail::choiceOfRawValue(kIncidentScopes, text, target);
}
constexpr bool fromRawValue(std::string_view text, IncidentSeverityFilter& target) {
  return detail::choiceOfRawValue(kIncidentSeverityFilters, text, target);
}

}  // namespace cirrovane
