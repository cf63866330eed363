#include "tests/support/FakeTree.h"

#include "base/Path.h"

#include <algorithm>
#include <deque>
#include <span>
#include <utility>

namespace cirrovane::test {
namespace {

constexpr int kMostLinks = 8;

std::string joined(const std::string& folder, const std::string& name) {
  return (folder == "/" ? folder : folder + "/") + name;
}

std::string parentOfPath(const std::string& path) {
  const std::string parent(parentPath(path));
  return parent.empty() ? "/" : parent;
}

std::vector<std::string> componentsOf(const std::string& path) {
  std::vector<std::string> components;
  std::size_t position = 0;
  while (position < path.size()) {
    const std::size_t end = std::min(path.find('/', position), path.size());
    if (end > position) {
      components.push_back(path.substr(position, end - position));
    }
    position = end + 1;
  }
  return components;
}

bool isBelow(const std::string& path, const std::string& folder) {
  return folder == "/" ? path != "/" : path.starts_with(folder + "/");
}

void eraseBelow(std::set<std::string>& paths, const std::string& folder) {
  std::erase_if(paths, [&](const std::string& path) { return path == folder || isBelow(path, folder); });
}

/// Some order that is neither that of the names nor that of their making.
std::size_t placeOf(const std::string& name) {
  std::size_t place = 7;
  for (const char letter : name) {
    place = (place * 31 + static_cast<unsigned char>(letter)) % 101;
  }
  return place;
}

bool isPackage(const std::string& name) {
  return name.ends_with(".pages");
}

std::optional<std::string_view> viewOf(const std::optional<std::string>& text) {
  return text ? std::optional<std::string_view>(*text) : std::nullopt;
}

}  // namespace

struct FakeTree::Entry {
  enum class Kind { folder, file, link };

  explicit Entry(std::string_view itsName = "", Kind itsKind = Kind::folder) : name(itsName), kind(itsKind) {
    if (itsKind == Kind::folder) {
      values.emplace().isDirectory = true;
    }
  }

  std::string name;
  Kind kind;
  std::optional<FakeValues> values;
  std::string target;
  bool isListable = true;
  bool isExhausted = false;
  bool breaksOff = false;
  /// In the order of the listing.
  std::vector<std::unique_ptr<Entry>> entries;

  Entry* find(const std::string& itsName) const {
    const auto found = std::ranges::find_if(entries, [&](const auto& entry) { return entry->name == itsName; });
    return found != entries.end() ? found->get() : nullptr;
  }
  void add(std::unique_ptr<Entry> entry) {
    const auto place = std::ranges::find_if(entries, [&](const auto& other) {
      return std::pair(placeOf(other->name), other->name) > std::pair(placeOf(entry->name), entry->name);
    });
    entries.insert(place, std::move(entry));
  }
  std::unique_ptr<Entry> take(const Entry& child) {
    const auto found = std::ranges::find_if(entries, [&](const auto& entry) { return entry.get() == &child; });
    std::unique_ptr<Entry> taken = std::move(*found);
    entries.erase(found);
    return taken;
  }
};

/// What a walk will tell.
struct FakeTree::Listed {
  struct Line {
    std::string folder;
    std::string path;
    Item item;
  };
  /// Names and texts, which stay where they are.
  std::deque<std::string> texts;
  std::deque<FakeValues> values;
  std::vector<Line> lines;
  bool isComplete = true;

  void add(const std::string& folder, const std::string& path, const Entry& entry, WalkScope scope = WalkScope::shown) {
    Item item;
    item.name = texts.emplace_back(entry.name);
    const bool isFolder = entry.kind == Entry::Kind::folder;
    if (entry.name.starts_with('.')) {
      item.concealment = Concealment::hidden;
    } else if (isFolder && isPackage(entry.name)) {
      item.concealment = Concealment::package;
    }
    if (isFolder) {
      item.kind = ItemKind::folder;
      item.isEntered = scope == WalkScope::everything || item.concealment == Concealment::none;
    } else if (entry.kind == Entry::Kind::link) {
      item.kind = ItemKind::other;
    }
    if (isFolder && scope == WalkScope::shown) {
      item.values.emplace().isDirectory = true;
    } else if (entry.kind == Entry::Kind::link) {
      item.values.emplace();
    } else if (entry.values) {
      const FakeValues& kept = values.emplace_back(*entry.values);
      item.values = ResourceValues{.isDirectory = kept.isDirectory,
                                   .isUbiquitousItem = kept.isUbiquitousItem,
                                   .isUploaded = kept.isUploaded,
                                   .isUploading = kept.isUploading,
                                   .hasUnresolvedConflicts = kept.hasUnresolvedConflicts,
                                   .downloadingStatus = kept.downloadingStatus,
                                   .uploadingError = viewOf(kept.uploadingError),
                                   .downloadingError = viewOf(kept.downloadingError),
                                   .contentModificationDate = kept.contentModificationDate,
                                   .fileSize = kept.fileSize};
      if (scope == WalkScope::everything) {
        item.values->contentModificationDate = std::nullopt;
        item.values->fileSize = std::nullopt;
        item.values->isExcludedFromSync = kept.isExcludedFromSync;
        item.values->isSyncPaused = kept.isSyncPaused;
      }
    }
    lines.push_back({folder, path, item});
  }

  /// Of a folder that it cannot be listed to its end.
  void addUnlisted(const std::string& path, const Entry& folder) {
    Line& line = lines.emplace_back();
    line.folder = path;
    line.path = path;
    line.item.name = texts.emplace_back(folder.name);
    line.item.kind = ItemKind::folder;
    line.item.isUnlisted = true;
  }
};

namespace {

class TreeBatch final : public ItemBatch {
 public:
  TreeBatch(std::string folder, std::vector<Item> items, std::vector<std::string> paths)
      : folder_(std::move(folder)), items_(std::move(items)), paths_(std::move(paths)) {}

  std::span<const Item> items() const override { return items_; }
  std::string folderPath() const override { return folder_; }
  std::string path(const Item& item) const override { return paths_[static_cast<std::size_t>(&item - items_.data())]; }

 private:
  std::string folder_;
  std::vector<Item> items_;
  std::vector<std::string> paths_;
};

template <class Listed>
class TreeWalk final : public FolderWalk {
 public:
  TreeWalk(std::unique_ptr<Listed> listed, std::size_t batchSize) : listed_(std::move(listed)), batchSize_(batchSize) {}

  const ItemBatch* next() override {
    if (position_ == listed_->lines.size()) {
      return nullptr;
    }
    const std::string folder = listed_->lines[position_].folder;
    std::vector<Item> items;
    std::vector<std::string> paths;
    while (items.size() < batchSize_ && position_ < listed_->lines.size() &&
           listed_->lines[position_].folder == folder) {
      items.push_back(listed_->lines[position_].item);
      paths.push_back(listed_->lines[position_].path);
      ++position_;
    }
    batch_.emplace(folder, std::move(items), std::move(paths));
    return &*batch_;
  }
  bool isComplete() const override { return listed_->isComplete; }

 private:
  std::unique_ptr<Listed> listed_;
  std::size_t batchSize_;
  std::size_t position_ = 0;
  std::optional<TreeBatch> batch_;
};

/// A batch that owns what its items look at.
template <class Listed>
class OwningBatch final : public ItemBatch {
 public:
  explicit OwningBatch(std::unique_ptr<Listed> listed) : listed_(std::move(listed)) {
    for (const auto& line : listed_->lines) {
      items_.push_back(line.item);
    }
  }
  std::span<const Item> items() const override { return items_; }
  std::string folderPath() const override { return listed_->lines.front().folder; }
  std::string path(const Item& item) const override {
    return listed_->lines[static_cast<std::size_t>(&item - items_.data())].path;
  }

 private:
  std::unique_ptr<Listed> listed_;
  std::vector<Item> items_;
};

}  // namespace

FakeTree::FakeTree() : root_(std::make_unique<Entry>()) {}
FakeTree::~FakeTree() = default;

FakeTree::Entry* FakeTree::find(const std::string& path) const {
  Entry* entry = root_.get();
  for (const std::string& name : componentsOf(path)) {
    entry = entry != nullptr ? entry->find(name) : nullptr;
  }
  return entry;
}

FakeTree::Entry* FakeTree::parentOf(const std::string& path) const {
  Entry* parent = path == "/" ? nullptr : find(parentOfPath(path));
  return parent != nullptr && parent->kind == Entry::Kind::folder ? parent : nullptr;
}

std::optional<std::string> FakeTree::resolved(const std::string& path) const {
  std::vector<std::string> rest = componentsOf(path);
  std::string reached = "/";
  int links = 0;
  const Entry* entry = root_.get();
  while (!rest.empty()) {
    const Entry* next = entry->kind == Entry::Kind::folder ? entry->find(rest.front()) : nullptr;
    if (next == nullptr) {
      return std::nullopt;
    }
    const std::string name = rest.front();
    rest.erase(rest.begin());
    if (next->kind == Entry::Kind::link) {
      if (++links > kMostLinks) {
        return std::nullopt;
      }
      std::vector<std::string> target = componentsOf(next->target);
      rest.insert(rest.begin(), target.begin(), target.end());
      reached = "/";
      entry = root_.get();
    } else {
      reached = joined(reached, name);
      entry = next;
    }
  }
  return reached;
}

const FakeTree::Entry* FakeTree::follow(const std::string& path) const {
  const std::optional<std::string> real = resolved(path);
  return real ? find(*real) : nullptr;
}

template <class Action>
void FakeTree::act(const std::vector<std::string>& touched, const Action& action) {
  const auto tell = [&](bool isAfter) {
    for (const std::string& path : touched) {
      if (listener_) {
        listener_(parentOfPath(path), std::string(lastPathComponent(path)), isAfter);
      }
    }
  };
  tell(false);
  action();
  tell(true);
}

bool FakeTree::makeFolder(const std::string& path) {
  Entry* parent = parentOf(path);
  if (parent == nullptr || find(path) != nullptr) {
    return false;
  }
  act({path}, [&] { parent->add(std::make_unique<Entry>(lastPathComponent(path))); });
  if (mirror_ != nullptr) {
    mirror_->madeFolder(path);
  }
  return true;
}

bool FakeTree::makeFile(const std::string& path, const std::optional<FakeValues>& values) {
  Entry* parent = parentOf(path);
  const Entry* former = find(path);
  if (parent == nullptr || (former != nullptr && former->kind == Entry::Kind::folder)) {
    return false;
  }
  act({path}, [&] {
    if (former != nullptr) {
      parent->take(*former);
    }
    auto file = std::make_unique<Entry>(lastPathComponent(path), Entry::Kind::file);
    file->values = values;
    parent->add(std::move(file));
  });
  if (mirror_ != nullptr) {
    mirror_->madeFile(path, values);
  }
  return true;
}

bool FakeTree::setValues(const std::string& path, const std::optional<FakeValues>& values) {
  Entry* entry = find(path);
  if (entry == nullptr || entry->kind != Entry::Kind::file) {
    return false;
  }
  act({path}, [&] { entry->values = values; });
  if (mirror_ != nullptr) {
    mirror_->setValues(path, values);
  }
  return true;
}

bool FakeTree::makeLink(const std::string& path, const std::string& target) {
  Entry* parent = parentOf(path);
  if (parent == nullptr || find(path) != nullptr) {
    return false;
  }
  act({path}, [&] {
    auto link = std::make_unique<Entry>(lastPathComponent(path), Entry::Kind::link);
    link->target = target;
    parent->add(std::move(link));
  });
  if (mirror_ != nullptr) {
    mirror_->madeLink(path, target);
  }
  return true;
}

bool FakeTree::remove(const std::string& path) {
  Entry* parent = parentOf(path);
  const Entry* entry = find(path);
  if (parent == nullptr || entry == nullptr) {
    return false;
  }
  act({path}, [&] { parent->take(*entry); });
  if (mirror_ != nullptr) {
    mirror_->removed(path);
  }
  return true;
}

bool FakeTree::move(const std::string& from, const std::string& to) {
  Entry* source = parentOf(from);
  Entry* target = parentOf(to);
  const Entry* entry = find(from);
  const Entry* former = find(to);
  if (source == nullptr || target == nullptr || entry == nullptr || from == to || isBelow(to, from)) {
    return false;
  }
  if (former != nullptr) {
    const bool isFolder = entry->kind == Entry::Kind::folder;
    if (isFolder != (former->kind == Entry::Kind::folder) || !former->entries.empty()) {
      return false;
    }
  }
  act({from, to}, [&] {
    if (former != nullptr) {
      target->take(*former);
    }
    std::unique_ptr<Entry> moving = source->take(*entry);
    moving->name = lastPathComponent(to);
    target->add(std::move(moving));
  });
  if (mirror_ != nullptr) {
    mirror_->moved(from, to);
  }
  return true;
}

bool FakeTree::setListable(const std::string& path, bool isListable) {
  Entry* entry = find(path);
  if (entry == nullptr || entry->kind != Entry::Kind::folder) {
    return false;
  }
  act({path}, [&] { entry->isListable = isListable; });
  if (mirror_ != nullptr) {
    mirror_->setListable(path, isListable);
  }
  return true;
}

bool FakeTree::setFolderValues(const std::string& path, const std::optional<FakeValues>& values) {
  Entry* entry = find(path);
  if (entry == nullptr || entry->kind != Entry::Kind::folder) {
    return false;
  }
  act({path}, [&] {
    entry->values = values;
    if (entry->values) {
      entry->values->isDirectory = true;
    }
  });
  return true;
}

bool FakeTree::setExhausted(const std::string& path, bool isExhausted) {
  Entry* entry = find(path);
  if (entry == nullptr || entry->kind != Entry::Kind::folder) {
    return false;
  }
  act({path}, [&] { entry->isExhausted = isExhausted; });
  return true;
}

bool FakeTree::setBreaksOff(const std::string& path, bool breaksOff) {
  Entry* entry = find(path);
  if (entry == nullptr || entry->kind != Entry::Kind::folder) {
    return false;
  }
  act({path}, [&] { entry->breaksOff = breaksOff; });
  return true;
}

std::vector<std::string> FakeTree::allPaths() const {
  std::vector<std::string> paths;
  const std::function<void(const Entry&, const std::string&)> add = [&](const Entry& folder, const std::string& path) {
    for (const std::unique_ptr<Entry>& entry : folder.entries) {
      const std::string below = joined(path, entry->name);
      paths.push_back(below);
      add(*entry, below);
    }
  };
  add(*root_, "/");
  return paths;
}

bool FakeTree::isFolder(const std::string& path) const {
  const Entry* entry = find(path);
  return entry != nullptr && entry->kind == Entry::Kind::folder;
}

bool FakeTree::isFile(const std::string& path) const {
  const Entry* entry = find(path);
  return entry != nullptr && entry->kind == Entry::Kind::file;
}

std::vector<std::string> FakeTree::listedNames(const std::string& path) const {
  const Entry* entry = find(path);
  std::vector<std::string> names;
  if (entry == nullptr || !entry->isListable || entry->isExhausted) {
    return names;
  }
  for (const std::unique_ptr<Entry>& below : entry->entries) {
    names.push_back(below->name);
  }
  if (entry->breaksOff) {
    names.resize(names.size() / 2);
  }
  return names;
}

bool FakeTree::isListable(const std::string& path) const {
  const Entry* entry = find(path);
  return entry != nullptr && entry->isListable && !entry->isExhausted && !entry->breaksOff;
}

std::optional<FakeValues> FakeTree::valuesOf(const std::string& path) const {
  const Entry* entry = find(path);
  return entry != nullptr ? entry->values : std::nullopt;
}

std::vector<std::string> FakeTree::enteredFolders(const std::string& path) const {
  std::vector<std::string> paths;
  const std::function<void(const Entry&, const std::string&)> add = [&](const Entry& folder, const std::string& at) {
    paths.push_back(at);
    if (!folder.isListable || folder.isExhausted) {
      return;
    }
    for (const std::unique_ptr<Entry>& entry : folder.entries) {
      if (entry->kind == Entry::Kind::folder && !entry->name.starts_with('.') && !isPackage(entry->name)) {
        add(*entry, joined(at, entry->name));
      }
    }
  };
  const Entry* top = follow(path);
  if (top != nullptr && top->kind == Entry::Kind::folder) {
    add(*top, path);
  }
  return paths;
}

std::unique_ptr<FolderWalk> FakeTree::enumerate(const WalkRequest& request) const {
  const Entry* folder = follow(request.folder);
  if (folder == nullptr || folder->kind != Entry::Kind::folder) {
    return nullptr;
  }
  auto listed = std::make_unique<Listed>();
  list(*folder, request, request.folder, *listed);
  return std::make_unique<TreeWalk<Listed>>(std::move(listed), batchSize_);
}

void FakeTree::list(const Entry& folder, const WalkRequest& request, const std::string& path, Listed& listed) const {
  const bool isStart = path == request.folder;
  const bool isWhole = request.scope == WalkScope::everything;
  if (!isStart && (folder.isExhausted || (!folder.isListable && isWhole))) {
    listed.addUnlisted(path, folder);
    return;
  }
  if (folder.isExhausted || !folder.isListable) {
    listed.isComplete = listed.isComplete && !isStart;
    return;
  }
  ++listingCount_;
  if (onListing_) {
    onListing_();
  }
  if (request.observer != nullptr) {
    request.observer->beforeListing(path, -1);
  }
  std::vector<const Entry*> toEnter;
  std::size_t count = folder.breaksOff ? folder.entries.size() / 2 : folder.entries.size();
  for (const std::unique_ptr<Entry>& entry : folder.entries) {
    if (count-- == 0) {
      break;
    }
    if (entry->name.starts_with('.') && !isWhole) {
      continue;
    }
    listed.add(path, joined(path, entry->name), *entry, request.scope);
    if (listed.lines.back().item.isEntered) {
      toEnter.push_back(entry.get());
    }
  }
  if (folder.breaksOff && isStart) {
    listed.isComplete = false;
  } else if (folder.breaksOff && isWhole) {
    listed.addUnlisted(path, folder);
  }
  for (const Entry* entry : request.isDeep ? toEnter : std::vector<const Entry*>()) {
    list(*entry, request, joined(path, entry->name), listed);
  }
}

std::unique_ptr<ItemBatch> FakeTree::readItems(const std::string& folder, const std::vector<std::string>& names) const {
  const Entry* at = follow(folder);
  if (at == nullptr || at->kind != Entry::Kind::folder || at->isExhausted) {
    return nullptr;
  }
  auto listed = std::make_unique<Listed>();
  for (const std::string& name : names) {
    const Entry* entry = at->find(name);
    if (entry != nullptr && !name.starts_with('.')) {
      listed->add(folder, joined(folder, name), *entry);
    }
  }
  return listed->lines.empty() ? nullptr : std::make_unique<OwningBatch<Listed>>(std::move(listed));
}

FakeTreeWatch::FakeTreeWatch(FakeTree& tree) : tree_(tree) {
  tree.setListener(
      [this](const std::string& folder, const std::string& entry, bool isAfter) { hear(folder, entry, isAfter); });
}

void FakeTreeWatch::start(const std::vector<std::string>& folders) {
  folders_ = folders;
  told_.clear();
  held_.clear();
  changes_.clear();
}

void FakeTreeWatch::forget(const std::string& folder) {
  eraseBelow(told_, folder);
  eraseBelow(held_, folder);
}

void FakeTreeWatch::beforeListing(const std::string& folder, int /*descriptor*/) {
  const std::lock_guard lock(listingMutex_);
  told_.insert(folder);
  held_.insert(folder);
}

std::optional<std::vector<FolderChange>> FakeTreeWatch::take() {
  return std::exchange(changes_, {});
}

void FakeTreeWatch::hear(const std::string& folder, const std::string& entry, bool isAfter) {
  const std::string touched = joined(folder, entry);
  if (!isAfter) {
    touched_[touched] = {tree_.identityOf(touched), tree_.isFolder(touched)};
    if (touched_.size() == 1) {
      ledTo_.clear();
      for (const std::string& watched : folders_) {
        ledTo_.push_back(tree_.resolved(watched));
      }
    }
    return;
  }
  const auto [former, wasFolder] = touched_[touched];
  const bool isAnother = former != tree_.identityOf(touched);
  touched_.erase(touched);
  for (std::size_t place = 0; place < folders_.size(); ++place) {
    const std::string& watched = folders_[place];
    const std::optional<std::string>& ledTo = ledTo_[place];
    if (ledTo && (folder == *ledTo || isBelow(folder, *ledTo))) {
      const std::string named =
          folder == *ledTo ? watched : joined(watched, folder.substr(ledTo->size() == 1 ? 1 : ledTo->size() + 1));
      if (told_.contains(named)) {
        // A system need not name an entry, unless a folder of that name may be another one by now.
        const bool isNamed = wasFolder || ++toldCount_ % 4 != 0;
        changes_.push_back({named, isNamed ? entry : ""});
      }
      if (isAnother) {
        eraseBelow(told_, joined(named, entry));
      }
    }
    // The folder itself, one above it or a link on the way.
    if (ledTo != tree_.resolved(watched) || (watched + "/").starts_with(touched + "/") ||
        (ledTo && (*ledTo + "/").starts_with(touched + "/"))) {
      changes_.push_back({watched, "", true});
      if (isAnother) {
        eraseBelow(told_, watched);
      }
    }
  }
}

}  // namespace cirrovane::test
