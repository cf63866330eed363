#include "tests/support/FakeFileSystem.h"

#include "base/Path.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace cirrovane::test {
namespace {

using FakeItem = FakeFileSystem::FakeItem;

std::optional<std::string_view> viewOf(const std::optional<std::string>& text) {
  return text ? std::optional<std::string_view>(*text) : std::nullopt;
}

std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
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
                                 .contentModificationDate = values.contentModificationDate,
                                 .fileSize = values.fileSize};
    item.isEntered = values.isDirectory;
  }
  return item;
}

class FakeBatch final : public ItemBatch {
 public:
  /// Items of one folder.
  explicit FakeBatch(std::vector<FakeItem> fakes) : fakes_(std::move(fakes)) {
    for (const FakeItem& fake : fakes_) {
      items_.push_back(itemOf(fake));
    }
  }
  std::span<const Item> items() const override { return items_; }
  std::string folderPath() const override { return folderOf(fakes_.front().path); }
  std::string path(const Item& item) const override {
    return fakes_[static_cast<std::size_t>(&item - items_.data())].path;
  }

 private:
  std::vector<FakeItem> fakes_;
  std::vector<Item> items_;
};

class FakeWalk final : public FolderWalk {
 public:
  FakeWalk(std::vector<FakeItem> items, std::size_t batchSize, bool breaksOff)
      : items_(std::move(items)), rest_(items_), batchSize_(batchSize), breaksOff_(breaksOff) {}

  const ItemBatch* next() override {
    if (rest_.empty()) {
      return nullptr;
    }
    std::vector<FakeItem> batch;
    const std::string folder = folderOf(rest_.front().path);
    while (batch.size() < batchSize_ && !rest_.empty() && folderOf(rest_.front().path) == folder) {
      batch.push_back(rest_.front());
      rest_ = rest_.subspan(1);
    }
    current_ = std::make_unique<FakeBatch>(std::move(batch));
    return current_.get();
  }
  bool isComplete() const override { return !breaksOff_; }

 private:
  std::vector<FakeItem> items_;
  std::span<const FakeItem> rest_;
  std::size_t batchSize_;
  bool breaksOff_;
  std::unique_ptr<FakeBatch> current_;
};

}  // namespace

std::unique_ptr<FolderWalk> FakeFileSystem::enumerate(const WalkRequest& request) const {
  enumerated_.push_back(request.folder);
  const auto found = folders_.find(request.folder);
  if (found == folders_.end()) {
    return nullptr;
  }
  if (request.observer != nullptr) {
    request.observer->beforeListing(request.folder, -1);
  }
  std::vector<FakeItem> items = found->second;
  if (!request.isDeep) {
    std::erase_if(items, [&](const FakeItem& item) { return folderOf(item.path) != request.folder; });
  }
  return std::make_unique<FakeWalk>(std::move(items), batchSize_, brokenOff_.contains(request.folder));
}

std::unique_ptr<ItemBatch> FakeFileSystem::readItems(const std::string& folder,
                                                     const std::vector<std::string>& names) const {
  std::vector<FakeItem> found;
  for (const std::string& name : names) {
    for (const auto& [watched, items] : folders_) {
      const auto item = std::ranges::find(items, folder + "/" + name, &FakeItem::path);
      if (item != items.end()) {
        found.push_back(*item);
        break;
      }
    }
  }
  return found.empty() ? nullptr : std::make_unique<FakeBatch>(std::move(found));
}

}  // namespace cirrovane::test
