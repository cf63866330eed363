#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "base/UUID.h"
#include "diagnostics/DiagnosticFinding.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace cirrovane {

/// A problem that diagnostics found, remembered over refreshes: active while it is found, or resolved.
struct IncidentRecord {
  UUID id;
  /// Identity of the problem; see fingerprintOf.
  std::string fingerprint;
  // Of the latest matching finding:
  DiagnosticDomain domain = DiagnosticDomain::iCloud;
  DiagnosticSeverity severity = DiagnosticSeverity::warning;
  std::string title;
  std::string lastDetail;
  /// When the record was made; never changed.
  Time firstSeen;
  Time lastSeen;
  /// Findings that matched so far, the first included.
  std::int64_t occurrences = 0;
  bool isResolved = false;
  /// Absent while active.
  std::optional<Time> resolvedAt;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &IncidentRecord::id},
                      JSONField{"fingerprint", &IncidentRecord::fingerprint},
                      JSONField{"domain", &IncidentRecord::domain},
                      JSONField{"severity", &IncidentRecord::severity},
                      JSONField{"title", &IncidentRecord::title},
                      JSONField{"lastDetail", &IncidentRecord::lastDetail},
                      JSONField{"firstSeen", &IncidentRecord::firstSeen},
                      JSONField{"lastSeen", &IncidentRecord::lastSeen},
                      JSONField{"occurrences", &IncidentRecord::occurrences},
                      JSONField{"isResolved", &IncidentRecord::isResolved},
                      JSONField{"resolvedAt", &IncidentRecord::resolvedAt}};
  }
  friend bool operator==(const IncidentRecord&, const IncidentRecord&) = default;
};

}  // namespace cirrovane
