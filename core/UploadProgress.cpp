#include "core/UploadProgress.h"

#include "base/Path.h"
#include "core/BlockerReason.h"
#include "core/FileJudgement.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;
using Seconds = std::chrono::duration<double>;

/// More than a disk holds; sums of many such numbers still fit.
constexpr std::int64_t kMostBytes = std::int64_t{1} << 50U;

/// What left longer ago says nothing of how it goes now.
constexpr std::chrono::seconds kWindow = 10min;
/// Looks are told apart no finer, so that the record stays small while files leave in hundreds.
using Grain = std::chrono::seconds;

constexpr std::int64_t kFewestLeft = 3;
constexpr std::chrono::seconds kShortestSpan = 60s;
/// What left is seen to leave no sooner than at the next look.
constexpr std::chrono::seconds kLeastPause = 15s;
/// The rate now is looked for in these, as far as they have gone by, and in the whole window.
constexpr std::array<std::chrono::seconds, 2> kRecentSpans = {60s, 180s};
/// How much slower or faster than any rate that was seen it may go on.
constexpr double kMargin = 1.3;
/// A range that reaches further says too little.
constexpr double kWidestRatio = 4;

constexpr std::chrono::seconds kUsualWait = 1200s;
/// The slowest line on which a wait is nobody's fault, in bytes a second.
constexpr double kSlowestLine = 100'000;

Time startOfGrain(Time time) {
  return std::chrono::floor<Grain>(time);
}

bool isPlausible(std::int64_t count) {
  return count >= 0 && count <= kMostBytes;
}

/// Forgets what lies too far back, or ahead because the clock was set, and what no program of ours has written.
void trim(UploadRecord& record, Time now) {
  std::vector<UploadFlow>& flows = record.flows;
  std::erase_if(flows, [now](const UploadFlow& flow) {
    return flow.at > now || !isPlausible(flow.filesLeft) || !isPlausible(flow.bytesLeft) ||
           !isPlausible(flow.bytesCame);
  });
  std::ranges::stable_sort(flows, {}, &UploadFlow::at);
  if (record.files.size() > UploadRecord::kMostFiles) {
    record.files.resize(UploadRecord::kMostFiles);
  }
  const auto firstKept = std::ranges::find_if(flows, [now](const UploadFlow& flow) { return flow.at > now - kWindow; });
  std::optional<UploadFlow> lastBefore;
  for (auto flow = flows.begin(); flow != firstKept; ++flow) {
    lastBefore = flow->filesLeft > 0 ? *flow : lastBefore;
  }
  flows.erase(flows.begin(), firstKept);
  const auto hasLeft = [](const UploadFlow& flow) { return flow.filesLeft > 0; };
  if (lastBefore && std::ranges::none_of(flows, hasLeft)) {
    flows.insert(flows.begin(), *lastBefore);
  }
  for (FollowedUpload& file : record.files) {
    file.bytes = std::clamp<std::int64_t>(file.bytes, 0, kMostBytes);
    file.pendingSince = std::min(file.pendingSince, now);
  }
}

UploadFlow& flowAt(std::vector<UploadFlow>& flows, Time now) {
  const Time at = startOfGrain(now);
  if (flows.empty() || flows.back().at != at) {
    flows.push_back({at, 0, 0, 0});
  }
  return flows.back();
}

bool isStuck(const FollowedUpload& file, const std::optional<Time>& lastLeft, Time now) {
  const Seconds waited = now - file.pendingSince;
  const Seconds expected = kUsualWait + Seconds(static_cast<double>(file.pendingBytesThen) / kSlowestLine);
  const Time quietSince = std::max(file.pendingSince, lastLeft.value_or(file.pendingSince));
  return waited > expected || now - quietSince >= kUsualWait;
}

/// What left within the window.
struct Departures {
  std::vector<UploadFlow> flows;
  std::int64_t files = 0;
  double bytes = 0;
  /// Of what became pending since the first of them.
  double bytesCame = 0;

  explicit Departures(const UploadRecord& record, Time now) {
    for (const UploadFlow& flow : record.flows) {
      if (flow.at <= now - kWindow) {
        continue;
      }
      if (!flows.empty()) {
        bytesCame += static_cast<double>(flow.bytesCame);
      }
      if (flow.filesLeft > 0) {
        flows.push_back(flow);
        files += flow.filesLeft;
        bytes += static_cast<double>(flow.bytesLeft);
      }
    }
  }
  bool tellsRate() const {
    return files >= kFewestLeft && flows.back().at - flows.front().at >= kShortestSpan && bytes > 0;
  }
  /// Bytes a second since the first departure. How long that one took is not known: half of it counts.
  double wholeRate(Time now) const {
    return (bytes - static_cast<double>(flows.front().bytesLeft) / 2) / Seconds(now - flows.front().at).count();
  }
  /// Bytes a second while anything moved: of pauses that what left after them does not explain, nothing counts.
  double movingRate(Time now) const {
    const double whole = wholeRate(now);
    double seconds = 0;
    for (std::size_t index = 1; index < flows.size(); ++index) {
      const double gap = Seconds(flows[index].at - flows[index - 1].at).count();
      const double explained = static_cast<double>(flows[index].bytesLeft) / whole;
      seconds += gap > Seconds(kLeastPause).count() + 2 * explained ? explained : gap;
    }
    return seconds > 0 ? (bytes - static_cast<double>(flows.front().bytesLeft)) / seconds : whole;
  }
  /// Bytes a second of the last while; absent when it is not over yet, or too little left in it.
  std::optional<double> recentRate(Time now, std::chrono::seconds span) const {
    if (flows.front().at > now - span) {
      return std::nullopt;
    }
    double left = 0;
    std::int64_t count = 0;
    for (const UploadFlow& flow : flows) {
      if (flow.at > now - span) {
        left += static_cast<double>(flow.bytesLeft);
        count += flow.filesLeft;
      }
    }
    return count >= kFewestLeft && left > 0 ? std::optional(left / Seconds(span).count()) : std::nullopt;
  }
};

UploadState stateOf(const ResourceValues& values) {
  if (values.isDirectory || !values.isUbiquitousItem) {
    return UploadState::none;
  }
  if (isPendingUpload(values)) {
    return UploadState::pending;
  }
  return values.isUploaded ? UploadState::uploaded : UploadState::none;
}

Time after(Time now, double seconds) {
  constexpr double kLongest = 365.0 * 24 * 3600;
  return now + std::chrono::duration_cast<std::chrono::microseconds>(Seconds(std::clamp(seconds, 0.0, kLongest)));
}

std::optional<UploadEstimate> estimateOf(const Departures& departures, double pendingBytes, double largest, Time now) {
  if (!departures.tellsRate() || now - departures.flows.back().at > kLongestUploadPause || departures.bytes < largest) {
    return std::nullopt;
  }
  const double whole = departures.wholeRate(now);
  const double moving = departures.movingRate(now);
  double fastest = std::max(whole, moving);
  double slowest = std::min(whole, moving);
  for (const std::chrono::seconds span : kRecentSpans) {
    if (const std::optional<double> rate = departures.recentRate(now, span)) {
      fastest = std::max(fastest, *rate);
      slowest = std::min(slowest, *rate);
    }
  }
  // As much may come on as came on until now.
  slowest -= departures.bytesCame / Seconds(now - departures.flows.front().at).count();
  if (slowest <= 0) {
    return std::nullopt;
  }
  // Of what is pending, that much is on its way already.
  const double underway =
      std::min({whole * Seconds(now - departures.flows.back().at).count(), largest, pendingBytes * 0.9});
  double soonest = (pendingBytes - underway) / fastest / kMargin;
  double latest = pendingBytes / slowest * kMargin;
  if (latest > kWidestRatio * soonest) {
    return std::nullopt;
  }
  return UploadEstimate{after(now, soonest), after(now, latest)};
}

}  // namespace

std::optional<Time> lastDeparture(const UploadRecord& record) {
  std::optional<Time> last;
  for (const UploadFlow& flow : record.flows) {
    last = flow.filesLeft > 0 ? flow.at : last;
  }
  return last;
}

std::vector<PendingFile> pendingFilesOf(const SyncHealthReport& report) {
  std::vector<PendingFile> files;
  std::unordered_set<std::string_view> withError;
  for (const SyncBlocker& blocker : report.blockers) {
    if (blocker.reason == BlockerReason::uploadError && withError.insert(blocker.filePath).second) {
      files.push_back({blocker.filePath, blocker.folderName, blocker.fileSize.value_or(0)});
    }
  }
  files.reserve(files.size() + static_cast<std::size_t>(std::max<std::int64_t>(report.metrics.pendingUploads, 0)));
  for (const SyncBlocker& blocker : report.blockers) {
    // Of one reason a report names each path once.
    if (blocker.reason == BlockerReason::notUploaded && (withError.empty() || !withError.contains(blocker.filePath))) {
      files.push_back({blocker.filePath, blocker.folderName, blocker.fileSize.value_or(0)});
    }
  }
  return files;
}

std::vector<UploadState> uploadStates(const FileSystem& fileSystem, const std::vector<std::string>& paths) {
  std::map<std::string_view, std::vector<std::size_t>> byFolder;
  for (std::size_t index = 0; index < paths.size(); ++index) {
    byFolder[parentPath(paths[index])].push_back(index);
  }
  std::vector<UploadState> answers(paths.size(), UploadState::none);
  for (const auto& [folder, indices] : byFolder) {
    std::unordered_map<std::string_view, std::size_t> indexOf;
    std::vector<std::string> names;
    for (const std::size_t index : indices) {
      indexOf[lastPathComponent(paths[index])] = index;
      names.emplace_back(lastPathComponent(paths[index]));
    }
    const std::unique_ptr<ItemBatch> batch = fileSystem.readItems(std::string(folder), names);
    for (const Item& item : batch ? batch->items() : std::span<const Item>()) {
      const auto found = indexOf.find(item.name);
      if (found != indexOf.end() && item.values) {
        answers[found->second] = stateOf(*item.values);
      }
    }
  }
  return answers;
}

UploadRecord afterLook(UploadRecord record, const std::vector<PendingFile>& pending, Time now,
                       const AskUploadStates& askStates) {
  trim(record, now);
  std::unordered_map<std::string_view, std::size_t> followed;
  for (std::size_t index = 0; index < record.files.size(); ++index) {
    followed.emplace(record.files[index].filePath, index);
  }
  std::vector<bool> isPending(record.files.size());
  std::vector<const PendingFile*> came;
  std::int64_t pendingBytes = 0;
  for (const PendingFile& file : pending) {
    pendingBytes += file.bytes;
    const auto found = followed.find(file.filePath);
    if (found == followed.end()) {
      came.push_back(&file);
    } else {
      isPending[found->second] = true;
      record.files[found->second].bytes = file.bytes;
    }
  }

  std::vector<FollowedUpload> stay;
  std::vector<FollowedUpload> gone;
  for (std::size_t index = 0; index < record.files.size(); ++index) {
    (isPending[index] ? stay : gone).push_back(std::move(record.files[index]));
  }
  std::vector<std::string> gonePaths;
  gonePaths.reserve(gone.size());
  for (const FollowedUpload& file : gone) {
    gonePaths.push_back(file.filePath);
  }
  const std::vector<UploadState> states = gone.empty() ? std::vector<UploadState>() : askStates(gonePaths);
  for (std::size_t index = 0; index < gone.size(); ++index) {
    if (states[index] == UploadState::pending) {
      stay.push_back(std::move(gone[index]));
    } else if (states[index] == UploadState::uploaded) {
      UploadFlow& flow = flowAt(record.flows, now);
      ++flow.filesLeft;
      flow.bytesLeft += gone[index].bytes;
    }
  }

  const std::size_t room = UploadRecord::kMostFiles - std::min(UploadRecord::kMostFiles, stay.size());
  const std::size_t added = std::min(room, came.size());
  for (std::size_t index = 0; index < added; ++index) {
    stay.push_back({std::string(came[index]->filePath), came[index]->bytes, now, pendingBytes});
    if (record.isWhole && came[index]->bytes > 0) {
      flowAt(record.flows, now).bytesCame += came[index]->bytes;
    }
  }
  std::ranges::sort(stay, {}, &FollowedUpload::filePath);
  record.files = std::move(stay);
  record.isWhole = added == came.size() && !record.files.empty();
  if (record.files.empty()) {
    // What comes next is another matter, and goes as fast as it goes.
    record.flows.clear();
  }
  return record;
}

std::optional<Time> quietSince(const UploadRecord& record) {
  if (record.files.empty()) {
    return std::nullopt;
  }
  const Time first = std::ranges::min(record.files, {}, &FollowedUpload::pendingSince).pendingSince;
  return std::max(first, lastDeparture(record).value_or(first));
}

std::optional<std::chrono::microseconds> quietFor(const UploadRecord& record, Time now) {
  const std::optional<Time> since = quietSince(record);
  return since ? std::optional(std::max(now - *since, std::chrono::microseconds(0))) : std::nullopt;
}

PendingUploads pendingTotals(const UploadRecord& record, const std::vector<PendingFile>& pending, Time now) {
  PendingUploads uploads;
  uploads.generatedAt = now;
  uploads.pendingFiles = std::ssize(pending);
  std::int64_t largest = 0;
  for (const PendingFile& file : pending) {
    uploads.pendingBytes += file.bytes;
    largest = std::max(largest, file.bytes);
  }
  const std::optional<Time> lastLeft = lastDeparture(record);
  std::unordered_set<std::string_view> stuck;
  for (const FollowedUpload& file : record.files) {
    if (isStuck(file, lastLeft, now)) {
      stuck.insert(file.filePath);
    }
  }
  if (!stuck.empty()) {
    uploads.stuckFiles =
        std::ranges::count_if(pending, [&](const PendingFile& file) { return stuck.contains(file.filePath); });
  }
  const Departures departures(record, now);
  if (!pending.empty() && departures.tellsRate()) {
    uploads.bytesPerSecond = departures.wholeRate(now);
    if (record.isWhole) {
      uploads.estimate =
          estimateOf(departures, static_cast<double>(uploads.pendingBytes), static_cast<double>(largest), now);
    }
  }
  return uploads;
}

PendingUploads pendingUploads(const UploadRecord& record, const std::vector<PendingFile>& pending, Time now) {
  PendingUploads uploads = pendingTotals(record, pending, now);
  const std::optional<Time> lastLeft = lastDeparture(record);
  std::unordered_map<std::string_view, const FollowedUpload*> followed;
  for (const FollowedUpload& file : record.files) {
    followed.emplace(file.filePath, &file);
  }
  uploads.files.reserve(pending.size());
  for (const PendingFile& file : pending) {
    PendingUpload& upload = uploads.files.emplace_back();
    upload.filePath = file.filePath;
    upload.folderName = file.folderName;
    upload.bytes = file.bytes;
    if (const auto found = followed.find(file.filePath); found != followed.end()) {
      upload.pendingSince = found->second->pendingSince;
      upload.isStuck = isStuck(*found->second, lastLeft, now);
    }
  }
  return uploads;
}

}  // namespace cirrovane
