#pragma once

#include "platform/FileSystem.h"
#include "platform/macos/SystemWalkCalls.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// The files of this Mac, with what iCloud Drive says of them. Looks at metadata alone, opens no file, and lets nothing
/// be fetched from the cloud: what lies below a folder that is only there is not seen.
class MacFileSystem final : public FileSystem {
 public:
  bool exists(const std::string& path) const override;
  using FileSystem::enumerate;
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override;
  std::unique_ptr<ItemBatch> readItems(const std::string& folder, const std::vector<std::string>& names) const override;
  VolumeCapacities volumeCapacities(const std::string& folder) const override;
  std::string homeDirectory() const override;
  std::optional<std::string> applicationSupportDirectory() const override;

 private:
  SystemMaterialization materialization_;
};

}  // namespace cirrovane
