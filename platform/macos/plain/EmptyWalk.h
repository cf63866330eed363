#pragma once

#include "platform/FileSystem.h"

namespace cirrovane {

/// A walk over a folder that holds nothing on this machine.
class EmptyWalk final : public FolderWalk {
 public:
  const ItemBatch* next() override { return nullptr; }
  bool isComplete() const override { return true; }
};

}  // namespace cirrovane
