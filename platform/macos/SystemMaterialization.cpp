#include "platform/macos/SystemMaterialization.h"

#include <sys/resource.h>

namespace cirrovane {
namespace {

static_assert(kMaterializationOff == IOPOL_MATERIALIZE_DATALESS_FILES_OFF);

int scopeNumber(PolicyScope scope) {
  return scope == PolicyScope::thread ? IOPOL_SCOPE_THREAD : IOPOL_SCOPE_PROCESS;
}

}  // namespace

std::optional<int> SystemMaterialization::policy(PolicyScope scope) const {
  const int policy = getiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, scopeNumber(scope));
  return policy >= 0 ? std::optional(policy) : std::nullopt;
}

bool SystemMaterialization::setPolicy(PolicyScope scope, int policy) const {
  return setiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, scopeNumber(scope), policy) == 0;
}

}  // namespace cirrovane
