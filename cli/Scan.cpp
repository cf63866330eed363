#include "cli/Scan.h"

#include "cli/ProgressLine.h"
#include "core/ICloudScanEngine.h"

namespace cirrovane {

SyncHealthReport scanShowingProgress(const Machine& machine, const std::vector<WatchFolder>& folders, Output& err) {
  ScanProgress progress;
  const ProgressLine line(progress, err);
  return ICloudScanEngine(machine.fileSystem(), machine.clock(), ICloudScanEngine::kDefaultStaleUploadThreshold,
                          &progress)
      .scan(folders);
}

}  // namespace cirrovane
