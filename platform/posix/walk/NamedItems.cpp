#include "platform/posix/walk/NamedItems.h"

#include <string_view>

namespace cirrovane {
namespace {

/// Only a name that a walk would show: nothing that leads elsewhere.
bool isShownName(std::string_view name) {
  return !name.empty() && name.front() != '.' &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

class NamedItems final : public ItemBatch {
 public:
  NamedItems(const std::string& folder, std::size_t entriesSize) : folder_{nullptr, folder}, batch_(entriesSize) {
    batch_.begin(folder_);
  }

  void read(const std::vector<std::string>& names, const WalkSource& source, const OpenCall& open) {
    const std::unique_ptr<WalkReader> reader = source.makeReader(ReadingThread::callers);
    FolderDescriptors descriptors(/*capacity=*/1, open);
    const FolderDescriptors::Opened opened =
        reader ? descriptors.open(folder_) : FolderDescriptors::Opened{FolderOpening::exhausted, nullptr};
    if (opened.result == FolderOpening::exhausted) {
      addUnread(names);
    }
    if (opened.result != FolderOpening::opened) {
      return;
    }
    const int descriptor = opened.descriptor->get();
    for (const std::string& name : names) {
      if (isShownName(name)) {
        reader->readName(descriptor, name, batch_);
      }
    }
    reader->readValues(descriptor, batch_);
  }

  std::span<const Item> items() const override { return batch_.items(); }
  std::string folderPath() const override { return batch_.folderPath(); }
  std::string path(const Item& item) const override { return batch_.path(item); }

 private:
  void addUnread(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      if (isShownName(name)) {
        batch_.add(batch_.keep(name));
      }
    }
  }

  WalkedFolder folder_;
  WalkBatch batch_;
};

}  // namespace

std::unique_ptr<ItemBatch> readNamedItems(const std::string& folder, const std::vector<std::string>& names,
                                          const WalkSource& source, const OpenCall& open) {
  auto batch = std::make_unique<NamedItems>(folder, source.entriesSize());
  batch->read(names, source, open);
  return batch->items().empty() ? nullptr : std::move(batch);
}

}  // namespace cirrovane
