#include "platform/posix/walk/WalkBatch.h"

#include "base/Path.h"

#include <optional>

namespace cirrovane {

void WalkBatch::becomeEmpty() {
  unreadable_ = nullptr;
  items_.clear();
  foldersToEnter_.clear();
  texts_.clear();
}

void WalkBatch::becomeUnreadable(const WalkedFolder& folder) {
  becomeEmpty();
  unreadable_ = &folder;
  // The folder that a walk starts at is named by its whole path.
  const std::string_view name = folder.name;
  Item& item = add(lastPathComponent(name));
  item.kind = ItemKind::folder;
  item.isUnlisted = true;
}

void WalkBatch::begin(const WalkedFolder& folder) {
  becomeEmpty();
  folder_ = &folder;
}

Item& WalkBatch::add(std::string_view name) {
  Item& item = items_.emplace_back();
  item.name = name;
  return item;
}

void WalkBatch::enter(Item& item) {
  item.isEntered = true;
  foldersToEnter_.push_back(item.name);
}

}  // namespace cirrovane
