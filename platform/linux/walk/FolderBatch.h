#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/walk/WalkedFolder.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace cirrovane {

/// The system's call that writes the next entries of a folder, as getdents64 has it. A value, so that a test can stand
/// in for a disk that fails. Called by several threads at once.
using ListingCall = std::function<ssize_t(int descriptor, void* target, std::size_t size)>;

/// A stretch of one folder's entries, read in two steps: the names first, their values later, maybe on another thread.
class FolderBatch final : public ItemBatch {
 public:
  /// How far the listing of a folder has come.
  enum class Listing {
    hasMore,
    ended,
    /// The folder may hold more than was told.
    failed,
  };

  FolderBatch();

  std::span<const Item> items() const override { return items_; }
  std::string folderPath() const override { return pathOf(unreadable_ != nullptr ? *unreadable_ : *folder_); }
  std::string path(const Item& item) const override {
    return unreadable_ != nullptr ? pathOf(*unreadable_) : pathOf(*folder_, item.name);
  }

  /// Whether the folder's own attribute leaves its listing free.
  bool allowsListing(int descriptor);

  /// Forgets the last use and reads the next entries of the folder from the descriptor's position, without hidden ones.
  Listing readNames(const WalkedFolder& folder, int descriptor, const ListingCall& list);

  /// Makes the batch hold those of the named entries of the folder that exist, without hidden ones.
  void takeNames(const WalkedFolder& folder, int descriptor, const std::vector<std::string>& names);

  /// Makes the batch hold nothing.
  void becomeEmpty();
  /// Makes the batch hold the folder itself as one item that could not be read.
  void becomeUnreadable(const WalkedFolder& folder);

  /// Names of the folders among the entries that a walk enters.
  const std::vector<std::string_view>& foldersToEnter() const { return foldersToEnter_; }

  /// Reads every item's values. `attributePathPrefix` stands before a name to make a path that the calling thread can
  /// reach the item by; empty when the folder is its working directory.
  void readValues(int descriptor, const std::string& attributePathPrefix);

 private:
  void addEntry(int descriptor, std::string_view name, unsigned char type);
  void readItem(int descriptor, Item& item, std::string& attributePath, std::size_t prefixLength);

  const WalkedFolder* folder_ = nullptr;
  /// The folder that is the batch's only item; nullptr in a batch of a folder's entries.
  const WalkedFolder* unreadable_ = nullptr;
  /// The entries as the kernel wrote them; the items' names lie in here.
  std::vector<char> entries_;
  std::vector<Item> items_;
  std::vector<std::string_view> foldersToEnter_;
  /// Error texts of the items, and names that are in no listing.
  std::deque<std::string> texts_;
  std::vector<char> attribute_;
};

}  // namespace cirrovane
