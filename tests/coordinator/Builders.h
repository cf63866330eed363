#pragma once

#include "stores/IncidentRecord.h"
#include "stores/ScanSnapshot.h"
#include "tests/core/Builders.h"

#include <cstdint>
#include <vector>

namespace cirrovane::test {

/// A snapshot that is told apart from others by its score.
inline ScanSnapshot makeSnapshot(bool safeToClose, std::int64_t score = 0) {
  ScanSnapshot snapshot;
  snapshot.id = UUIDGenerator()();
  snapshot.timestamp = at(18, 21);
  snapshot.safeToClose = safeToClose;
  snapshot.score = score;
  return snapshot;
}

/// Snapshots of one verdict, with the scores 0, 1, 2, ...
inline std::vector<ScanSnapshot> makeSnapshots(std::size_t count, bool safeToClose = true) {
  std::vector<ScanSnapshot> snapshots;
  while (snapshots.size() < count) {
    snapshots.push_back(makeSnapshot(safeToClose, static_cast<std::int64_t>(snapshots.size())));
  }
  return snapshots;
}

inline IncidentRecord makeIncident(bool isResolved, std::int64_t occurrences) {
  IncidentRecord record;
  record.id = UUIDGenerator()();
  record.fingerprint = "network::default route";
  record.title = "Default route";
  record.firstSeen = at(8);
  record.lastSeen = at(9);
  record.occurrences = occurrences;
  record.isResolved = isResolved;
  return record;
}

}  // namespace cirrovane::test
