#include "diagnostics/DiagnosticFinding.h"

#include <algorithm>

namespace cirrovane {

int severityRank(DiagnosticSeverity severity) {
  switch (severity) {
    case DiagnosticSeverity::ok:
      return 0;
    case DiagnosticSeverity::info:
      return 1;
    case DiagnosticSeverity::warning:
      return 2;
    case DiagnosticSeverity::error:
      break;
  }
  return 3;
}

void sortForPresentation(std::vector<DiagnosticFinding>& findings) {
  std::ranges::stable_sort(findings, [](const DiagnosticFinding& lhs, const DiagnosticFinding& rhs) {
    if (lhs.domain != rhs.domain) {
      return rawValue(lhs.domain) < rawValue(rhs.domain);
    }
    return severityRank(lhs.severity) > severityRank(rhs.severity);
  });
}

}  // namespace cirrovane
