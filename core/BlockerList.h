#pragma once

#include "core/SyncBlocker.h"

#include <vector>

// What brings the blockers of a scan into the list that is shown, however long it is: half a million are put in place
// without a copy of their texts. Pure functions; callable on any thread.

namespace cirrovane {

/// The blockers without those whose reason and path an earlier one has; the order stays.
std::vector<SyncBlocker> deduplicate(std::vector<SyncBlocker> blockers);

/// Whether `lhs` goes before `rhs`: the heavier reason, then the older date, dated before undated, then the path.
bool blockerSort(const SyncBlocker& lhs, const SyncBlocker& rhs);

/// Brings blockers into the order of blockerSort; those that it does not tell apart keep theirs.
void sortBlockers(std::vector<SyncBlocker>& blockers);

}  // namespace cirrovane
