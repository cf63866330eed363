#include "core/CoverageScan.h"

#include "base/Path.h"
#include "core/FolderNaming.h"
#include "core/IndexedTree.h"
#include "core/NameRules.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::string_view kWithinTrash = "/.Trash/";

/// What is wrong with an item, or the worst of what is wrong with several.
struct Fault {
  static constexpr std::size_t kNoRule = kExclusionRules.size();

  std::optional<GapKind> kind;
  std::size_t rule = kNoRule;

  void take(GapKind otherKind, std::size_t otherRule = kNoRule) {
    if (!kind || std::tie(otherKind, otherRule) < std::tie(*kind, rule)) {
      kind = otherKind;
      rule = otherRule;
    }
  }
  void take(const Fault& other) {
    if (other.kind) {
      take(*other.kind, other.rule);
    }
  }
};

/// A watched folder in iCloud Drive.
struct Place {
  std::string path;
  std::string name;
  std::int64_t files = 0;
  /// The walk over a folder above has come by, as by any folder that a scan enters.
  bool isReached = false;
  /// The same, within a package or a hidden folder: its items are counted already.
  bool isWithin = false;
  /// A gap stands for it and for all that it holds.
  bool isCovered = false;
  bool isExamined = true;
};

/// The gaps that a report holds and the counts of all.
class GapList {
 public:
  explicit GapList(std::vector<std::string> acknowledged) : acknowledgedPaths_(std::move(acknowledged)) {
    std::ranges::sort(acknowledgedPaths_);
  }

  void add(CoverageGap gap) {
    if (isAcknowledged(gap.path)) {
      ++acknowledged_;
      return;
    }
    counts_.add(gap.kind);
    first_.insert(std::move(gap));
    if (first_.size() > CoverageReport::kMostGaps) {
      first_.erase(std::prev(first_.end()));
    }
  }

  void moveTo(CoverageReport& report) {
    report.acknowledged = acknowledged_;
    report.gapCounts = counts_;
    while (!first_.empty()) {
      report.gaps.push_back(std::move(first_.extract(first_.begin()).value()));
    }
  }

 private:
  struct Order {
    bool operator()(const CoverageGap& lhs, const CoverageGap& rhs) const {
      return std::tie(lhs.kind, lhs.path) < std::tie(rhs.kind, rhs.path);
    }
  };

  bool isAcknowledged(std::string_view path) const {
    if (acknowledgedPaths_.empty()) {
      return false;
    }
    for (; !path.empty(); path = parentPath(path)) {
      if (std::ranges::binary_search(acknowledgedPaths_, path)) {
        return true;
      }
    }
    return acknowledgedPaths_.front() == "/";
  }

  std::vector<std::string> acknowledgedPaths_;
  std::set<CoverageGap, Order> first_;
  GapCounts counts_;
  std::int64_t acknowledged_ = 0;
};

/// What an item is, or is held by, as far as a gap can stand for it.
enum class Role { plain, hidden, package };

Role roleOf(const Item& item) {
  if (item.concealment == Concealment::hidden) {
    return Role::hidden;
  }
  const bool isMarked = item.kind == ItemKind::folder && item.values && item.values->isPackage.value_or(false);
  return isMarked || item.concealment == Concealment::package ? Role::package : Role::plain;
}

bool isPending(const ResourceValues& values) {
  return values.isUbiquitousItem &&
         (!values.isUploaded.value_or(true) || values.uploadingError || values.hasUnresolvedConflicts.value_or(false));
}

/// What is wrong with an item of that role. `isTopmost`: it is the package itself, and not held by one.
Fault faultOf(const Item& item, Role role, bool isTopmost) {
  Fault fault;
  if (item.kind == ItemKind::other) {
    return fault;
  }
  if (!item.values) {
    fault.take(GapKind::stateUnknown);
    return fault;
  }
  const ResourceValues& values = *item.values;
  const bool isFile = item.kind == ItemKind::file;
  if (role != Role::plain && isPending(values)) {
    fault.take(role == Role::package ? GapKind::pendingPackage : GapKind::pendingHidden);
  }
  if (values.isSyncPaused.value_or(false)) {
    fault.take(GapKind::syncPaused);
  }
  const bool isMarkedOut = values.isExcludedFromSync.value_or(false);
  if (isMarkedOut || !values.isUbiquitousItem) {
    const std::optional<std::size_t> rule = exclusionRuleFor(item.name, item.kind);
    if (isMarkedOut || rule) {
      fault.take(GapKind::excluded, rule.value_or(Fault::kNoRule));
    }
  }
  if (values.isUbiquitousItem && isFile && !values.isUploaded) {
    fault.take(GapKind::stateUnknown);
  }
  const bool isItsOwn = role == Role::package ? isTopmost : isFile;
  if (!values.isUbiquitousItem && isItsOwn) {
    fault.take(GapKind::notInICloud);
  }
  return fault;
}

/// Takes in the walk over one watched folder.
class FolderCoverage {
 public:
  /// `below`: the places that lie below the folder and are still to be walked; all places are in the watchlist's order.
  FolderCoverage(Place& place, std::vector<Place*> below, CoverageExamined& examined, GapList& gaps)
      : place_(place), below_(std::move(below)), examined_(examined), gaps_(gaps), path_(place.path) {
    frames_.push_back({place.path, {}, place.isCovered});
  }

  void take(const ItemBatch& batch) {
    if (std::string path = batch.folderPath(); path != path_) {
      enter(std::move(path));
    }
    if (isTrash_) {
      return;
    }
    for (const Item& item : batch.items()) {
      if (item.isUnlisted) {
        takeUnlisted();
      } else {
        hasEntries_ = true;
        takeItem(item);
      }
    }
  }

  void end() {
    leaveEnclosure();
    while (!frames_.empty()) {
      leaveFrame();
    }
  }

 private:
  /// A folder of which the parent's listing told something that counts when the walk comes by, or is over.
  struct Noted {
    std::string name;
    Role role = Role::plain;
    Fault fault;
    bool isShown = false;
  };

  /// A folder that a scan enters, with what the walk has still to enter in it.
  struct Frame {
    std::string path;
    std::vector<Noted> noted;
    /// A gap stands for all that it holds.
    bool isStoodFor = false;
    bool isSorted = false;

    Noted* find(std::string_view name) {
      // All that is listed comes before the first folder below is entered.
      if (!std::exchange(isSorted, true)) {
        std::ranges::sort(noted, {}, &Noted::name);
      }
      const auto found = std::ranges::lower_bound(noted, name, {}, &Noted::name);
      return found != noted.end() && found->name == name ? &*found : nullptr;
    }
  };

  /// The topmost package or hidden folder that the walk is in.
  struct Enclosure {
    std::string path;
    Role role = Role::plain;
    Fault fault;
    bool isShown = false;
  };

  void enter(std::string path) {
    path_ = std::move(path);
    hasEntries_ = false;
    isTrash_ = (path_.substr(place_.path.size()) + "/").find(kWithinTrash) != std::string::npos;
    if (isTrash_) {
      return;
    }
    if (enclosure_ && isAtOrBelow(path_, enclosure_->path)) {
      noteWithin();
      return;
    }
    leaveEnclosure();
    while (frames_.size() > 1 && !isAtOrBelow(path_, frames_.back().path)) {
      leaveFrame();
    }
    Frame& above = frames_.back();
    if (path_ == above.path) {
      return;
    }
    const std::string_view rest = std::string_view(path_).substr(above.path.size() + 1);
    Noted* noted = above.find(rest.substr(0, rest.find('/')));
    if (noted != nullptr && noted->role != Role::plain) {
      enclosure_ = Enclosure{itemPath(above.path, noted->name), noted->role, noted->fault, noted->isShown};
      noted->fault = {};
      noteWithin();
      return;
    }
    const bool isStoodFor = above.isStoodFor || noted != nullptr;
    frames_.push_back({path_, {}, isStoodFor});
    for (Place* place : below_) {
      if (place->path == path_) {
        place->isReached = true;
        reached_.push_back(place);
      }
    }
  }

  void noteWithin() {
    for (Place* place : below_) {
      place->isWithin = place->isWithin || place->path == path_;
    }
  }

  void leaveEnclosure() {
    if (const std::optional<Enclosure> left = std::exchange(enclosure_, std::nullopt)) {
      add(left->fault, left->path, /*isFolder=*/true);
    }
  }

  void leaveFrame() {
    for (const Noted& noted : frames_.back().noted) {
      if (noted.role != Role::plain) {
        add(noted.fault, itemPath(frames_.back().path, noted.name), /*isFolder=*/true);
      }
    }
    frames_.pop_back();
  }

  void takeUnlisted() {
    for (Place* place : reached_) {
      place->isExamined = place->isExamined && place->path != path_;
    }
    Fault fault;
    fault.take(GapKind::unreadableFolder);
    if (enclosure_) {
      enclosure_->fault.take(fault);
    } else {
      // What was listed before it broke off stands beside it.
      add(fault, path_, /*isFolder=*/true, /*isStandIn=*/!hasEntries_);
    }
  }

  void takeItem(const Item& item) {
    const bool isFolder = item.kind == ItemKind::folder;
    if (!isFolder && item.concealment == Concealment::none && (!enclosure_ || enclosure_->isShown)) {
      countFile();
    }
    if (item.name == kTrashName || (!isFolder && isPassingName(item.name))) {
      return;
    }
    const bool isTopmost = !enclosure_;
    const Role role = isTopmost ? roleOf(item) : enclosure_->role;
    countExamined(role, isTopmost);
    const Fault fault = faultOf(item, role, isTopmost);
    if (!isTopmost) {
      enclosure_->fault.take(fault);
    } else if (isFolder && role != Role::plain) {
      frames_.back().noted.push_back({std::string(item.name), role, fault, item.concealment == Concealment::none});
    } else if (fault.kind) {
      add(fault, itemPath(path_, item.name), isFolder);
      if (isFolder) {
        frames_.back().noted.push_back({std::string(item.name), role, {}, true});
      }
    }
  }

  void countFile() {
    ++place_.files;
    for (Place* place : reached_) {
      place->files += isAtOrBelow(path_, place->path) ? 1 : 0;
    }
  }

  void countExamined(Role role, bool isTopmost) {
    if (place_.isWithin || role == Role::plain) {
      return;
    }
    if (role == Role::hidden) {
      ++examined_.hidden;
    } else {
      ++(isTopmost ? examined_.packages : examined_.inPackages);
    }
  }

  /// `isStandIn`: it stands for all that is there too.
  void add(const Fault& fault, const std::string& path, bool isFolder, bool isStandIn = true) {
    if (!fault.kind || frames_.back().isStoodFor) {
      return;
    }
    const Place* first = &place_;
    for (Place* place : below_) {
      if (place->path != path && isAtOrBelow(path, place->path)) {
        // Places lie in one list in the order of the watchlist.
        first = std::min(first, static_cast<const Place*>(place));
      }
      place->isCovered = place->isCovered || (isStandIn && isAtOrBelow(place->path, path));
    }
    CoverageGap gap{*fault.kind, path, first->name, isFolder, std::nullopt};
    if (fault.rule != Fault::kNoRule) {
      gap.rule = kExclusionRules.at(fault.rule).pattern;
    }
    gaps_.add(std::move(gap));
  }

  Place& place_;
  std::vector<Place*> below_;
  /// Those of them that the walk has come by.
  std::vector<Place*> reached_;
  CoverageExamined& examined_;
  GapList& gaps_;
  std::string path_;
  bool isTrash_ = false;
  /// Whether anything was listed in the folder where the walk is.
  bool hasEntries_ = false;
  /// From the watched folder down to where the walk is; never empty before the end.
  std::vector<Frame> frames_;
  std::optional<Enclosure> enclosure_;
};

/// The watched folders in iCloud Drive, each once, in the order of the watchlist.
std::vector<Place> placesOf(const std::vector<WatchFolder>& folders) {
  std::vector<Place> places;
  for (const WatchFolder& folder : folders) {
    std::string path(withoutTrailingSlash(folder.path));
    if (isInsideICloudDrive(path) && std::ranges::find(places, path, &Place::path) == places.end()) {
      places.push_back({std::move(path), folder.name});
    }
  }
  return places;
}

/// The places, none before one that it lies below.
std::vector<Place*> outermostFirst(std::vector<Place>& places) {
  std::vector<Place*> order;
  order.reserve(places.size());
  for (Place& place : places) {
    order.push_back(&place);
  }
  std::ranges::stable_sort(order, {}, [](const Place* place) { return place->path.size(); });
  return order;
}

std::vector<std::string> notExamined(const std::vector<WatchFolder>& folders, const std::vector<Place>& places) {
  std::vector<std::string> paths;
  for (const WatchFolder& folder : folders) {
    std::string path(withoutTrailingSlash(folder.path));
    const auto place = std::ranges::find(places, path, &Place::path);
    const bool isExamined = place != places.end() && place->isExamined;
    if (!isExamined && std::ranges::find(paths, path) == paths.end()) {
      paths.push_back(std::move(path));
    }
  }
  return paths;
}

}  // namespace

std::optional<CoverageLook> CoverageScan::look(const CoverageRequest& request, const CoverageStop& stop) const {
  CoverageLook look;
  CoverageReport& report = look.report;
  std::vector<Place> places = placesOf(request.folders);
  GapList gaps(request.acknowledged);
  const std::vector<Place*> order = outermostFirst(places);
  for (auto next = order.begin(); next != order.end(); ++next) {
    Place& place = **next;
    if (place.isReached) {
      continue;
    }
    std::vector<Place*> below;
    std::copy_if(std::next(next), order.end(), std::back_inserter(below),
                 [&](const Place* other) { return !other->isReached && isAtOrBelow(other->path, place.path); });
    if (stop.isAsked()) {
      return std::nullopt;
    }
    const std::unique_ptr<FolderWalk> walk =
        fileSystem_.exists(place.path)
            ? fileSystem_.enumerate({place.path, true, nullptr, WalkScope::everything, /*isUnhurried=*/true})
            : nullptr;
    FolderCoverage folder(place, std::move(below), report.examined, gaps);
    while (const ItemBatch* batch = walk && !stop.isAsked() ? walk->next() : nullptr) {
      folder.take(*batch);
    }
    if (stop.isAsked()) {
      return std::nullopt;
    }
    folder.end();
    place.isExamined = walk && walk->isComplete();
  }
  for (const Place& place : places) {
    if (!place.isExamined) {
      continue;
    }
    look.fileCounts.push_back({place.path, place.files});
    const auto most = std::ranges::find(request.mostFiles, place.path, &FolderFileCount::path);
    if (!place.isCovered && most != request.mostFiles.end() && isMassLoss(most->files, place.files)) {
      gaps.add({GapKind::filesLost, place.path, place.name, true,
                fmt::format("from {} files to {}", most->files, place.files)});
    }
  }
  report.generatedAt = clock_.now();
  report.notExamined = notExamined(request.folders, places);
  gaps.moveTo(report);
  report.complete = report.gapCounts.all() == 0 && report.notExamined.empty();
  return look;
}

}  // namespace cirrovane
