#pragma once

#include "platform/macos/plain/MacWalk.h"
#include "platform/macos/plain/MaterializationPolicy.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// Whether this Mac shows folders with this ending to their names as one document each.
bool isSystemPackageExtension(std::string_view extension);

/// The path without any link in it; the path itself where that cannot be found out.
std::string pathWithoutLinks(const std::string& path);

/// The kernel's own policy on items whose content is only in the cloud. Callable on any thread.
class SystemMaterialization final : public MaterializationCalls {
 public:
  std::optional<int> policy(PolicyScope scope) const override;
  bool setPolicy(PolicyScope scope, int policy) const override;
};

/// This Mac's kernel and frameworks, as a walk asks them.
std::shared_ptr<const MacWalkCalls> systemWalkCalls();

}  // namespace cirrovane
