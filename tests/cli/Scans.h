#pragma once

#include "tests/cli/Program.h"

#include <cstddef>
#include <string>

#include <fmt/format.h>

namespace cirrovane::test {

/// A recorded scan, told from others by its number; safe or not, as asked for.
inline nlohmann::json recordedScan(std::size_t number, bool safeToClose) {
  nlohmann::json snapshot = {{"id", fmt::format("{:08X}-8B86-4011-B42D-00CF4FC964FF", number)},
                             {"timestamp", "2026-11-15T18:21:10Z"},
                             {"score", safeToClose ? 100 : 40},
                             {"status", safeToClose ? "safe" : "danger"},
                             {"safeToClose", safeToClose},
                             {"blockerCount", safeToClose ? 0 : 7},
                             {"pendingUploads", safeToClose ? 0 : 3},
                             {"localAvailabilityScore", 97}};
  if (!safeToClose) {
    snapshot["topBlockerReason"] = "uploadError";
    snapshot["topBlockerFilePath"] = "/Users/demo/a\x1b[2J\nb";
    snapshot["topBlockerFolderName"] = "Clients";
  }
  return snapshot;
}

/// As many recorded scans, all safe, numbered from 0 on.
inline nlohmann::json recordedScans(std::size_t count) {
  nlohmann::json snapshots = nlohmann::json::array();
  for (std::size_t number = 0; number < count; ++number) {
    snapshots.push_back(recordedScan(number, true));
  }
  return snapshots;
}

/// A document of the program's own; fails the test, and is null, when there is none.
inline nlohmann::json documentAt(const std::string& path) {
  return parsed(readFile(path));
}

}  // namespace cirrovane::test
