#pragma once

#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "tests/support/FakeFileSystem.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace cirrovane::test {

/// All that a scan can see, as plain lists.
struct NaiveWorld {
  /// Folders that can be walked, with the items that the walk meets.
  std::map<std::string, std::vector<FakeFileSystem::FakeItem>> folders;
  /// Paths that exist but cannot be listed.
  std::set<std::string> unlistable;
  /// Folders whose listing breaks off with an error after the items.
  std::set<std::string> brokenOff;
  Time now;
};

/// A second, slow and simple-minded scan, which shares nothing with the product's but the records. Blockers and actions
/// carry the nil identifier.
SyncHealthReport naiveScan(const NaiveWorld& world, const std::vector<WatchFolder>& watched);

/// The same report with nil in place of the identifiers that every scan makes anew.
SyncHealthReport withoutFreshIdentifiers(SyncHealthReport report);

// The rules by themselves, for blockers and counters that no walk could produce together.

std::vector<SyncBlocker> naiveWithoutDuplicates(const std::vector<SyncBlocker>& blockers);
std::int64_t naivePenalty(const std::vector<SyncBlocker>& blockers);
HealthState naiveState(std::int64_t score, const std::vector<SyncBlocker>& blockers);
std::vector<SyncBlocker> naiveSorted(const std::vector<SyncBlocker>& blockers);
std::int64_t naiveLocalScore(std::int64_t totalFiles, std::int64_t notDownloaded);
std::vector<RecommendedAction> naiveActions(const std::vector<SyncBlocker>& blockers, std::int64_t pendingUploads);
std::string naiveSummary(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics);
bool naiveVerdict(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics);

}  // namespace cirrovane::test
