#pragma once

#include "platform/FileSystem.h"
#include "platform/macos/plain/ResourceDictionary.h"

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <vector>

namespace cirrovane {

/// A batch that is filled item by item, and keeps what the items' views lead to.
class CollectedBatch final : public ItemBatch {
 public:
  CollectedBatch() = default;
  CollectedBatch(const CollectedBatch&) = delete;
  CollectedBatch& operator=(const CollectedBatch&) = delete;

  /// Takes in an item by its absolute path and what the system says of it; nullptr when that could not be read.
  void add(std::string path, const ResourceDictionary* dictionary);
  void clear();
  std::size_t size() const { return items_.size(); }

  std::span<const Item> items() const override { return items_; }
  /// Of a batch of one folder's items.
  std::string folderPath() const override;
  std::string path(const Item& item) const override;

 private:
  std::optional<std::string_view> keep(std::optional<std::string> text);

  std::vector<Item> items_;
  // Not vectors: what the items look at must stay where it is while more comes in.
  std::deque<std::string> paths_;
  std::deque<std::string> texts_;
};

}  // namespace cirrovane
