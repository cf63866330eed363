#pragma once

#include "platform/FileSystem.h"
#include "platform/posix/walk/WalkedFolder.h"

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane {

/// A stretch of one folder's entries, which a reader fills in two steps: the names first, their values later.
class WalkBatch final : public ItemBatch {
 public:
  /// `entriesSize`: bytes of entries that it has room for.
  explicit WalkBatch(std::size_t entriesSize) : entries_(entriesSize) {}

  std::span<const Item> items() const override { return items_; }
  std::string folderPath() const override { return pathOf(unreadable_ != nullptr ? *unreadable_ : *folder_); }
  std::string path(const Item& item) const override {
    return unreadable_ != nullptr ? pathOf(*unreadable_) : pathOf(*folder_, item.name);
  }

  /// Makes the batch hold nothing.
  void becomeEmpty();
  /// Makes the batch hold the folder itself as one item that could not be read, and so not listed either.
  void becomeUnreadable(const WalkedFolder& folder);
  /// Makes the batch hold nothing yet of the folder's entries.
  void begin(const WalkedFolder& folder);

  /// The folder whose entries it holds.
  const WalkedFolder& folder() const { return *folder_; }
  /// Room for entries as the system writes them; the items' names may lie in here.
  std::span<char> entries() { return entries_; }
  /// Adds an item without values. The name lies in the entries, or is kept.
  Item& add(std::string_view name);
  /// Says that the walk goes on into the item, which is a folder.
  void enter(Item& item);
  /// Keeps a text for as long as the items last. A NUL follows it.
  std::string_view keep(std::string text) { return texts_.emplace_back(std::move(text)); }
  /// The items, to put their values in.
  std::span<Item> itemsToFill() { return items_; }

  /// Names of the folders among the entries that a walk enters.
  const std::vector<std::string_view>& foldersToEnter() const { return foldersToEnter_; }

 private:
  const WalkedFolder* folder_ = nullptr;
  /// The folder that is the batch's only item; nullptr in a batch of a folder's entries.
  const WalkedFolder* unreadable_ = nullptr;
  std::vector<char> entries_;
  std::vector<Item> items_;
  std::vector<std::string_view> foldersToEnter_;
  /// Error texts of the items, and names that are in no listing.
  std::deque<std::string> texts_;
};

}  // namespace cirrovane
