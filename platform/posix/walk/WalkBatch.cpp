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
  add(lastPathComponent(name));
}

void WalkBatch::begin(const WalkedFolder& folder) {
  becomeEmpty();
  folder_ = &folder;
}

Item& WalkBatch::add(std::string_view name) {
  return items_.emplace_back(Item{name, std::nullopt});
}

void WalkBatch::enter(Item& item) {
  item.isEntered = true;
  foldersToEnter_.push_back(item.name);
}

}  // namespace cirrovane
