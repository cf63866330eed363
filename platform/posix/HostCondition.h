#pragma once

#include "platform/SystemInformation.h"

#include <optional>

namespace cirrovane {

/// The load of the machine that the program runs on; absent unless the system gives all three averages.
std::optional<LoadAverages> hostLoadAverages();

}  // namespace cirrovane
