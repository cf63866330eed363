#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/macroot/MacRoot.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Real files, whose cloud state is an extended attribute; the home folder is that of a Mac root.
class LinuxFileSystem final : public FileSystem {
 public:
  explicit LinuxFileSystem(const MacRoot& root) : root_(root) {}

  bool exists(const std::string& path) const override;
  using FileSystem::enumerate;
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override;
  std::unique_ptr<ItemBatch> readItems(const std::string& folder, const std::vector<std::string>& names) const override;
  VolumeCapacities volumeCapacities(const std::string& folder) const override;
  std::string homeDirectory() const override { return root_.homeDirectory(); }
  std::optional<std::string> applicationSupportDirectory() const override {
    return root_.applicationSupportDirectory();
  }

 private:
  const MacRoot& root_;
};

}  // namespace cirrovane
