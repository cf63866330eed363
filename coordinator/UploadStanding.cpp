#include "coordinator/UploadStanding.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;

/// The words are as fine as minutes, and after two days as days.
constexpr std::chrono::hours kToldInDays{48};

bool hasFreshEstimate(const UploadStanding& standing, Time now) {
  return standing.totals.estimate && standing.lastLeft && now - *standing.lastLeft <= kLongestUploadPause;
}

std::vector<StuckUpload> stuckUploads(const PendingUploads& uploads, const SyncHealthReport& report) {
  std::vector<StuckUpload> stuck;
  for (const PendingUpload& file : uploads.files) {
    if (file.isStuck && file.pendingSince) {
      stuck.push_back({file.filePath, file.bytes, *file.pendingSince, ""});
    }
  }
  std::ranges::sort(stuck, {}, [](const StuckUpload& file) { return std::tie(file.pendingSince, file.filePath); });
  stuck.resize(std::min(stuck.size(), UploadStanding::kMostStuck));
  std::unordered_map<std::string_view, StuckUpload*> byPath;
  for (StuckUpload& file : stuck) {
    byPath.emplace(file.filePath, &file);
  }
  for (const SyncBlocker& blocker : report.blockers) {
    if (blocker.reason != BlockerReason::uploadError) {
      continue;
    }
    if (const auto found = byPath.find(blocker.filePath); found != byPath.end()) {
      found->second->error = blocker.details;
    }
  }
  return stuck;
}

}  // namespace

UploadStanding uploadStanding(const UploadRecord& record, const SyncHealthReport& report) {
  const std::vector<PendingFile> pending = pendingFilesOf(report);
  UploadStanding standing;
  standing.totals = pendingTotals(record, pending, report.generatedAt);
  if (pending.empty()) {
    return standing;
  }
  standing.lastLeft = lastDeparture(record);
  standing.quietSince = quietSince(record);
  if (standing.totals.stuckFiles > 0) {
    standing.stuck = stuckUploads(pendingUploads(record, pending, report.generatedAt), report);
  }
  return standing;
}

PendingUploads totalsAt(const UploadStanding& standing, Time now) {
  PendingUploads totals = standing.totals;
  totals.generatedAt = now;
  if (!hasFreshEstimate(standing, now)) {
    totals.estimate.reset();
  }
  return totals;
}

std::optional<std::chrono::microseconds> quietAt(const UploadStanding& standing, Time now) {
  return standing.quietSince ? std::optional(std::max(now - *standing.quietSince, std::chrono::microseconds(0)))
                             : std::nullopt;
}

bool isMoving(const UploadStanding& standing, Time now) {
  return standing.totals.pendingFiles > 0 && standing.lastLeft && now - *standing.lastLeft < kShortestQuiet;
}

std::optional<std::chrono::microseconds> untilOtherWords(const UploadStanding& standing, Time now) {
  const std::optional<std::chrono::microseconds> quiet = quietAt(standing, now);
  if (!quiet) {
    return std::nullopt;
  }
  if (standing.lastLeft && hasFreshEstimate(standing, now)) {
    return *standing.lastLeft + kLongestUploadPause + 1s - now;
  }
  if (*quiet < kShortestQuiet) {
    return kShortestQuiet - *quiet;
  }
  const std::chrono::microseconds unit = *quiet < kToldInDays ? std::chrono::microseconds(1min) : 24h;
  return unit - *quiet % unit;
}

}  // namespace cirrovane
