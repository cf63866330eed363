#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/UserFolders.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane {

/// Real files, whose cloud state is an extended attribute.
class LinuxFileSystem final : public FileSystem {
 public:
  /// Answers for the volume that holds a folder.
  using VolumeReading = std::function<VolumeCapacities(const std::string& folder)>;

  LinuxFileSystem(UserFolders folders, VolumeReading volume)
      : folders_(std::move(folders)), volume_(std::move(volume)) {}

  bool exists(const std::string& path) const override;
  using FileSystem::enumerate;
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override;
  std::unique_ptr<ItemBatch> readItems(const std::string& folder, const std::vector<std::string>& names) const override;
  VolumeCapacities volumeCapacities(const std::string& folder) const override { return volume_(folder); }
  std::string homeDirectory() const override { return folders_.home(); }
  std::optional<std::string> applicationSupportDirectory() const override { return folders_.applicationSupport(); }

 private:
  UserFolders folders_;
  VolumeReading volume_;
};

}  // namespace cirrovane
