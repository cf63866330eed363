#pragma once

#include "diagnostics/DiagnosticFinding.h"

#include <vector>

namespace cirrovane {

/// What one cycle's probes found out.
struct CollectedFindings {
  std::vector<DiagnosticFinding> findings;
  /// What nothing can be said of, since the probes for it were not reached.
  std::vector<FindingKey> notReached;
};

/// The findings, and for each one that was not reached the previous one as it was, if there is one; in the order of
/// presentation.
std::vector<DiagnosticFinding> withLastValues(CollectedFindings collected,
                                              const std::vector<DiagnosticFinding>& previous);

}  // namespace cirrovane
