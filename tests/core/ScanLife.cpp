#include "tests/core/ScanLife.h"

#include "base/Path.h"
#include "core/ICloudScanEngine.h"
#include "tests/core/Builders.h"
#include "tests/core/NaiveScan.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

constexpr std::size_t kMostItems = 70;
constexpr std::size_t kToldLately = 40;

/// The report as far as two scans of the same have to agree.
SyncHealthReport comparable(SyncHealthReport report) {
  report = withoutFreshIdentifiers(std::move(report));
  report.generatedAt = Time();
  return report;
}

}  // namespace

ScanLife::ScanLife(const LifePlace& place, std::uint32_t seed)
    : place_(place), seed_(seed), random_(seed), clock_(Time(seconds(1'763'231'000))) {
  grow(place_.home, 3);
  watchAnew();
}

bool ScanLife::live(std::size_t steps) {
  for (std::size_t step = 0; step < steps && !hasFailed_; ++step) {
    ++tally_.steps;
    happen();
    takeChanges();
    if (oneIn(3)) {
      deliverSome();
    }
    if (oneIn(2)) {
      settle();
    }
  }
  if (!hasFailed_) {
    settle();
  }
  return !hasFailed_;
}

std::string ScanLife::anyName() {
  static const std::array<std::string, 12> kNames = {"a",        "b",          "c",       "d.txt", "e.txt", "f f",
                                                     "\xC3\xA9", "Work.pages", ".hidden", ".b",    "-",     "a.b"};
  return pick(kNames);
}

std::string ScanLife::anyFolder() {
  std::vector<std::string> folders = {place_.home};
  for (std::string& path : place_.tree.allPaths()) {
    if (path.starts_with(place_.home + "/") && place_.tree.isFolder(path)) {
      folders.push_back(std::move(path));
    }
  }
  return pick(folders);
}

std::string ScanLife::anyPath() {
  std::vector<std::string> paths = place_.tree.allPaths();
  std::erase_if(paths, [&](const std::string& path) { return !path.starts_with(place_.home + "/"); });
  return paths.empty() ? newPath() : pick(paths);
}

std::optional<Time> ScanLife::anyDate() {
  static constexpr std::array kAges = {microseconds(0), microseconds(seconds(1'199)), microseconds(seconds(1'200)),
                                       microseconds(seconds(1'201)), microseconds(seconds(-600))};
  // Few dates for many files, or one: equal dates show whether the order is that of the walk.
  if (seed_ % 4 == 1) {
    return Time(seconds(1'763'000'000));
  }
  return oneIn(6) ? std::nullopt : std::optional(clock_.now() - pick(kAges));
}

std::optional<FakeValues> ScanLife::anyValues() {
  FakeValues values;
  values.contentModificationDate = anyDate();
  values.isUploaded = true;
  if (oneIn(2)) {
    return values;
  }
  if (oneIn(15)) {
    return std::nullopt;
  }
  values.isUbiquitousItem = !oneIn(6);
  values.isUploaded = oneIn(3) ? std::optional(false) : std::nullopt;
  values.isUploading = oneIn(2) ? std::optional(true) : std::nullopt;
  values.hasUnresolvedConflicts = oneIn(8) ? std::optional(true) : std::nullopt;
  values.downloadingStatus = oneIn(4) ? std::optional(DownloadingStatus::notDownloaded) : std::nullopt;
  values.uploadingError = oneIn(8) ? std::optional<std::string>("Quota exceeded.") : std::nullopt;
  values.downloadingError = oneIn(8) ? std::optional<std::string>("The connection was lost.") : std::nullopt;
  return values;
}

std::optional<FakeValues> ScanLife::otherValues(const std::string& path) {
  std::optional<FakeValues> values = place_.tree.valuesOf(path);
  const std::optional<FakeValues> others = anyValues();
  if (!values || !others || oneIn(4)) {
    return others;
  }
  switch (below(7)) {
    case 0:
      values->isUploading = !values->isUploading.value_or(false);
      break;
    case 1:
      values->isUploaded = !values->isUploaded.value_or(true);
      break;
    case 2:
      values->hasUnresolvedConflicts = others->hasUnresolvedConflicts;
      break;
    case 3:
      values->downloadingStatus = others->downloadingStatus;
      break;
    case 4:
      values->uploadingError = others->uploadingError;
      break;
    case 5:
      values->downloadingError = values->downloadingError ? std::nullopt : std::optional<std::string>("Not found.");
      break;
    default:
      values->contentModificationDate = others->contentModificationDate;
      break;
  }
  return values;
}

void ScanLife::grow(const std::string& folder, std::size_t depth) {
  for (std::size_t count = 1 + below(4); count > 0; --count) {
    const std::string path = folder + "/" + anyName();
    if (depth > 0 && oneIn(2)) {
      if (place_.tree.makeFolder(path)) {
        grow(path, depth - 1);
      }
    } else {
      place_.tree.makeFile(path, anyValues());
    }
  }
}

void ScanLife::happen() {
  FakeTree& tree = place_.tree;
  const bool isFull = tree.allPaths().size() > kMostItems;
  switch (below(24)) {
    case 0:
    case 1:
    case 2:
    case 3:
      tree.makeFile(oneIn(3) ? anyPath() : newPath(), anyValues());
      return;
    case 4:
    case 5:
    case 6:
    case 7:
      if (const std::string path = anyPath(); tree.isFile(path)) {
        tree.setValues(path, otherValues(path));
      }
      return;
    case 8:
      tree.makeFolder(newPath());
      return;
    case 9:
      if (const std::string path = newPath(); !isFull && tree.makeFolder(path)) {
        grow(path, 2);
      }
      return;
    case 10:
    case 11:
      if (isFull || oneIn(2)) {
        tree.remove(anyPath());
      }
      return;
    case 12:
    case 13:
      tree.move(anyPath(), newPath());
      return;
    case 14:
      // In place of another, which is out of the way by then.
      if (const std::string to = anyPath(); tree.move(to, newPath()) || tree.remove(to)) {
        tree.move(anyPath(), to);
      }
      return;
    case 15:
      tree.makeLink(newPath(), anyPath());
      return;
    case 16:
      tree.setListable(anyPath(), oneIn(2));
      return;
    case 17:
      if (!place_.isReal && oneIn(2)) {
        tree.setExhausted(anyPath(), oneIn(3));
      } else if (!place_.isReal) {
        tree.setBreaksOff(anyPath(), oneIn(2));
      }
      return;
    case 18:
      setClock();
      return;
    case 19:
      if (oneIn(4)) {
        watchAnew();
      }
      return;
    case 20:
      // What a watch may tell too often, too late, or of what nobody sees.
      for (std::size_t count = former_.empty() ? 0 : below(4); count > 0; --count) {
        pending_.push_back(pick(former_));
      }
      pending_.push_back({anyFolder(), oneIn(2) ? anyName() : "", false});
      return;
    case 21:
      pending_.push_back({oneIn(2) ? anyFolder() : newPath(), "", oneIn(2)});
      return;
    case 22:
      if (oneIn(2)) {
        apply(index_->readBlockedAgain(below(4), &place_.changes.listings()));
      } else {
        changeUntold();
      }
      return;
    default:
      // A file that is written in one go: made, filled and renamed.
      if (const std::string path = newPath(); tree.makeFile(path + ".part", anyValues())) {
        tree.setValues(path + ".part", anyValues());
        tree.move(path + ".part", path);
      }
      return;
  }
}

/// What happens to a blocked file is found by reading it again, also where nobody tells of it.
void ScanLife::changeUntold() {
  takeChanges();
  settle();
  const std::vector<FolderChange> blocked = index_->blockedItems(kMostItems);
  if (hasFailed_ || blocked.empty()) {
    return;
  }
  const FolderChange& one = pick(blocked);
  const std::optional<std::string> path = place_.tree.resolved(one.folder + "/" + one.item);
  if (path && place_.tree.setValues(*path, otherValues(*path))) {
    ++tally_.blocked;
    place_.changes.take();
    apply(index_->readBlockedAgain(10 * kMostItems, &place_.changes.listings()));
    agrees();
  }
}

void ScanLife::watchAnew() {
  folders_.clear();
  static const std::array<std::string, 4> kNames = {"One", "Two", "Three", "Two"};
  for (std::size_t count = below(5); count > 0; --count) {
    std::string path = oneIn(8) ? newPath() : oneIn(4) ? anyPath() : anyFolder();
    if (!folders_.empty() && oneIn(3)) {
      // Below another one, by that one's path.
      path = pick(place_.tree.enteredFolders(std::string(withoutTrailingSlash(folders_.back().path))), path);
    }
    const auto last = static_cast<std::uint8_t>(folders_.size() + 1);
    folders_.push_back(makeFolder(pick(kNames), path + (oneIn(3) ? "/" : ""), last));
  }
  std::vector<std::string> paths;
  for (const WatchFolder& folder : folders_) {
    paths.emplace_back(withoutTrailingSlash(folder.path));
  }
  place_.changes.start(paths);
  pending_.clear();
  index_.emplace(scan());
}

ScanIndex ScanLife::scan() {
  return ScanIndex::scan(folders_, place_.fileSystem, clock_, ICloudScanEngine::kDefaultStaleUploadThreshold, nullptr,
                         &place_.changes.listings());
}

void ScanLife::setClock() {
  const microseconds jump = seconds(below(3'000)) + microseconds(below(3));
  clock_.set(oneIn(3) ? clock_.now() - jump : clock_.now() + jump);
}

void ScanLife::takeChanges() {
  std::optional<std::vector<FolderChange>> changes = place_.changes.take();
  if (!changes || oneIn(200)) {
    // What was lost is made good by a scan.
    ++tally_.losses;
    pending_.clear();
    ScanIndex anew = scan();
    apply({anew.goneSince(*index_), true});
    index_ = std::move(anew);
    return;
  }
  for (FolderChange& change : *changes) {
    lately_.push_back(change.folder + " | " + change.item + (change.isDeep ? " deep" : ""));
    former_.push_back(change);
    pending_.push_back(std::move(change));
  }
  if (former_.size() > 50) {
    former_.erase(former_.begin(), former_.end() - 50);
  }
  if (lately_.size() > kToldLately) {
    lately_.erase(lately_.begin(), lately_.end() - kToldLately);
  }
}

void ScanLife::deliver(std::vector<FolderChange> changes) {
  if (oneIn(2)) {
    ++tally_.glances;
    if (const auto report = index_->glance(changes)) {
      ++tally_.glancesThatBlock;
      if (report->safeToClose) {
        fail("a glance that found a blocker says YES");
      }
    }
  }
  const SyncHealthReport before = index_->report();
  const UpdateResult result = index_->update(changes, &place_.changes.listings());
  apply(result);
  if (!result.isChanged) {
    ++tally_.unchanged;
    if (comparable(before) != comparable(index_->report())) {
      fail("an update that changed nothing changed the report");
    }
  }
}

void ScanLife::apply(const UpdateResult& result) {
  for (const std::string& folder : result.gone) {
    place_.changes.forget(folder);
  }
}

void ScanLife::deliverSome() {
  std::vector<FolderChange> some;
  for (std::size_t count = below(pending_.size() + 1); count > 0; --count) {
    const auto place = pending_.begin() + static_cast<std::ptrdiff_t>(below(pending_.size()));
    some.push_back(std::move(*place));
    pending_.erase(place);
  }
  deliver(std::move(some));
}

void ScanLife::settle() {
  // Reading may make the watch tell of more, which only then is watched.
  for (int round = 0; round < 20 && (round == 0 || !pending_.empty()); ++round) {
    if (oneIn(3)) {
      std::ranges::shuffle(pending_, random_);
    }
    deliver(std::exchange(pending_, {}));
    takeChanges();
  }
  ++tally_.settled;
  if (agrees() && oneIn(3)) {
    knowsTheNextStall();
  }
}

bool ScanLife::agrees() {
  const ScanIndex& index = *index_;
  const SyncHealthReport told = index.report();
  const SyncHealthReport found = ICloudScanEngine(place_.fileSystem, clock_).scan(folders_);
  tally_.safe += told.safeToClose ? 1 : 0;
  if (told.generatedAt != clock_.now()) {
    return fail("the report is of another time");
  }
  if (comparable(told) != comparable(found)) {
    std::ostringstream both;
    both << "index: " << comparable(told) << "\nscan: " << comparable(found);
    return fail(both.str());
  }
  const ScanIndex anew = ScanIndex::scan(folders_, place_.fileSystem, clock_);
  for (const std::string& folder : index.differences(anew, {})) {
    return fail("differs from an index made anew in " + folder);
  }
  if (place_.watched) {
    const std::set<std::string> watched = place_.watched();
    std::set<std::string> entered;
    for (const WatchFolder& folder : folders_) {
      std::string path(withoutTrailingSlash(folder.path));
      entered.insert(path);
      std::ranges::move(place_.tree.enteredFolders(path), std::inserter(entered, entered.end()));
    }
    for (const std::string& folder : watched) {
      const bool isAboveAnother =
          std::ranges::any_of(folders_, [&](const WatchFolder& other) { return other.path.starts_with(folder + "/"); });
      if (!entered.contains(folder) && !isAboveAnother) {
        return fail("still watched, though gone: " + folder);
      }
    }
  }
  return true;
}

bool ScanLife::knowsTheNextStall() {
  const Time now = clock_.now();
  const SyncHealthReport before = comparable(index_->report());
  const std::optional<Time> stall = index_->nextStall(now);
  if (!stall) {
    clock_.set(now + std::chrono::hours(24 * 365));
    const bool isSame = comparable(index_->report()) == before;
    clock_.set(now);
    return isSame || fail("a file becomes stalled, and the index does not know when");
  }
  ++tally_.lateStalls;
  clock_.set(*stall - microseconds(1));
  const bool isSame = *stall > now && comparable(index_->report()) == before;
  clock_.set(*stall);
  const bool isOther = comparable(index_->report()) != before;
  if (!oneIn(3)) {
    clock_.set(now);
  }
  return (isSame && isOther) || fail("the report turns at another moment than the index knows");
}

bool ScanLife::fail(const std::string& what) {
  hasFailed_ = true;
  std::string told;
  for (const std::string& line : lately_) {
    told += "\n  " + line;
  }
  ADD_FAILURE() << "seed " << seed_ << ", step " << tally_.steps << ": " << what << "\ntold lately:" << told;
  return false;
}

}  // namespace cirrovane::test
