#include "core/TrustScoring.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <compare>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

struct ReasonRule {
  std::int64_t weight;
  std::int64_t cap;
  bool forbidsSafeToClose;
};

constexpr std::size_t kReasonCount = kAllBlockerReasons.size();

// In the declaration order of the reasons.
constexpr std::array<ReasonRule, kReasonCount> kReasonRules = {{
    /* unavailableFolder  */ {24, 40, true},
    /* outsideICloud      */ {16, 40, false},
    /* unresolvedConflict */ {30, 60, true},
    /* uploadError        */ {24, 60, true},
    /* downloadError      */ {24, 60, true},
    /* stalledUpload      */ {16, 40, true},
    /* notUploaded        */ {10, 40, true},
    /* notDownloaded      */ {0, 0, false},
}};

constexpr std::int64_t kDangerBelow = 70;
constexpr std::int64_t kSafeAbove = 94;
constexpr std::size_t kMaximumActions = 3;

/// Steps of a loop over blockers that a fetch from memory takes, roughly.
constexpr std::size_t kLookAhead = 8;

const ReasonRule& ruleOf(BlockerReason reason) {
  return kReasonRules.at(static_cast<std::size_t>(reason));
}

/// How many blockers each reason has.
std::array<std::int64_t, kReasonCount> countByReason(const std::vector<SyncBlocker>& blockers) {
  std::array<std::int64_t, kReasonCount> counts{};
  for (const SyncBlocker& blocker : blockers) {
    ++counts.at(static_cast<std::size_t>(blocker.reason));
  }
  return counts;
}

bool areAllCloudOnly(const std::vector<SyncBlocker>& blockers) {
  return std::ranges::all_of(blockers,
                             [](const SyncBlocker& blocker) { return blocker.reason == BlockerReason::notDownloaded; });
}

/// Asks for memory that is needed soon, so that the wait for it is not all spent where it is needed.
void prefetch(const void* address) {
  __builtin_prefetch(address);
}

/// Remembers which (reason, path) pairs were met, by their index: half a million blockers cost no copy of their paths.
class SeenBlockers {
 public:
  explicit SeenBlockers(const std::vector<SyncBlocker>& blockers)
      : blockers_(blockers), slots_(std::bit_ceil(blockers.size() * 2 + 1)) {}

  static std::size_t hashOf(const SyncBlocker& blocker) {
    return combineHashes(static_cast<std::size_t>(blocker.reason), std::hash<std::string>{}(blocker.filePath));
  }

  /// Says that a blocker of this hash will be inserted soon.
  void expect(std::size_t hash) const { prefetch(&slots_[placeOf(hash)]); }

  /// Whether the blocker at the index is the first of its reason and path among those inserted.
  bool insert(std::size_t index, std::size_t hash) {
    const SyncBlocker& blocker = blockers_[index];
    const Slot entry{static_cast<std::uint32_t>(index), static_cast<std::uint32_t>(hash >> 32U)};
    std::size_t place = placeOf(hash);
    for (; slots_[place].index != kEmpty; place = placeOf(place + 1)) {
      const Slot& slot = slots_[place];
      if (slot.hash == entry.hash && isSameProblem(blockers_[slot.index], blocker)) {
        return false;
      }
    }
    slots_[place] = entry;
    return true;
  }

 private:
  static constexpr std::uint32_t kEmpty = std::numeric_limits<std::uint32_t>::max();

  struct Slot {
    std::uint32_t index = kEmpty;
    /// The bits of the hash that did not choose the slot: they spare nearly every look at another blocker, far away.
    std::uint32_t hash = 0;
  };

  std::size_t placeOf(std::size_t hash) const { return hash & (slots_.size() - 1); }

  static bool isSameProblem(const SyncBlocker& lhs, const SyncBlocker& rhs) {
    return lhs.reason == rhs.reason && lhs.filePath == rhs.filePath;
  }

  const std::vector<SyncBlocker>& blockers_;
  std::vector<Slot> slots_;
};

/// What decides a blocker's place, but for the path of an undated one. Small, because a sort of half a million compares
/// twenty times as many.
struct SortKey {
  SortKey(const SyncBlocker& blocker, std::size_t itsIndex)
      : lastModified(blocker.lastModified.value_or(Time())),
        index(static_cast<std::uint32_t>(itsIndex)),
        weight(static_cast<std::int16_t>(penaltyWeight(blocker.reason))),
        isDated(blocker.lastModified.has_value()) {}

  Time lastModified;
  /// The blocker's place in the list that is being sorted.
  std::uint32_t index;
  std::int16_t weight;
  bool isDated;
};

/// The heavier reason, then dated before undated, then the older date.
std::weak_ordering compare(const SortKey& lhs, const SortKey& rhs) {
  if (lhs.weight != rhs.weight) {
    return rhs.weight <=> lhs.weight;
  }
  if (lhs.isDated != rhs.isDated) {
    return lhs.isDated ? std::weak_ordering::less : std::weak_ordering::greater;
  }
  // As numbers, since Apple's library has no three-way comparison of times.
  return lhs.lastModified.time_since_epoch().count() <=> rhs.lastModified.time_since_epoch().count();
}

bool isBefore(const SortKey& lhs, const SyncBlocker& lhsBlocker, const SortKey& rhs, const SyncBlocker& rhsBlocker) {
  const std::weak_ordering order = compare(lhs, rhs);
  return order != 0 ? order < 0 : !lhs.isDated && lhsBlocker.filePath < rhsBlocker.filePath;
}

/// Moves the blockers so that the one that keys[i] was made of comes to stand at i, without a second list of them.
void permute(std::vector<SyncBlocker>& blockers, std::vector<SortKey>& keys) {
  for (std::size_t start = 0; start < keys.size(); ++start) {
    if (keys[start].index == start) {
      continue;
    }
    SyncBlocker displaced = std::move(blockers[start]);
    std::size_t hole = start;
    while (keys[hole].index != start) {
      const std::size_t source = keys[hole].index;
      const SyncBlocker& next = blockers[keys[source].index];
      prefetch(&next.id);
      prefetch(&next.folderName);
      prefetch(&next.lastModified);
      blockers[hole] = std::move(blockers[source]);
      keys[hole].index = static_cast<std::uint32_t>(hole);
      hole = source;
    }
    blockers[hole] = std::move(displaced);
    keys[hole].index = static_cast<std::uint32_t>(hole);
  }
}

}  // namespace

std::int64_t penaltyWeight(BlockerReason reason) {
  return ruleOf(reason).weight;
}

std::int64_t penaltyCap(BlockerReason reason) {
  return ruleOf(reason).cap;
}

bool forbidsSafeToClose(BlockerReason reason) {
  return ruleOf(reason).forbidsSafeToClose;
}

std::vector<SyncBlocker> deduplicate(std::vector<SyncBlocker> blockers) {
  std::vector<bool> isFirst(blockers.size());
  {
    SeenBlockers seen(blockers);
    std::vector<std::size_t> hashes(blockers.size());
    std::ranges::transform(blockers, hashes.begin(), SeenBlockers::hashOf);
    for (std::size_t index = 0; index < blockers.size(); ++index) {
      seen.expect(hashes[std::min(index + kLookAhead, hashes.size() - 1)]);
      isFirst[index] = seen.insert(index, hashes[index]);
    }
  }
  std::size_t index = 0;
  std::erase_if(blockers, [&](const SyncBlocker&) { return !isFirst[index++]; });
  return blockers;
}

std::int64_t penalty(const std::vector<SyncBlocker>& blockers) {
  const auto counts = countByReason(blockers);
  std::int64_t sum = 0;
  for (const BlockerReason reason : kAllBlockerReasons) {
    sum += std::min(penaltyWeight(reason) * counts.at(static_cast<std::size_t>(reason)), penaltyCap(reason));
  }
  return sum;
}

std::int64_t uploadTrustScore(const std::vector<SyncBlocker>& blockers) {
  return std::max<std::int64_t>(0, 100 - penalty(blockers));
}

HealthState healthState(std::int64_t score, const std::vector<SyncBlocker>& blockers) {
  if (areAllCloudOnly(blockers) && score > kSafeAbove) {
    return HealthState::safe;
  }
  return score < kDangerBelow ? HealthState::danger : HealthState::warning;
}

bool blockerSort(const SyncBlocker& lhs, const SyncBlocker& rhs) {
  return isBefore(SortKey(lhs, 0), lhs, SortKey(rhs, 0), rhs);
}

void sortBlockers(std::vector<SyncBlocker>& blockers) {
  // The keys are sorted in place of the blockers: a stable sort of these needs half of them again as scratch.
  std::vector<SortKey> keys;
  keys.reserve(blockers.size());
  for (const SyncBlocker& blocker : blockers) {
    keys.emplace_back(blocker, keys.size());
  }
  std::ranges::stable_sort(keys, [&](const SortKey& lhs, const SortKey& rhs) {
    return isBefore(lhs, blockers[lhs.index], rhs, blockers[rhs.index]);
  });
  permute(blockers, keys);
}

std::int64_t localReadinessScore(const ScanMetrics& metrics) {
  if (metrics.totalFiles < 1) {
    return 100;
  }
  const auto localFiles = static_cast<double>(std::max<std::int64_t>(0, metrics.totalFiles - metrics.notDownloaded));
  return std::llround(localFiles / static_cast<double>(metrics.totalFiles) * 100);
}

std::vector<RecommendedAction> recommendedActions(const std::vector<SyncBlocker>& blockers,
                                                  const ScanMetrics& metrics) {
  UUIDGenerator makeID;
  std::vector<RecommendedAction> actions;
  const auto append = [&](std::string_view title, std::string_view detail) {
    actions.push_back(
        {makeID(), static_cast<std::int64_t>(actions.size()) + 1, std::string(title), std::string(detail)});
  };

  if (blockers.empty()) {
    append("You are clear", "No blockers were detected. Keep scans running before major travel or shutdown events.");
    return actions;
  }

  const auto counts = countByReason(blockers);
  const auto isPresent = [&](BlockerReason reason) { return counts.at(static_cast<std::size_t>(reason)) > 0; };
  if (isPresent(BlockerReason::unavailableFolder)) {
    append("Reconnect missing watchlist folders",
           "Open Watchlist and remove/re-add any folder paths that no longer exist on this Mac.");
  }
  if (isPresent(BlockerReason::unresolvedConflict)) {
    append("Resolve file conflicts first",
           "Open conflicted files and decide which version is canonical before more edits happen.");
  }
  if (isPresent(BlockerReason::uploadError) || isPresent(BlockerReason::downloadError)) {
    append("Stabilize network and re-check",
           "Confirm reliable internet, then run scan again before trying deeper troubleshooting.");
  }
  if (isPresent(BlockerReason::stalledUpload) || metrics.pendingUploads >= 1) {
    append("Keep Mac awake until pending uploads clear",
           "Avoid shutdown or travel until pending files drop to zero in the next scan cycle.");
  }
  if (isPresent(BlockerReason::outsideICloud)) {
    append("Move critical folders into iCloud Drive",
           "Folders outside iCloud cannot be covered by upload trust checks.");
  }
  if (actions.empty()) {
    append("Run another scan in 2-3 minutes", "If blockers persist across scans, export a proof packet for support.");
  }
  if (actions.size() > kMaximumActions) {
    actions.resize(kMaximumActions);
  }
  return actions;
}

std::string summaryText(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics) {
  if (blockers.empty()) {
    return "No blockers detected in your watchlist.";
  }
  if (areAllCloudOnly(blockers) && metrics.notDownloaded >= 1) {
    return fmt::format("Upload trust is strong. {} files are cloud-only on this Mac.", metrics.notDownloaded);
  }
  switch (status) {
    case HealthState::safe:
      return "Minor issues found, but critical upload risk appears clear.";
    case HealthState::warning:
      return fmt::format("{} issues found. Review blockers before leaving or shutting down.", blockers.size());
    case HealthState::danger:
      break;
  }
  return fmt::format("Sync trust is low: {} pending uploads and {} errors need attention.", metrics.pendingUploads,
                     metrics.errors);
}

bool isSafeToClose(HealthState status, const std::vector<SyncBlocker>& blockers, const ScanMetrics& metrics) {
  return status == HealthState::safe &&
         std::ranges::none_of(blockers,
                              [](const SyncBlocker& blocker) { return forbidsSafeToClose(blocker.reason); }) &&
         metrics.pendingUploads == 0 && metrics.unresolvedConflicts == 0 && metrics.errors == 0;
}

}  // namespace cirrovane
