#pragma once

#include "cli/TextStyle.h"
#include "core/SyncHealthReport.h"

#include <string>

namespace cirrovane {

/// A report for a person at a terminal: the verdict, scores, counts, folders, the first blockers, next steps and the
/// summary. `left`: what is left to upload; empty for nothing. Names that come from the disk are made harmless.
std::string reportText(const SyncHealthReport& report, const std::string& left, const TextStyle& style);

}  // namespace cirrovane
