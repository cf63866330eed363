#pragma once

#include "platform/macos/plain/MaterializationPolicy.h"

#include <optional>

namespace cirrovane {

/// The kernel's own policy on items whose content is only in the cloud. Callable on any thread.
class SystemMaterialization final : public MaterializationCalls {
 public:
  std::optional<int> policy(PolicyScope scope) const override;
  bool setPolicy(PolicyScope scope, int policy) const override;
};

}  // namespace cirrovane
