#pragma once

#include "platform/FileSystem.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Values of one item of a fake file system; unlike ResourceValues it owns its texts.
struct FakeValues {
  bool isDirectory = false;
  bool isUbiquitousItem = true;
  std::optional<bool> isUploaded;
  std::optional<bool> isUploading;
  std::optional<bool> hasUnresolvedConflicts;
  std::optional<DownloadingStatus> downloadingStatus;
  std::optional<std::string> uploadingError;
  std::optional<std::string> downloadingError;
  std::optional<Time> contentModificationDate;
  std::optional<std::int64_t> fileSize = std::nullopt;
  // For walks over everything alone.
  std::optional<bool> isExcludedFromSync = std::nullopt;
  std::optional<bool> isSyncPaused = std::nullopt;
};

/// A file system made of lists: which paths exist, and which items the walk of a folder yields, in order.
class FakeFileSystem final : public FileSystem {
 public:
  /// An item by its absolute path; without values its metadata cannot be read.
  struct FakeItem {
    std::string path;
    std::optional<FakeValues> values;
  };

  void addExisting(const std::string& path) { existing_.insert(path); }
  /// Makes the folder exist and gives its walk the items.
  void addFolder(const std::string& path, std::vector<FakeItem> items) {
    addExisting(path);
    folders_[path] = std::move(items);
  }
  /// Makes the walk of the folder break off with an error after its items.
  void breakOff(const std::string& path) { brokenOff_.insert(path); }
  void setHomeDirectory(std::string path) { home_ = std::move(path); }
  /// How many items a walk hands out at a time.
  void setBatchSize(std::size_t size) { batchSize_ = size; }

  bool exists(const std::string& path) const override { return existing_.contains(path); }
  /// nullptr for a folder that was only made to exist.
  using FileSystem::enumerate;
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override;
  std::unique_ptr<ItemBatch> readItems(const std::string& folder, const std::vector<std::string>& names) const override;
  VolumeCapacities volumeCapacities(const std::string& folder) const override {
    const auto found = capacities_.find(folder);
    return found == capacities_.end() ? VolumeCapacities() : found->second;
  }
  void setVolumeCapacities(const std::string& folder, const VolumeCapacities& sizes) { capacities_[folder] = sizes; }
  std::string homeDirectory() const override { return home_; }
  std::optional<std::string> applicationSupportDirectory() const override { return applicationSupport_; }
  void setApplicationSupportDirectory(std::optional<std::string> path) { applicationSupport_ = std::move(path); }

  /// The folders that walks were asked for, in order.
  const std::vector<std::string>& enumerated() const { return enumerated_; }

 private:
  std::set<std::string> existing_;
  std::map<std::string, std::vector<FakeItem>> folders_;
  std::set<std::string> brokenOff_;
  std::map<std::string, VolumeCapacities> capacities_;
  std::string home_ = "/Users/test";
  std::optional<std::string> applicationSupport_;
  std::size_t batchSize_ = 3;
  mutable std::vector<std::string> enumerated_;
};

}  // namespace cirrovane::test
