#pragma once

#include "platform/FileSystem.h"
#include "platform/macos/CollectedBatch.h"

#include <string>

namespace cirrovane {

/// A walk that could not be begun: over nothing but the folder itself, as an item that could not be read. What was not
/// looked at must not look clean.
class RefusedWalk final : public FolderWalk {
 public:
  explicit RefusedWalk(const std::string& folder);

  const ItemBatch* next() override;

 private:
  CollectedBatch batch_;
  bool isGiven_ = false;
};

}  // namespace cirrovane
