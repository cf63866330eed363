#pragma once

#include "platform/macos/plain/MacWalk.h"

#include <memory>

namespace cirrovane {

/// This Mac's kernel and frameworks, as a walk asks them.
std::shared_ptr<const MacWalkCalls> systemWalkCalls();

}  // namespace cirrovane
