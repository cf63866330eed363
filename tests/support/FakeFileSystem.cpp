#include "tests/support/FakeFileSystem.h"

#include "base/Path.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace cirrovane::test {
namespace {

using FakeItem = FakeFileSystem::FakeItem;

std::optional<std::string_view> viewOf(const std::optional<std::string>& text) {
  return text ? std::optional<std::string_view>(*text) : std::nullopt;
}

Item itemOf(const FakeItem& fake) {
  Item item;
  item.name = lastPathComponent(fake.path);
  if (fake.values) {
    const FakeValues& values = *fake.values;
    item.values = ResourceValues{.isDirectory = values.isDirectory,
                                 .isUbiquitousItem = values.isUbiquitousItem,
                                 .isUploaded = values.isUploaded,
                                 .isUploading = values.isUploading,
                                 .hasUnresolvedConflicts = values.hasUnresolvedConflicts,
                                 .downloadingStatus = values.downloadingStatus,
                                 .uploadingError = viewOf(values.uploadingError),
                                 .downloadingError = viewOf(values.downloadingError),
                                 .contentModificationDate = values.contentModificationDate};
  }
  return item;
}

class FakeBatch final : public ItemBatch {
 public:
  explicit FakeBatch(std::span<const FakeItem> fakes) : fakes_(fakes) {
    for (const FakeItem& fake : fakes) {
      items_.push_back(itemOf(fake));
    }
  }
  std::span<const Item> items() const override { return items_; }
  std::string path(const Item& item) const override {
    return fakes_[static_cast<std::size_t>(&item - items_.data())].path;
  }

 private:
  std::span<const FakeItem> fakes_;
  std::vector<Item> items_;
};

class FakeWalk final : public FolderWalk {
 public:
  FakeWalk(std::span<const FakeItem> rest, std::size_t batchSize, bool breaksOff)
      : rest_(rest), batchSize_(batchSize), breaksOff_(breaksOff) {}

  const ItemBatch* next() override {
    if (rest_.empty()) {
      return nullptr;
    }
    const std::size_t count = std::min(batchSize_, rest_.size());
    current_ = std::make_unique<FakeBatch>(rest_.first(count));
    rest_ = rest_.subspan(count);
    return current_.get();
  }
  bool isComplete() const override { return !breaksOff_; }

 private:
  std::span<const FakeItem> rest_;
  std::size_t batchSize_;
  bool breaksOff_;
  std::unique_ptr<FakeBatch> current_;
};

}  // namespace

std::unique_ptr<FolderWalk> FakeFileSystem::enumerate(const std::string& folder) const {
  enumerated_.push_back(folder);
  const auto found = folders_.find(folder);
  return found == folders_.end() ? nullptr
                                 : std::make_unique<FakeWalk>(found->second, batchSize_, brokenOff_.contains(folder));
}

}  // namespace cirrovane::test
