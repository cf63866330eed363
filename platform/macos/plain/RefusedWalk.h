#pragma once

#include "platform/FileSystem.h"

namespace cirrovane {

/// A walk over a folder that could not be looked at. What was not looked at must not look clean.
class RefusedWalk final : public FolderWalk {
 public:
  const ItemBatch* next() override { return nullptr; }
  bool isComplete() const override { return false; }
};

}  // namespace cirrovane
