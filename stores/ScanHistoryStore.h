#pragma once

#include "base/Published.h"
#include "core/SyncHealthReport.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/ScanSnapshot.h"
#include "stores/StoredList.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The latest scans, newest first, and their file "history.json". Main thread only.
class ScanHistoryStore {
 public:
  static constexpr std::size_t kMaximumSnapshots = 200;

  /// Loads the file at the path, or at the default place, in the order in which it stands.
  ScanHistoryStore(const FileSystem& fileSystem, const FileStorage& storage,
                   std::optional<std::string> filePath = std::nullopt);

  const std::vector<ScanSnapshot>& snapshots() const { return list_.value(); }
  const Published<std::vector<ScanSnapshot>>& publishedSnapshots() const { return list_.published(); }

  /// Puts a snapshot of the report first, drops the oldest beyond the maximum, and saves.
  void record(const SyncHealthReport& report);

  /// Why the latest snapshot could not be written; absent when it was, or when there was none.
  const std::optional<Failure>& saveFailure() const { return list_.saveFailure(); }

 private:
  StoredList<ScanSnapshot> list_;
};

}  // namespace cirrovane
