#include "core/BlockerList.h"

#include "base/JSONRecord.h"
#include "core/BlockerReason.h"
#include "core/TrustScoring.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <utility>

namespace cirrovane {
namespace {

/// Steps of a loop over blockers that a fetch from memory takes, roughly.
constexpr std::size_t kLookAhead = 8;

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

}  // namespace cirrovane
