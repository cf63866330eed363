#pragma once

#include "cli/TextStyle.h"
#include "core/CoverageReport.h"
#include "stores/Acknowledgement.h"

#include <string>
#include <vector>

namespace cirrovane {

// Names that come from the disk are made harmless in all of these.

/// The coverage for a person at a terminal: whether it is complete, what was looked at, and the gaps by their kinds.
std::string coverageText(const CoverageReport& report, const TextStyle& style);

/// What keeps the coverage from being complete, as lines; nothing where it is.
std::string gapLines(const CoverageReport& report);

/// The coverage in one sentence.
std::string coverageSentence(const CoverageReport& report);

/// The acknowledgements for a person at a terminal.
std::string acknowledgementText(const std::vector<Acknowledgement>& acknowledgements, const TextStyle& style);

}  // namespace cirrovane
