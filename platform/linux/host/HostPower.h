#pragma once

#include "platform/SystemInformation.h"

#include <string>
#include <vector>

namespace cirrovane {

/// The machine's own batteries as the kernel describes them below `folder`, by name; not those of a mouse or a headset.
std::vector<PowerSource> hostPowerSources(const std::string& folder = "/sys/class/power_supply");

}  // namespace cirrovane
