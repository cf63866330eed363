#include "platform/linux/watch/WatchedFolders.h"

#include "base/Path.h"

#include <cstddef>
#include <functional>
#include <ranges>

namespace cirrovane {

bool WatchedFolders::Order::isBefore(const Place& left, const Place& right) {
  return left.parent != right.parent ? std::less<>()(left.parent, right.parent) : left.name < right.name;
}

void WatchedFolders::addRoot(const std::string& path) {
  folders_.try_emplace(WalkedFolder{nullptr, path}, -1);
}

void WatchedFolders::clear() {
  byWatch_.clear();
  folders_.clear();
}

WatchedFolders::Folder* WatchedFolders::at(const Place& place) {
  const auto found = folders_.find(place);
  return found != folders_.end() ? &*found : nullptr;
}

WatchedFolders::Folder* WatchedFolders::rootOf(std::string_view path) {
  // The nearest above: a watched folder within another has its own.
  for (std::string_view above = path; above.find('/') != std::string_view::npos; above = parentPath(above)) {
    if (Folder* root = at({nullptr, above})) {
      return root;
    }
  }
  return at({nullptr, "/"});
}

template <class Step>
WatchedFolders::Folder* WatchedFolders::descend(std::string_view path, Step step) {
  Folder* folder = rootOf(path);
  if (folder == nullptr) {
    return nullptr;
  }
  std::string_view below = path.substr(folder->first.name.size());
  while (folder != nullptr && !below.empty()) {
    if (below.front() == '/') {
      below.remove_prefix(1);
      continue;
    }
    const std::string_view name = below.substr(0, below.find('/'));
    below.remove_prefix(name.size());
    folder = step(Place{&folder->first, name});
  }
  return folder;
}

WatchedFolders::Folder* WatchedFolders::find(std::string_view path) {
  return descend(path, [this](const Place& place) { return at(place); });
}

WatchedFolders::Folder* WatchedFolders::make(std::string_view path) {
  return descend(path, [this](const Place& place) {
    Folder* known = at(place);
    return known != nullptr ? known : &*folders_.try_emplace({place.parent, std::string(place.name)}, -1).first;
  });
}

WatchedFolders::Folder* WatchedFolders::child(const Folder& parent, std::string_view name) {
  return at({&parent.first, name});
}

std::vector<WatchedFolders::Folder*> WatchedFolders::of(int watch) const {
  std::vector<Folder*> folders;
  const auto [begin, end] = byWatch_.equal_range(watch);
  for (const auto& [_, folder] : std::ranges::subrange(begin, end)) {
    folders.push_back(folder);
  }
  return folders;
}

void WatchedFolders::bind(Folder& folder, int watch) {
  detach(folder);
  folder.second = watch;
  byWatch_.emplace(watch, &folder);
}

void WatchedFolders::unbind(int watch) {
  for (Folder* folder : of(watch)) {
    folder->second = -1;
  }
  byWatch_.erase(watch);
}

std::vector<int> WatchedFolders::remove(Folder& folder) {
  // A list and no recursion, as folders may lie at any depth.
  std::vector<Folder*> removed = {&folder};
  for (std::size_t index = 0; index < removed.size(); ++index) {
    const WalkedFolder* parent = &removed[index]->first;
    for (auto below = folders_.lower_bound(Place{parent, {}}); below != folders_.end() && below->first.parent == parent;
         ++below) {
      removed.push_back(&*below);
    }
  }
  std::vector<int> watches;
  for (Folder* gone : std::views::reverse(removed)) {
    if (gone->second >= 0) {
      watches.push_back(gone->second);
      detach(*gone);
    }
    if (gone->first.parent != nullptr) {
      folders_.erase(folders_.find(gone->first));
    }
  }
  return watches;
}

void WatchedFolders::detach(Folder& folder) {
  const auto [begin, end] = byWatch_.equal_range(folder.second);
  for (auto entry = begin; entry != end; ++entry) {
    if (entry->second == &folder) {
      byWatch_.erase(entry);
      break;
    }
  }
  folder.second = -1;
}

}  // namespace cirrovane
