#pragma once

#include "base/Shared.h"
#include "coordinator/LiveRules.h"
#include "coordinator/PendingChanges.h"
#include "core/ICloudScanEngine.h"
#include "core/ScanIndex.h"
#include "core/ScanProgress.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Clock.h"
#include "platform/Executor.h"
#include "platform/FileSystem.h"
#include "platform/FolderWatch.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What one reading of the index gave.
struct LiveReading {
  Shared<SyncHealthReport> report;
  /// Folders that are no longer part of the watched trees.
  std::vector<std::string> gone;
  /// When a file becomes stalled by the clock alone; absent where none will.
  std::optional<Time> nextStall;
  /// After a full scan: folders that the index before showed otherwise, though nothing was told of them.
  std::vector<std::string> differences;
};

/// What is scanned, and how. All of it outlives the scans.
struct ScanSource {
  const FileSystem& fileSystem;
  const Clock& clock;
  /// Is told how far a full scan has come; may be nullptr.
  ScanProgress* progress = nullptr;
  std::chrono::microseconds staleUploadThreshold = ICloudScanEngine::kDefaultStaleUploadThreshold;
};

/// The executors of an index: the one that asks and is answered, and those that read.
struct LiveExecutors {
  Executor& main;
  Executor& scan;
  /// Readings of what changed, which no full scan may hold up.
  Executor& updates;
};

/// The index of the watched folders, read and scanned off the main thread. Its members are called on the main thread,
/// where the answers come too, in the order of the calls; none comes once this is gone.
class LiveIndex {
 public:
  LiveIndex(const LiveExecutors& executors, const ScanSource& source, const MonotonicClock& monotonicClock);

  /// Scans the folders in full, while readings go on in the index that there is; tells how long it took. The watch,
  /// which may be nullptr, is told of each folder before it is listed.
  void scan(std::vector<WatchFolder> folders, std::shared_ptr<FolderWatch> watch, std::function<void(Uptime)> then);
  /// Takes the latest scan for the index, and reads what was told meanwhile. With `compares` the index before is held
  /// against it.
  void adopt(const PendingChanges& told, bool compares, std::shared_ptr<FolderWatch> watch,
             std::function<void(LiveReading)> then);
  /// Reads again what was told. Calls `glance` before that where one of the named items says NO by itself.
  void read(std::vector<FolderChange> changes, std::shared_ptr<FolderWatch> watch,
            std::function<void(Shared<SyncHealthReport>)> glance, std::function<void(LiveReading)> then);
  /// Reads the next files that block.
  void readBlocked(std::shared_ptr<FolderWatch> watch, std::function<void(LiveReading)> then);

 private:
  struct Indexes;

  /// Does the work on the executor, and hands what it gives to `then` on the main thread.
  template <class Work, class Then>
  void run(Executor& executor, Work work, Then then) const;

  LiveExecutors executors_;
  ScanSource source_;
  const MonotonicClock& monotonicClock_;
  std::shared_ptr<Indexes> indexes_;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
