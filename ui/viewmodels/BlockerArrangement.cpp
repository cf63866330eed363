#include "ui/viewmodels/BlockerArrangement.h"

#include "base/ASCII.h"
#include "base/JSONRecord.h"
#include "base/Path.h"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace cirrovane {
namespace {

/// Between two looks at whether anybody still waits: a few milliseconds of any work here.
constexpr std::size_t kSlice = std::size_t{1} << 14U;

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

/// A disk may hold a letter with its accent apart, where a keyboard types them as one.
QString foldedOf(const QString& text) {
  return text.normalized(QString::NormalizationForm_C).toCaseFolded();
}

class SearchedText {
 public:
  explicit SearchedText(const QString& search)
      : folded_(foldedOf(search.trimmed())), bytes_(folded_.toStdString()), isASCII_(cirrovane::isASCII(bytes_)) {}

  bool isEmpty() const { return bytes_.empty(); }

  bool isIn(std::string_view text) const {
    if (!cirrovane::isASCII(text)) {
      return foldedOf(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))).contains(folded_);
    }
    const auto isSame = [](char one, char folded) { return lowerCase(one) == folded; };
    return isASCII_ && std::search(text.begin(), text.end(), bytes_.begin(), bytes_.end(), isSame) != text.end();
  }

 private:
  QString folded_;
  std::string bytes_;
  bool isASCII_;
};

class Filter {
 public:
  explicit Filter(const BlockerQuery& query)
      : reason_(query.reason), folder_(withoutTrailingSlash(query.folderPath)), search_(query.search) {}

  bool keeps(const SyncBlocker& blocker) const {
    return (!reason_ || blocker.reason == *reason_) && (folder_.empty() || isAtOrBelow(blocker.filePath, folder_)) &&
           (search_.isEmpty() || search_.isIn(blocker.filePath) || search_.isIn(blocker.folderName));
  }

 private:
  std::optional<BlockerReason> reason_;
  std::string folder_;
  SearchedText search_;
};

/// Notes what a report's blockers can be narrowed to.
class Occurrences {
 public:
  explicit Occurrences(const SyncHealthReport& report) : missing_(report.folderHealth.size()) {
    std::ranges::transform(report.folderHealth, missing_.begin(), [](const FolderHealth& health) { return &health; });
  }

  void note(const SyncBlocker& blocker) {
    reasons_.at(static_cast<std::size_t>(blocker.reason)) = true;
    std::erase_if(missing_, [&](const FolderHealth* health) {
      return isAtOrBelow(blocker.filePath, withoutTrailingSlash(health->folder.path));
    });
  }

  void tell(ArrangedBlockers& arranged) const {
    std::ranges::copy_if(kAllBlockerReasons, std::back_inserter(arranged.reasons),
                         [&](BlockerReason reason) { return reasons_.at(static_cast<std::size_t>(reason)); });
    for (const FolderHealth& health : arranged.report->folderHealth) {
      if (std::ranges::find(missing_, &health) == missing_.end()) {
        arranged.folders.push_back(health.folder);
      }
    }
  }

 private:
  std::array<bool, kAllBlockerReasons.size()> reasons_{};
  /// Of those in which none was seen so far.
  std::vector<const FolderHealth*> missing_;
};

/// A stable sort that ends early when nobody wants it any more; false then.
template <class Item, class Less>
bool sortWhileWanted(std::vector<Item>& items, const Less& isLess, const std::atomic<bool>& isUnwanted) {
  const auto at = [&](std::size_t number) {
    return items.begin() + static_cast<std::ptrdiff_t>(std::min(number, items.size()));
  };
  for (std::size_t start = 0; start < items.size(); start += kSlice) {
    if (isUnwanted) {
      return false;
    }
    std::stable_sort(at(start), at(start + kSlice), isLess);
  }
  for (std::size_t width = kSlice; width < items.size(); width *= 2) {
    for (std::size_t start = 0; start + width < items.size(); start += 2 * width) {
      if (isUnwanted) {
        return false;
      }
      std::inplace_merge(at(start), at(start + width), at(start + 2 * width), isLess);
    }
  }
  return true;
}

/// Whether a text comes before another in a list for people: the case decides only between texts that are else alike.
bool isTextBefore(std::string_view lhs, std::string_view rhs) {
  auto [one, other] = std::ranges::mismatch(lhs, rhs);
  const auto [apart, otherApart] = std::ranges::mismatch(
      std::ranges::subrange(one, lhs.end()), std::ranges::subrange(other, rhs.end()), {},
      [](char byte) { return lowerCase(byte); }, [](char byte) { return lowerCase(byte); });
  if (otherApart == rhs.end()) {
    return apart == lhs.end() && lhs < rhs;
  }
  return apart == lhs.end() ||
         static_cast<unsigned char>(lowerCase(*apart)) < static_cast<unsigned char>(lowerCase(*otherApart));
}

/// A blocker's place beside what decides its place in the list.
template <class Key>
struct Placed {
  Key key;
  std::uint32_t place = 0;
};

template <class MakeKey, class Less>
bool sortPlaces(std::vector<std::uint32_t>& places, const MakeKey& keyOf, const Less& isLess,
                const std::atomic<bool>& isUnwanted) {
  using Item = Placed<decltype(keyOf(std::uint32_t{}))>;
  std::vector<Item> items;
  items.reserve(places.size());
  for (const std::uint32_t place : places) {
    items.push_back({keyOf(place), place});
  }
  if (!sortWhileWanted(
          items, [&](const Item& lhs, const Item& rhs) { return isLess(lhs.key, rhs.key); }, isUnwanted)) {
    return false;
  }
  std::ranges::transform(items, places.begin(), &Item::place);
  return true;
}

/// Sorts places of blockers that are in the report's order.
bool sortBy(BlockerOrder order, ArrangedBlockers& arranged, const std::atomic<bool>& isUnwanted) {
  const std::vector<SyncBlocker>& blockers = arranged.report->blockers;
  const auto pathAt = [&](std::uint32_t place) { return std::string_view(blockers[place].filePath); };
  const auto sort = [&](const auto& keyOf, const auto& isLess) {
    return sortPlaces(arranged.places, keyOf, isLess, isUnwanted);
  };
  switch (order) {
    case BlockerOrder::seriousness:
      return true;
    case BlockerOrder::path:
      return sort(pathAt, isTextBefore);
    case BlockerOrder::name:
      // Equal names by their folders.
      return sort(pathAt, isTextBefore) &&
             sort([&](std::uint32_t place) { return lastPathComponent(pathAt(place)); }, isTextBefore);
    case BlockerOrder::size:
      return sort([&](std::uint32_t place) { return blockers[place].fileSize.value_or(-1); }, std::greater<>());
    case BlockerOrder::waiting: {
      std::unordered_map<std::string_view, Time> since;
      for (const PendingUpload& wait : arranged.waits) {
        since.emplace(wait.filePath, wait.pendingSince.value_or(Time::max()));
      }
      return sort(
          [&](std::uint32_t place) {
            const auto found = arranged.waitOf(blockers[place]) != nullptr ? since.find(pathAt(place)) : since.end();
            return found != since.end() ? found->second : Time::max();
          },
          std::less<>());
    }
  }
  return true;
}

/// What is known of the waits of all files that are followed, by path.
std::vector<PendingUpload> waitsOf(const UploadRecord& uploads, Time now) {
  std::vector<PendingFile> files;
  files.reserve(uploads.files.size());
  for (const FollowedUpload& file : uploads.files) {
    files.push_back({file.filePath, {}, file.bytes});
  }
  std::vector<PendingUpload> waits = pendingUploads(uploads, files, now).files;
  std::ranges::sort(waits, {}, &PendingUpload::filePath);
  return waits;
}

bool waitsForUpload(BlockerReason reason) {
  return reason == BlockerReason::notUploaded || reason == BlockerReason::uploadError ||
         reason == BlockerReason::stalledUpload;
}

/// Which numbers of an ascending sequence, the longest there is, a list of numbers holds. kNone stands for no number.
constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

std::vector<bool> longestAscent(const std::vector<std::uint32_t>& numbers) {
  /// Where an ascent of each length ends, as low as it can.
  std::vector<std::uint32_t> ends;
  std::vector<std::uint32_t> previous(numbers.size(), kNone);
  for (std::uint32_t index = 0; index < numbers.size(); ++index) {
    if (numbers[index] == kNone) {
      continue;
    }
    const auto end = std::ranges::lower_bound(ends, numbers[index], {}, [&](std::uint32_t at) { return numbers[at]; });
    if (end != ends.begin()) {
      previous[index] = *std::prev(end);
    }
    if (end == ends.end()) {
      ends.push_back(index);
    } else {
      *end = index;
    }
  }
  std::vector<bool> isIn(numbers.size());
  for (std::uint32_t index = ends.empty() ? kNone : ends.back(); index != kNone; index = previous[index]) {
    isIn[index] = true;
  }
  return isIn;
}

/// The runs of what stays not, by numbers that begin at `first`.
std::vector<RowRun> runsOfOthers(const std::vector<bool>& stays, std::size_t first) {
  std::vector<RowRun> runs;
  for (std::size_t index = 0; index < stays.size(); ++index) {
    if (stays[index]) {
      continue;
    }
    if (!runs.empty() && runs.back().first + runs.back().count == first + index) {
      ++runs.back().count;
    } else {
      runs.push_back({first + index, 1});
    }
  }
  return runs;
}

}  // namespace

std::size_t blockerKey(const SyncBlocker& blocker) {
  return combineHashes(static_cast<std::size_t>(blocker.reason), std::hash<std::string>{}(blocker.filePath));
}

const PendingUpload* ArrangedBlockers::waitOf(const SyncBlocker& blocker) const {
  if (!waitsForUpload(blocker.reason)) {
    return nullptr;
  }
  const auto found = std::ranges::lower_bound(waits, blocker.filePath, {}, &PendingUpload::filePath);
  return found != waits.end() && found->filePath == blocker.filePath && found->pendingSince ? &*found : nullptr;
}

std::optional<ArrangedBlockers> arrange(const BlockerQuery& query, const Shared<SyncHealthReport>& report,
                                        const UploadRecord& uploads, Time now, const std::atomic<bool>& isUnwanted) {
  ArrangedBlockers arranged;
  arranged.report = report;
  arranged.waits = waitsOf(uploads, now);
  const std::vector<SyncBlocker>& blockers = report->blockers;
  const Filter filter(query);
  Occurrences occurrences(*report);
  for (std::uint32_t place = 0; place < blockers.size(); ++place) {
    if (place % kSlice == 0 && isUnwanted) {
      return std::nullopt;
    }
    occurrences.note(blockers[place]);
    if (filter.keeps(blockers[place])) {
      arranged.places.push_back(place);
    }
  }
  occurrences.tell(arranged);
  if (!sortBy(query.order, arranged, isUnwanted)) {
    return std::nullopt;
  }
  std::vector<std::size_t> keys(arranged.places.size());
  std::ranges::transform(arranged.places, keys.begin(),
                         [&](std::uint32_t place) { return blockerKey(blockers[place]); });
  arranged.keys = std::make_shared<const std::vector<std::size_t>>(std::move(keys));
  return arranged;
}

std::optional<RowEdits> editsBetween(const std::vector<std::size_t>& before, const std::vector<std::size_t>& after,
                                     std::size_t mostRuns) {
  const auto [oldStart, newStart] = std::ranges::mismatch(before, after);
  const auto start = static_cast<std::size_t>(std::distance(before.begin(), oldStart));
  std::size_t oldEnd = before.size();
  std::size_t newEnd = after.size();
  while (oldEnd > start && newEnd > start && before[oldEnd - 1] == after[newEnd - 1]) {
    --oldEnd;
    --newEnd;
  }
  std::unordered_map<std::size_t, std::uint32_t> oldNumbers;
  oldNumbers.reserve(oldEnd - start);
  for (std::size_t row = start; row < oldEnd; ++row) {
    oldNumbers.emplace(before[row], static_cast<std::uint32_t>(row - start));
  }
  std::vector<std::uint32_t> cameFrom(newEnd - start, kNone);
  for (std::size_t row = start; row < newEnd; ++row) {
    if (const auto found = oldNumbers.find(after[row]); found != oldNumbers.end()) {
      cameFrom[row - start] = found->second;
      // What is met again is another row.
      oldNumbers.erase(found);
    }
  }
  const std::vector<bool> staysInNew = longestAscent(cameFrom);
  std::vector<bool> staysInOld(oldEnd - start);
  for (std::size_t index = 0; index < cameFrom.size(); ++index) {
    if (staysInNew[index]) {
      staysInOld[cameFrom[index]] = true;
    }
  }
  RowEdits edits{.removals = runsOfOthers(staysInOld, start), .insertions = runsOfOthers(staysInNew, start)};
  if (edits.removals.size() + edits.insertions.size() > mostRuns) {
    return std::nullopt;
  }
  std::ranges::reverse(edits.removals);
  return edits;
}

}  // namespace cirrovane
