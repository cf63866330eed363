#pragma once

#include "core/CoverageReport.h"
#include "core/WatchFolder.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// So many files in a watched folder, by its path without a trailing slash.
struct FolderFileCount {
  std::string path;
  std::int64_t files = 0;

  friend bool operator==(const FolderFileCount&, const FolderFileCount&) = default;
};

/// What a look at the coverage is about, and what the user and safe scans have said of it.
struct CoverageRequest {
  std::vector<WatchFolder> folders;
  /// Paths of which, and of all below, the user knows; in any order, without a trailing slash.
  std::vector<std::string> acknowledged;
  /// The most files of any safe scan, of the folders of which one is known.
  std::vector<FolderFileCount> mostFiles;
};

/// What one look found.
struct CoverageLook {
  CoverageReport report;
  /// The files that a scan would count in each watched folder that was looked at.
  std::vector<FolderFileCount> fileCounts;
};

/// Asks a look that is under way, on whatever thread, to stop. Copies ask the same look.
class CoverageStop {
 public:
  void ask() { *isAsked_ = true; }
  bool isAsked() const { return *isAsked_; }

 private:
  std::shared_ptr<std::atomic<bool>> isAsked_ = std::make_shared<std::atomic<bool>>(false);
};

/// Looks at everything in watched folders, also where a scan does not, for what a verdict does not vouch for. It gives
/// way to every other work of the machine, opens no file and follows no link. Blocks its thread while it reads the
/// disk.
class CoverageScan {
 public:
  CoverageScan(const FileSystem& fileSystem, const Clock& clock) : fileSystem_(fileSystem), clock_(clock) {}

  /// Absent when it was asked to stop. Never fails otherwise: what cannot be looked at is in the report.
  std::optional<CoverageLook> look(const CoverageRequest& request, const CoverageStop& stop = {}) const;

 private:
  const FileSystem& fileSystem_;
  const Clock& clock_;
};

/// Whether so few files are a loss that has to be looked into, after as many as that.
constexpr bool isMassLoss(std::int64_t mostFiles, std::int64_t files) {
  constexpr std::int64_t kLeastFiles = 20;
  return mostFiles >= kLeastFiles && files < mostFiles - files;
}

}  // namespace cirrovane
