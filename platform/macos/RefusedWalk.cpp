#include "platform/macos/RefusedWalk.h"

#include <utility>

namespace cirrovane {

RefusedWalk::RefusedWalk(const std::string& folder) {
  batch_.add(folder, nullptr);
}

const ItemBatch* RefusedWalk::next() {
  return std::exchange(isGiven_, true) ? nullptr : &batch_;
}

}  // namespace cirrovane
