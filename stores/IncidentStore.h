#pragma once

#include "base/Published.h"
#include "diagnostics/DiagnosticFinding.h"
#include "platform/Clock.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/IncidentRecord.h"
#include "stores/StoredList.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The identity of a finding's problem: domain and title, whatever their case and the title's surrounding blanks. The
/// detail has no part in it, so a measured value may change without making a new incident.
std::string fingerprintOf(const DiagnosticFinding& finding);
std::string fingerprintOf(const FindingKey& key);

/// The incidents in display order, and their file "incidents.json". Main thread only.
class IncidentStore {
 public:
  static constexpr std::size_t kMaximumRecords = 800;

  /// Loads the file at the path, or at the default place, in the order in which it stands.
  IncidentStore(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock,
                std::optional<std::string> filePath = std::nullopt);

  const std::vector<IncidentRecord>& records() const { return list_.value(); }
  const Published<std::vector<IncidentRecord>>& publishedRecords() const { return list_.published(); }

  /// Takes in the warnings and errors of one refresh: counts those known, adds those new, resolves what is no longer
  /// found, sorts, drops what is beyond the maximum, and saves. Of what was not reached nothing new is known, so its
  /// incidents stay as they are, whether or not a finding still tells its last value.
  void merge(const std::vector<DiagnosticFinding>& findings, Time observedAt,
             const std::vector<FindingKey>& notReached = {});

  /// Resolve or reopen the stored record of the given one's identifier, in place, and save; without one, nothing.
  void markResolved(const IncidentRecord& record);
  void reopen(const IncidentRecord& record);

  /// Why the latest change could not be written; absent when it was, or when there was none.
  const std::optional<Failure>& saveFailure() const { return list_.saveFailure(); }

 private:
  void setResolved(UUID id, std::optional<Time> resolvedAt);

  const Clock& clock_;
  StoredList<IncidentRecord> list_;
};

}  // namespace cirrovane
