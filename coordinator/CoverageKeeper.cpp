#include "coordinator/CoverageKeeper.h"

#include "base/Path.h"
#include "core/FolderNaming.h"

#include <algorithm>
#include <string_view>

namespace cirrovane {
namespace {

/// Today's number of a folder's files where that is a loss; absent where it is none, or cannot be told.
std::optional<FolderFileCount> lossOf(const std::string& path, const std::vector<FolderFileCount>& most,
                                      const CoverageScan& scan) {
  const auto known = std::ranges::find(most, path, &FolderFileCount::path);
  if (known == most.end() || !isMassLoss(known->files, 0)) {
    return std::nullopt;
  }
  const std::optional<CoverageLook> look = scan.look({{{UUID(), watchFolderName(path), path}}, {}, {}});
  if (!look || look->fileCounts.empty() || !isMassLoss(known->files, look->fileCounts.front().files)) {
    return std::nullopt;
  }
  return look->fileCounts.front();
}

}  // namespace

std::optional<CoverageLook> CoverageKeeper::look(const std::vector<WatchFolder>& folders,
                                                 const CoverageStop& stop) const {
  CoverageRequest request{folders, {}, fileCounts_.most()};
  for (const Acknowledgement& one : acknowledgements_.current()) {
    request.acknowledged.push_back(one.path);
  }
  return scan_.look(request, stop);
}

std::optional<Failure> CoverageKeeper::acknowledge(const std::vector<std::string>& paths,
                                                   std::optional<Time> expiresAt) const {
  const std::vector<FolderFileCount> most = fileCounts_.most();
  std::vector<FolderFileCount> losses;
  std::vector<std::string> others;
  for (const std::string& argument : paths) {
    const std::string path(withoutTrailingSlash(argument));
    if (const std::optional<FolderFileCount> loss = lossOf(path, most, scan_)) {
      losses.push_back(*loss);
    } else {
      others.push_back(path);
    }
  }
  if (!losses.empty()) {
    if (auto failure = fileCounts_.beginAnew(losses)) {
      return failure;
    }
  }
  return others.empty() ? std::nullopt : acknowledgements_.acknowledge(others, expiresAt);
}

}  // namespace cirrovane
