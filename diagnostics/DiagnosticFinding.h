#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "base/UUID.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace cirrovane {

/// The area that a finding belongs to. Its raw value is also its title on screen.
enum class DiagnosticDomain : std::uint8_t { iCloud, finder, network, storage, power, performance, system };

/// Every domain with its raw value, in declaration order, which is the order of tabs.
inline constexpr std::array<RawValue<DiagnosticDomain>, 7> kDiagnosticDomains = {{
    {DiagnosticDomain::iCloud, "iCloud"},
    {DiagnosticDomain::finder, "Finder"},
    {DiagnosticDomain::network, "Network"},
    {DiagnosticDomain::storage, "Storage"},
    {DiagnosticDomain::power, "Power"},
    {DiagnosticDomain::performance, "Performance"},
    {DiagnosticDomain::system, "System"},
}};

constexpr std::string_view rawValue(DiagnosticDomain domain) {
  return kDiagnosticDomains.at(static_cast<std::size_t>(domain)).text;
}
constexpr bool fromRawValue(std::string_view text, DiagnosticDomain& target) {
  return caseOfRawValue(kDiagnosticDomains, text, target);
}

/// How serious a finding is. The declaration order is not the order of seriousness: see severityRank.
enum class DiagnosticSeverity : std::uint8_t { info, ok, warning, error };

inline constexpr std::array<RawValue<DiagnosticSeverity>, 4> kDiagnosticSeverities = {{
    {DiagnosticSeverity::info, "info"},
    {DiagnosticSeverity::ok, "ok"},
    {DiagnosticSeverity::warning, "warning"},
    {DiagnosticSeverity::error, "error"},
}};

constexpr std::string_view rawValue(DiagnosticSeverity severity) {
  return kDiagnosticSeverities.at(static_cast<std::size_t>(severity)).text;
}
constexpr bool fromRawValue(std::string_view text, DiagnosticSeverity& target) {
  return caseOfRawValue(kDiagnosticSeverities, text, target);
}

/// 0 for ok, 1 for info, 2 for a warning, 3 for an error: neutral news stands above confirmations that all is well.
int severityRank(DiagnosticSeverity severity);

/// One observation about the machine or its cloud connection, beyond the files themselves.
struct DiagnosticFinding {
  /// New for every finding made.
  UUID id;
  DiagnosticDomain domain = DiagnosticDomain::iCloud;
  DiagnosticSeverity severity = DiagnosticSeverity::info;
  /// Short, and the same at every refresh: incidents are recognised by it.
  std::string title;
  /// One sentence, or a measured value.
  std::string detail;
  Time observedAt;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &DiagnosticFinding::id},
                      JSONField{"domain", &DiagnosticFinding::domain},
                      JSONField{"severity", &DiagnosticFinding::severity},
                      JSONField{"title", &DiagnosticFinding::title},
                      JSONField{"detail", &DiagnosticFinding::detail},
                      JSONField{"observedAt", &DiagnosticFinding::observedAt}};
  }
  friend bool operator==(const DiagnosticFinding&, const DiagnosticFinding&) = default;
};

/// What a finding is about, apart from what was found.
struct FindingKey {
  DiagnosticDomain domain = DiagnosticDomain::iCloud;
  std::string title;

  friend bool operator==(const FindingKey&, const FindingKey&) = default;
};

/// Brings findings into the order in which they are presented: by the domain's raw value, upper case before lower, then
/// the most serious first; equals keep the order in which they were made.
void sortForPresentation(std::vector<DiagnosticFinding>& findings);

}  // namespace cirrovane
