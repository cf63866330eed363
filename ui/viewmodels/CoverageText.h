#pragma once

#include "base/Shared.h"
#include "coordinator/VerdictStanding.h"
#include "core/CoverageReport.h"

#include <QString>
#include <optional>

namespace cirrovane {

/// The coverage in one or two sentences, for a line of its own: how many items the verdict does not vouch for, by their
/// kinds, or that there are none, or that nobody has looked yet.
QString coverageSummary(const std::optional<Shared<CoverageReport>>& report);

/// "The verdict does not vouch for 3 items."; empty where there are none, or nobody has looked yet.
QString unvouchedText(const std::optional<Shared<CoverageReport>>& report);

/// The same beside a YES, which looks like one all the same; empty beside a NO.
QString yesNote(const ShownVerdict& verdict, const std::optional<Shared<CoverageReport>>& report);

}  // namespace cirrovane
