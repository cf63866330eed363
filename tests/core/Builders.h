#pragma once

#include "base/JSONWriter.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace cirrovane {

/// A record prints as its JSON form, so that a failed comparison can be read.
template <JSONRecord Record>
std::ostream& operator<<(std::ostream& out, const Record& record) {
  return out << encodeJSON(record);
}
inline std::ostream& operator<<(std::ostream& out, const UUID& id) {
  return out << id.text();
}
inline std::ostream& operator<<(std::ostream& out, BlockerReason reason) {
  return out << rawValue(reason);
}
inline std::ostream& operator<<(std::ostream& out, HealthState state) {
  return out << rawValue(state);
}

}  // namespace cirrovane

namespace cirrovane::test {

inline constexpr std::string_view kDrive = "/Users/test/Library/Mobile Documents/com~apple~CloudDocs";

/// An identifier that is nothing but its last byte.
inline UUID idOf(std::uint8_t last) {
  std::array<std::uint8_t, 16> bytes{};
  bytes[15] = last;
  return UUID(bytes);
}

/// A time of day on one fixed day.
inline Time at(int hour, int minute = 0) {
  return Time(std::chrono::sys_days(std::chrono::year(2026) / 11 / 15)) + std::chrono::hours(hour) +
         std::chrono::minutes(minute);
}

inline SyncBlocker makeBlocker(BlockerReason reason, const std::string& path,
                               std::optional<Time> modified = std::nullopt) {
  SyncBlocker blocker;
  blocker.id = idOf(1);
  blocker.filePath = path;
  blocker.folderName = "Work";
  blocker.reason = reason;
  blocker.details = "Details.";
  blocker.lastModified = modified;
  return blocker;
}

/// Blockers of one reason at different paths.
inline std::vector<SyncBlocker> makeBlockers(BlockerReason reason, int count) {
  std::vector<SyncBlocker> blockers;
  for (int index = 0; index < count; ++index) {
    blockers.push_back(makeBlocker(reason, "/" + std::string(rawValue(reason)) + std::to_string(index)));
  }
  return blockers;
}

/// One blocker of each reason.
inline std::vector<SyncBlocker> makeBlockers(const std::vector<BlockerReason>& reasons) {
  std::vector<SyncBlocker> blockers;
  for (const BlockerReason reason : reasons) {
    blockers.push_back(makeBlocker(reason, "/" + std::string(rawValue(reason))));
  }
  return blockers;
}

inline WatchFolder makeFolder(const std::string& name, const std::string& path, std::uint8_t id = 1) {
  return WatchFolder{.id = idOf(id), .name = name, .path = path};
}

/// A report in which no two fields hold the same value.
inline SyncHealthReport makeReport() {
  SyncHealthReport report;
  report.status = HealthState::danger;
  report.score = 36;
  report.localAvailabilityScore = 71;
  report.safeToClose = true;
  report.generatedAt = at(18, 21);
  report.blockers = {makeBlocker(BlockerReason::outsideICloud, "/Users/test/Desktop"),
                     makeBlocker(BlockerReason::notUploaded, "/Users/test/a.txt", at(9))};
  report.folderHealth = {FolderHealth{.id = idOf(7),
                                      .folder = makeFolder("Desktop", "/Users/test/Desktop/", 7),
                                      .scannedFileCount = 12,
                                      .blockerCount = 2,
                                      .status = HealthState::warning,
                                      .score = 74}};
  report.metrics = ScanMetrics{.totalFiles = 12,
                               .scannedFolders = 3,
                               .pendingUploads = 1,
                               .unresolvedConflicts = 4,
                               .errors = 5,
                               .notDownloaded = 6};
  report.actions = {RecommendedAction{.id = idOf(9), .rank = 1, .title = "Title", .detail = "Detail"}};
  report.summary = "Summary.";
  return report;
}

}  // namespace cirrovane::test
