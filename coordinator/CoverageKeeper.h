#pragma once

#include "core/CoverageScan.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Machine.h"
#include "stores/AcknowledgementStore.h"
#include "stores/FileCountStore.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The coverage of a machine: looks at it, and keeps what the user and safe scans say of it. Callable on any thread;
/// what it is made of outlives it.
class CoverageKeeper {
 public:
  CoverageKeeper(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock)
      : acknowledgements_(fileSystem, storage, clock),
        fileCounts_(fileSystem, storage, clock),
        scan_(fileSystem, clock) {}

  /// Absent when it was asked to stop.
  std::optional<CoverageLook> look(const std::vector<WatchFolder>& folders, const CoverageStop& stop = {}) const;

  /// Those that hold now, by the bytes of their paths.
  std::vector<Acknowledgement> acknowledgements() const { return acknowledgements_.current(); }
  /// Says that the user knows of what is found there. Of a folder whose files are gone, today's number is what later
  /// ones are held against, and nothing else is acknowledged.
  std::optional<Failure> acknowledge(const std::vector<std::string>& paths, std::optional<Time> expiresAt) const;
  std::optional<Failure> forget(const std::vector<std::string>& paths) const { return acknowledgements_.forget(paths); }

  /// Remembers how many files the folders of a safe scan held.
  std::optional<Failure> record(const SyncHealthReport& report) const { return fileCounts_.record(report); }

 private:
  AcknowledgementStore acknowledgements_;
  FileCountStore fileCounts_;
  CoverageScan scan_;
};

}  // namespace cirrovane
