#pragma once

#include "platform/macos/plain/MacWalk.h"

#include <memory>
#include <string_view>

namespace cirrovane {

/// Whether this Mac shows folders with this ending to their names as one document each.
bool isSystemPackageExtension(std::string_view extension);

/// This Mac's kernel and frameworks, as a walk asks them.
std::shared_ptr<const MacWalkCalls> systemWalkCalls();

}  // namespace cirrovane
