#include "platform/macos/plain/MaterializationPolicy.h"

namespace cirrovane {

NoMaterialization::NoMaterialization(const MaterializationCalls& calls) : calls_(calls) {
  const std::optional<int> current = calls_.policy(PolicyScope::thread);
  if (!current) {
    // A policy that could not be given back afterwards is not taken away either.
    return;
  }
  if (*current == kMaterializationOff) {
    isInForce_ = true;
    return;
  }
  isInForce_ = calls_.setPolicy(PolicyScope::thread, kMaterializationOff);
  if (isInForce_) {
    former_ = current;
  }
}

NoMaterialization::~NoMaterialization() {
  if (former_) {
    static_cast<void>(calls_.setPolicy(PolicyScope::thread, *former_));
  }
}

}  // namespace cirrovane
