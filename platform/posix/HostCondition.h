#pragma once

#include "platform/SystemInformation.h"

#include <optional>
#include <string>

namespace cirrovane {

/// The load of the machine that the program runs on; absent unless the system gives all three averages.
std::optional<LoadAverages> hostLoadAverages();

/// Of this process; absent when it is not set.
std::optional<std::string> hostEnvironmentVariable(const std::string& name);

}  // namespace cirrovane
