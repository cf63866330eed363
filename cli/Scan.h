#pragma once

#include "cli/Output.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Machine.h"

#include <vector>

namespace cirrovane {

/// The report over the folders, with the scan's progress on the error stream where that is a terminal.
SyncHealthReport scanShowingProgress(const Machine& machine, const std::vector<WatchFolder>& folders, Output& err);

}  // namespace cirrovane
