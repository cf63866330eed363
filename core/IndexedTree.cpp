#include "core/IndexedTree.h"

#include "base/Path.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <ranges>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace cirrovane {
namespace {

using Subfolders = std::vector<std::unique_ptr<IndexedFolder>>;

/// So few that it makes no difference how they are read.
constexpr std::int64_t kFewFiles = 2'000;

std::string_view nameOf(const std::unique_ptr<IndexedFolder>& folder) {
  return folder->name;
}

IndexedFolder* findByName(const Subfolders& sorted, std::string_view name) {
  const auto found = std::ranges::lower_bound(sorted, name, {}, nameOf);
  return found != sorted.end() && (*found)->name == name ? found->get() : nullptr;
}

/// By name; of two with one name, which a listing under change may tell, the later goes.
void sortByName(Subfolders& subfolders) {
  if (!std::ranges::is_sorted(subfolders, std::ranges::less_equal(), nameOf)) {
    std::ranges::stable_sort(subfolders, {}, nameOf);
    const auto surplus = std::ranges::unique(subfolders, {}, nameOf);
    subfolders.erase(surplus.begin(), surplus.end());
  }
}

bool hasNote(const IndexedFolder& folder) {
  return !folder.noted.empty() || folder.isExhausted;
}

/// The places that lead from the watched folder to this one: in their order a walk comes by.
std::vector<std::uint32_t> wayTo(const IndexedFolder& folder) {
  std::vector<std::uint32_t> way;
  for (const IndexedFolder* step = &folder; step->parent != nullptr; step = step->parent) {
    way.push_back(step->place);
  }
  std::ranges::reverse(way);
  return way;
}

std::vector<const NotedItem*> byName(const std::vector<NotedItem>& items) {
  std::vector<const NotedItem*> sorted;
  sorted.reserve(items.size());
  for (const NotedItem& item : items) {
    sorted.push_back(&item);
  }
  std::ranges::stable_sort(sorted, {}, [](const NotedItem* item) { return std::string_view(item->name()); });
  return sorted;
}

bool haveSameEntries(const IndexedFolder& lhs, const IndexedFolder& rhs) {
  return lhs.cleanFiles == rhs.cleanFiles && lhs.isExhausted == rhs.isExhausted &&
         std::ranges::equal(lhs.subfolders, rhs.subfolders, {}, nameOf, nameOf) &&
         std::ranges::equal(byName(lhs.noted), byName(rhs.noted),
                            [](const NotedItem* left, const NotedItem* right) { return *left == *right; });
}

}  // namespace

std::string itemPath(const std::string& folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path.append(folder).append(folder.ends_with('/') ? "" : "/").append(name);
  return path;
}

/// What is to be read of one folder.
struct IndexedTree::ToRead {
  bool isDeep = false;
  /// The entries that were named.
  std::vector<std::string> items;
};

/// Folders that were read with all below them.
class IndexedTree::DeepReadings {
 public:
  void add(std::string path) { paths_.insert(std::move(path)); }

  bool cover(std::string_view path) const {
    for (; !paths_.empty() && !path.empty(); path = parentPath(path)) {
      if (paths_.contains(std::string(path))) {
        return true;
      }
    }
    return paths_.contains("/");
  }

 private:
  std::unordered_set<std::string> paths_;
};

/// The subfolders that a folder had before it is listed again.
class IndexedTree::KnownSubfolders {
 public:
  explicit KnownSubfolders(Subfolders sorted) : rest_(std::move(sorted)) {
    for (const std::unique_ptr<IndexedFolder>& subfolder : rest_) {
      all_.push_back(subfolder.get());
    }
  }

  /// nullptr where there was none of that name, or it is taken.
  std::unique_ptr<IndexedFolder> take(std::string_view name) {
    const auto found = std::ranges::lower_bound(
        all_, name, {}, [](const IndexedFolder* folder) { return std::string_view(folder->name); });
    return found != all_.end() && (*found)->name == name
               ? std::move(rest_[static_cast<std::size_t>(found - all_.begin())])
               : nullptr;
  }

  Subfolders takeRest() {
    std::erase(rest_, nullptr);
    return std::move(rest_);
  }

 private:
  std::vector<const IndexedFolder*> all_;
  Subfolders rest_;
};

IndexedTree::IndexedTree(const WatchFolder& folder) : watched_(folder), path_(withoutTrailingSlash(folder.path)) {}

IndexedTree::~IndexedTree() {
  drop(std::move(root_.subfolders));
}

std::string IndexedTree::pathOf(const IndexedFolder& folder) const {
  std::vector<const IndexedFolder*> steps;
  for (const IndexedFolder* step = &folder; step->parent != nullptr; step = step->parent) {
    steps.push_back(step);
  }
  std::string path = path_;
  for (const IndexedFolder* step : std::views::reverse(steps)) {
    if (!path.ends_with('/')) {
      path += '/';
    }
    path += step->name;
  }
  return path;
}

IndexedFolder* IndexedTree::find(std::string_view path) {
  if (!isAtOrBelow(path, path_)) {
    return nullptr;
  }
  path.remove_prefix(path_.size());
  if (path.starts_with('/')) {
    path.remove_prefix(1);
  }
  IndexedFolder* folder = &root_;
  while (folder != nullptr && !path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    folder = findByName(folder->subfolders, path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return folder;
}

void IndexedTree::readWhole(IndexReading& reading) {
  exists_ = reading.fileSystem.exists(path_);
  if (exists_ && reading.progress != nullptr) {
    reading.progress->enterFolder(path_);
  }
  readDeep(root_, reading);
}

void IndexedTree::update(std::span<const FolderChange> changes, IndexReading& reading) {
  bool isWhole = false;
  const std::map<std::string, ToRead> toRead = plan(changes, reading.fileSystem, isWhole);
  if (isWhole || isMostOfAll(toRead)) {
    readWhole(reading);
    return;
  }
  DeepReadings done;
  // In byte order, so a folder comes before those below it.
  for (const auto& [path, what] : toRead) {
    IndexedFolder* folder = done.cover(path) ? nullptr : find(path);
    if (folder == nullptr) {
      continue;
    }
    if (what.isDeep || !readOwn(*folder, reading)) {
      readDeepOrAbove(*folder, reading, done);
      continue;
    }
    std::vector<std::string> toEnter = what.items;
    for (const std::unique_ptr<IndexedFolder>& subfolder : folder->subfolders) {
      if (std::exchange(subfolder->isNew, false)) {
        toEnter.push_back(subfolder->name);
      }
    }
    for (const std::string& name : toEnter) {
      const std::string below = itemPath(path, name);
      // A folder that was named may be another one of the same name by now.
      IndexedFolder* subfolder = done.cover(below) ? nullptr : find(below);
      if (subfolder != nullptr) {
        readDeepOrAbove(*subfolder, reading, done);
      }
    }
  }
}

std::map<std::string, IndexedTree::ToRead> IndexedTree::plan(std::span<const FolderChange> changes,
                                                             const FileSystem& fileSystem, bool& isWhole) const {
  std::map<std::string, ToRead> toRead;
  for (const FolderChange& change : changes) {
    if (isAtOrBelow(change.folder, path_)) {
      ToRead& what = toRead[change.folder];
      what.isDeep = what.isDeep || change.isDeep;
      if (!change.item.empty()) {
        what.items.push_back(change.item);
      }
    } else if (isAtOrBelow(path_, change.folder)) {
      // The watched folder is an item of the one that changed, or lies below such an item.
      const bool isNamed = !change.item.empty() && isAtOrBelow(path_, itemPath(change.folder, change.item));
      isWhole = isWhole || change.isDeep || isNamed || (change.item.empty() && fileSystem.exists(path_) != exists_);
    }
  }
  return toRead;
}

/// A walk over everything reads with several threads, and so is sooner through than most of the folders one by one.
bool IndexedTree::isMostOfAll(const std::map<std::string, ToRead>& toRead) {
  if (cleanFiles_ < kFewFiles) {
    return false;
  }
  std::int64_t files = 0;
  for (const auto& [path, what] : toRead) {
    const IndexedFolder* folder = find(path);
    files += folder != nullptr ? folder->cleanFiles : 0;
  }
  return 2 * files > cleanFiles_;
}

bool IndexedTree::readDeep(IndexedFolder& folder, IndexReading& reading) {
  reading.isChanged = true;
  open(folder);
  Subfolders former = std::move(folder.subfolders);
  empty(folder);

  const std::string start = pathOf(folder);
  IndexedFolder* current = &folder;
  std::string currentPath = start;
  WalkOutcome outcome;
  if (&folder != &root_ || exists_) {
    outcome = walkFolder(
        reading.fileSystem, WalkRequest{start, true, reading.observer}, reading.progress, [&](const ItemBatch& batch) {
          if (std::string path = batch.folderPath(); path != currentPath) {
            close(*current);
            // Mostly one step down, which must not cost the whole way in a tree of any depth.
            IndexedFolder* found =
                parentPath(path) == currentPath ? findByName(current->subfolders, lastPathComponent(path)) : find(path);
            current = found != nullptr ? found : &folder;
            currentPath = std::move(path);
            open(*current);
          }
          return takeBatch(*current, batch, nullptr);
        });
  }
  close(*current);
  if (&folder == &root_) {
    outcome_ = outcome;
  }
  tellGone(former, folder, reading);
  drop(std::move(former));
  return outcome.isComplete;
}

bool IndexedTree::readOwn(IndexedFolder& folder, IndexReading& reading) {
  const bool existed = exists_;
  if (&folder == &root_) {
    exists_ = reading.fileSystem.exists(path_);
  }
  open(folder);
  IndexedFolder before;
  before.cleanFiles = folder.cleanFiles;
  before.isExhausted = folder.isExhausted;
  std::swap(before.noted, folder.noted);
  KnownSubfolders known(std::move(folder.subfolders));
  empty(folder);

  WalkOutcome outcome;
  if (&folder != &root_ || exists_) {
    const WalkRequest request{pathOf(folder), false, reading.observer};
    outcome = walkFolder(reading.fileSystem, request, reading.progress,
                         [&](const ItemBatch& batch) { return takeBatch(folder, batch, &known); });
  }
  close(folder);

  Subfolders former = known.takeRest();
  const bool hasNew = std::ranges::any_of(folder.subfolders, [](const auto& subfolder) { return subfolder->isNew; });
  if (hasNew || !former.empty() || folder.cleanFiles != before.cleanFiles || folder.isExhausted != before.isExhausted ||
      folder.noted != before.noted) {
    reading.isChanged = true;
  }
  tellGone(former, folder, reading);
  drop(std::move(former));
  if (&folder != &root_) {
    return outcome.isComplete;
  }
  if (exists_ != existed || outcome != outcome_) {
    reading.isChanged = true;
  }
  outcome_ = outcome;
  return true;
}

/// What a folder that cannot be listed by itself means, a walk from above alone can tell: whether it is kept from us,
/// lies too deep to be named by a path, or we lack the means.
void IndexedTree::readDeepOrAbove(IndexedFolder& folder, IndexReading& reading, DeepReadings& done) {
  IndexedFolder* start = &folder;
  while (start != &root_ && !readDeep(*start, reading)) {
    start = start->parent;
  }
  if (start == &root_) {
    readWhole(reading);
  }
  done.add(pathOf(*start));
}

std::int64_t IndexedTree::takeBatch(IndexedFolder& folder, const ItemBatch& batch, KnownSubfolders* known) {
  std::int64_t fileCount = 0;
  for (const Item& item : batch.items()) {
    if (item.isEntered) {
      addSubfolder(folder, item.name, known);
    }
    if (isNotable(item.values)) {
      if (!item.values && batch.path(item) == batch.folderPath()) {
        folder.isExhausted = true;
        continue;
      }
      folder.noted.emplace_back(item);
    } else if (!item.values->isDirectory) {
      ++folder.cleanFiles;
    }
    fileCount += item.values && !item.values->isDirectory ? 1 : 0;
  }
  return fileCount;
}

void IndexedTree::addSubfolder(IndexedFolder& folder, std::string_view name, KnownSubfolders* known) {
  std::unique_ptr<IndexedFolder> subfolder = known != nullptr ? known->take(name) : nullptr;
  if (subfolder == nullptr) {
    subfolder = std::make_unique<IndexedFolder>();
    subfolder->name = name;
    subfolder->parent = &folder;
    subfolder->isNew = known != nullptr;
  }
  subfolder->place = static_cast<std::uint32_t>(folder.subfolders.size());
  folder.subfolders.push_back(std::move(subfolder));
}

void IndexedTree::open(IndexedFolder& folder) {
  cleanFiles_ -= folder.cleanFiles;
  notedFolders_.erase(&folder);
}

void IndexedTree::close(IndexedFolder& folder) {
  sortByName(folder.subfolders);
  folder.noted.shrink_to_fit();
  folder.subfolders.shrink_to_fit();
  cleanFiles_ += folder.cleanFiles;
  if (hasNote(folder)) {
    notedFolders_.insert(&folder);
  }
}

void IndexedTree::empty(IndexedFolder& folder) {
  folder.noted.clear();
  folder.subfolders.clear();
  folder.cleanFiles = 0;
  folder.isExhausted = false;
}

/// One after another and not by recursion, for which a tree may be too deep.
void IndexedTree::drop(Subfolders subfolders) {
  while (!subfolders.empty()) {
    const std::unique_ptr<IndexedFolder> folder = std::move(subfolders.back());
    subfolders.pop_back();
    open(*folder);
    std::ranges::move(folder->subfolders, std::back_inserter(subfolders));
  }
}

void IndexedTree::tellGone(const Subfolders& former, const IndexedFolder& now, IndexReading& reading) const {
  const IndexedFolder nothing;
  std::vector<std::pair<const IndexedFolder*, const IndexedFolder*>> pairs;
  const auto compare = [&](const Subfolders& before, const IndexedFolder& after) {
    for (const std::unique_ptr<IndexedFolder>& subfolder : before) {
      if (const IndexedFolder* same = findByName(after.subfolders, subfolder->name)) {
        pairs.emplace_back(subfolder.get(), same);
      } else {
        std::string path = pathOf(*subfolder);
        const bool isKept =
            std::ranges::any_of(reading.watched, [&](const std::string& folder) { return isAtOrBelow(folder, path); });
        if (isKept) {
          pairs.emplace_back(subfolder.get(), &nothing);
        } else {
          reading.gone.push_back(std::move(path));
        }
      }
    }
  };
  compare(former, now);
  while (!pairs.empty()) {
    const auto [before, after] = pairs.back();
    pairs.pop_back();
    compare(before->subfolders, *after);
  }
}

bool IndexedTree::takeItems(IndexedFolder& folder, const std::vector<std::string>& asked, const ItemBatch* batch,
                            IndexReading& reading) {
  std::unordered_map<std::string_view, const Item*> found;
  for (const Item& item : batch != nullptr ? batch->items() : std::span<const Item>()) {
    found.emplace(item.name, &item);
  }
  std::unordered_set<std::string_view> missed(asked.begin(), asked.end());
  open(folder);
  std::erase_if(folder.noted, [&](NotedItem& noted) {
    const auto known = found.find(noted.name());
    if (known == found.end()) {
      return false;
    }
    const Item& item = *known->second;
    found.erase(known);
    if (item.values && item.values->isDirectory) {
      return false;
    }
    missed.erase(noted.name());
    if (!isNotable(item.values)) {
      ++folder.cleanFiles;
      reading.isChanged = true;
      return true;
    }
    NotedItem now(item);
    if (!(now == noted)) {
      reading.isChanged = true;
      reading.isBlockedAnew = reading.isBlockedAnew || (isBlocking(item.values, reading.staleBefore) &&
                                                        !isBlocking(noted.values(), reading.staleBefore));
      noted = std::move(now);
    }
    return false;
  });
  for (const Item& item : batch != nullptr ? batch->items() : std::span<const Item>()) {
    if (found.erase(item.name) > 0 && isNotable(item.values)) {
      // It was most likely clean before; the folder's listing will tell whether it was there at all.
      folder.cleanFiles -= folder.cleanFiles > 0 && item.values ? 1 : 0;
      folder.noted.emplace_back(item);
      reading.isChanged = true;
      reading.isBlockedAnew = reading.isBlockedAnew || isBlocking(item.values, reading.staleBefore);
    }
  }
  close(folder);
  return missed.empty();
}

void IndexedTree::addTo(ReportDraft& report) const {
  FolderDraft draft(watched_, report);
  if (!exists_) {
    draft.endMissing();
    return;
  }
  for (const IndexedFolder* folder : notedInWalkOrder()) {
    const std::string path = pathOf(*folder);
    if (folder->isExhausted) {
      draft.examine(std::nullopt, [&]() -> const std::string& { return path; });
    }
    for (const NotedItem& item : folder->noted) {
      draft.examine(item.values(), [&] { return itemPath(path, item.name()); });
    }
  }
  draft.addCleanFiles(cleanFiles_);
  draft.end(outcome_);
}

std::vector<const IndexedFolder*> IndexedTree::notedInWalkOrder() const {
  std::vector<std::pair<std::vector<std::uint32_t>, const IndexedFolder*>> ways;
  ways.reserve(notedFolders_.size());
  for (const IndexedFolder* folder : notedFolders_) {
    ways.emplace_back(wayTo(*folder), folder);
  }
  std::ranges::sort(ways);
  std::vector<const IndexedFolder*> folders;
  folders.reserve(ways.size());
  for (const auto& [way, folder] : ways) {
    folders.push_back(folder);
  }
  return folders;
}

std::vector<std::string> IndexedTree::differences(const IndexedTree& other) const {
  std::vector<std::string> found;
  if (exists_ != other.exists_ || outcome_ != other.outcome_) {
    found.push_back(path_);
  }
  std::vector<std::pair<const IndexedFolder*, const IndexedFolder*>> pairs = {{&root_, &other.root_}};
  while (!pairs.empty()) {
    const auto [ours, theirs] = pairs.back();
    pairs.pop_back();
    if (!haveSameEntries(*ours, *theirs) && (found.empty() || ours != &root_)) {
      found.push_back(pathOf(*ours));
    }
    for (const std::unique_ptr<IndexedFolder>& subfolder : ours->subfolders) {
      if (const IndexedFolder* same = findByName(theirs->subfolders, subfolder->name)) {
        pairs.emplace_back(subfolder.get(), same);
      }
    }
  }
  return found;
}

}  // namespace cirrovane
