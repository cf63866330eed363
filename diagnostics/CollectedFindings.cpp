#include "diagnostics/CollectedFindings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cirrovane {

std::vector<DiagnosticFinding> withLastValues(CollectedFindings collected,
                                              const std::vector<DiagnosticFinding>& previous) {
  std::vector<DiagnosticFinding> findings = std::move(collected.findings);
  std::ranges::copy_if(previous, std::back_inserter(findings), [&](const DiagnosticFinding& finding) {
    return std::ranges::find(collected.notReached, FindingKey{finding.domain, finding.title}) !=
           collected.notReached.end();
  });
  sortForPresentation(findings);
  return findings;
}

}  // namespace cirrovane
