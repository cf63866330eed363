#pragma once

#include <filesystem>

namespace cirrovane::demo {

/// Connects the Mac in a folder to the network, or takes it off. Its commands see that in its network.txt.
void setNetwork(const std::filesystem::path& root, bool isOn);

}  // namespace cirrovane::demo
